#include "engine/scene/object2d.h"

#include "engine/core/GLExtensions.h"

namespace Vell {

Object2D::Object2D() : debug(false) {}

Object2D::~Object2D() = default;

void Object2D::SetPosition(const vec2& position) {
    matrix.Translate(vec3(position.x, position.y, 0.0f));
}

void Object2D::SetRotation(const vec2&) {}

void Object2D::SetScale(const vec2& factors) {
    matrix.Scale(vec3(factors.x, factors.y, 0.0f));
}

void Object2D::ShowDebug(bool on) {
    debug = on;
}

void Object2D::ApplyMatrix() {
    matrix.Transpose(); // OpenGL reads columns
    glMultMatrixf(matrix.Get());
    matrix.Transpose();
}

} // namespace Vell
