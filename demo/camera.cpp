#include "demo/camera.h"

#include <algorithm>

using Vell::vec3;

namespace {

/// Look-ahead of the target, as a part of the flight.
constexpr double lookAhead = 0.1;

/// Not clamped: the frame that crosses the end of a flight needs the point beyond it.
float LinInterp(float a, float b, float t) {
    return (b - a) * t + a;
}

} // namespace

void Camera::AddPath(const vec3& start, const vec3& end, float duration) {
    paths.push_back({start, end, duration});
}

void Camera::Reset() {
    current = 0;
    clock.Reset();
}

vec3 Camera::GetPos() {
    if (paths.empty())
        return vec3();
    const float u = Progress();
    const vec3 result = PointAt(u);
    if (u > 1.0) {
        clock.Reset();
        // The bound is the number of flights, not the last index: intended, so that the last
        // flight's end is held instead of its flight being repeated. Only GetTarget() wraps.
        if (current < paths.size())
            ++current;
    }
    return result;
}

vec3 Camera::GetTarget() {
    if (paths.empty())
        return vec3();
    const float u = Progress();
    const float v = static_cast<float>(u + lookAhead);
    const vec3 result = PointAt(v);
    if (u > 1.0) {
        clock.Reset();
        // The same bound as in GetPos(): the list starts over one flight's time after its end.
        current = current < paths.size() ? current + 1 : 0;
    }
    return result;
}

const CameraPath& Camera::CurrentPath() const {
    return paths[std::min<std::size_t>(current, paths.size() - 1)];
}

float Camera::Progress() {
    return clock.GetElapsedTime() / CurrentPath().duration;
}

vec3 Camera::PointAt(float progress) const {
    const CameraPath& path = CurrentPath();
    if (current == paths.size())
        return path.end;
    return vec3(LinInterp(path.start.x, path.end.x, progress),
                LinInterp(path.start.y, path.end.y, progress),
                LinInterp(path.start.z, path.end.z, progress));
}
