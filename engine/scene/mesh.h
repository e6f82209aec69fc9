#pragma once

#include "engine/math/bbox.h"
#include "engine/math/vec4.h"

#include <string>

namespace Vell {

/// Anything with a bounding box that a scene node can place and draw.
///
/// Space: the mesh's own; the node's transform is on the model-view matrix while it draws.
/// Needs: nothing by itself; what loading and drawing it needs, each mesh says.
class Mesh {
public:
    virtual ~Mesh();

    /// Fills the mesh from a file; a mesh without files does nothing.
    virtual void Load(const std::string& path);

    /// The colour pass.
    virtual void Draw() = 0;
    /// The depth-only pass of shadow mapping; a mesh that casts no shadow does nothing.
    virtual void DrawShadow();

    /// Whether Draw() also shows the bounding box.
    virtual void SetDebug(bool on);
    /// Whether the mesh is drawn, and with it whether it casts a shadow: one flag for both.
    virtual void SetShow(bool on);
    virtual bool GetDebug() const;
    /// What SetShow() stored.
    virtual bool GetShadow() const;

    /// The box to cull by, all zero until a loader sets it. Owned by the mesh, never null.
    BoundingBox* GetBBox() { return &bbox; }

protected:
    /// Of the box that SetDebug() adds: blue.
    static constexpr vec4 debugColour{0.0f, 0.0f, 1.0f, 1.0f};

    BoundingBox bbox;   ///< to cull by, in the mesh's own space
    bool debug = false; ///< what SetDebug() stored
    bool show = true;   ///< what SetShow() stored
};

} // namespace Vell
