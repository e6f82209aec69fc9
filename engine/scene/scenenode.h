#pragma once

#include "engine/math/matrix.h"
#include "engine/math/vec3.h"
#include "engine/scene/mesh.h"

namespace Vell {

/// Places one mesh in the world and draws it when it is in view.
///
/// The setters edit one matrix, so their order matters: SetPosition replaces the translation only
/// and may come at any time, SetScale replaces the diagonal (also one that a rotation made), and
/// SetRotation multiplies onto whatever is there.
///
/// Needs: a current context, and what its mesh needs, for Draw() and DrawShadow() alone.
class SceneNode {
public:
    SceneNode();
    /// Leaves the mesh alone: nodes share meshes and own none.
    virtual ~SceneNode();

    /// World units.
    virtual void SetPosition(const vec3& position);
    /// Turns further by the angles in radians, about x, then y, then z; calls accumulate.
    virtual void SetRotation(const vec3& angles);
    /// Factors along the three axes.
    virtual void SetScale(const vec3& factors);

    /// The mesh must be set before the first Draw() and outlive the last.
    virtual void SetMesh(Mesh* shape);
    virtual Mesh* GetMesh();

    /// Draws the mesh under the node's transform unless its box is outside the Frustum.
    /// True when it was drawn. The model-view matrix is as before afterwards.
    /// The test transforms only the box's two corners and does not re-sort them, on purpose: a
    /// turned node is culled by the box that its two turned corners span, and can vanish at the
    /// picture's edge.
    virtual bool Draw();
    /// Likewise for the depth-only pass.
    virtual bool DrawShadow();

private:
    bool DrawWith(void (Mesh::*pass)());

    Matrix transform;
    Mesh* mesh = nullptr; // not owned
};

} // namespace Vell
