#include "engine/scene/camera.h"

#include "engine/core/GLExtensions.h"

namespace Vell {

Camera::Camera() = default;

Camera::~Camera() = default;

void Camera::Set(const vec3& eye, const vec3& point) {
    position = eye;
    target = point;
}

void Camera::SetPosition(const vec3& eye) {
    position = eye;
}

void Camera::SetTarget(const vec3& point) {
    target = point;
}

void Camera::Draw() {
    gluLookAt(position.x, position.y, position.z, target.x, target.y, target.z, 0.0, 1.0, 0.0);
}

} // namespace Vell
