#include "engine/scene/camera.h"

#include "engine/core/GLExtensions.h"

namespace Vell {

Camera::Camera() = default;

Camera::~Camera() = default;

void Camera::Set(const vec3& newPosition, const vec3& newTarget) {
    position = newPosition;
    target = newTarget;
}

void Camera::SetPosition(const vec3& newPosition) {
    position = newPosition;
}

void Camera::SetTarget(const vec3& newTarget) {
    target = newTarget;
}

void Camera::Draw() {
    gluLookAt(position.x, position.y, position.z, target.x, target.y, target.z, 0.0, 1.0, 0.0);
}

} // namespace Vell
