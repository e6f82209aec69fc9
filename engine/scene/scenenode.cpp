#include "engine/scene/scenenode.h"

#include "engine/core/GLExtensions.h"
#include "engine/math/frustum.h"

namespace Vell {

SceneNode::SceneNode() = default;

SceneNode::~SceneNode() = default;

void SceneNode::SetPosition(const vec3& position) {
    transform.Translate(position);
}

void SceneNode::SetRotation(const vec3& angles) {
    transform.RotateX(angles.x);
    transform.RotateY(angles.y);
    transform.RotateZ(angles.z);
}

void SceneNode::SetScale(const vec3& factors) {
    transform.Scale(factors);
}

void SceneNode::SetMesh(Mesh* shape) {
    mesh = shape;
}

Mesh* SceneNode::GetMesh() {
    return mesh;
}

bool SceneNode::Draw() {
    return DrawWith(&Mesh::Draw);
}

bool SceneNode::DrawShadow() {
    return DrawWith(&Mesh::DrawShadow);
}

// Culls by the box that the two transformed corners span. They are not re-sorted, and the other six
// corners are not looked at: cheap, and right for every node that is not turned.
bool SceneNode::DrawWith(void (Mesh::*pass)()) {
    const vec3 worldMin = transform * mesh->GetBBox()->GetMin();
    const vec3 worldMax = transform * mesh->GetBBox()->GetMax();
    if (!Frustum::GetInstance().BBoxIn(worldMin, worldMax))
        return false;
    glPushMatrix();
    transform.Transpose(); // OpenGL reads columns
    glMultMatrixf(transform.Get());
    transform.Transpose();
    (mesh->*pass)();
    glPopMatrix();
    return true;
}

} // namespace Vell
