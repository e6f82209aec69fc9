#include "engine/math/plane.h"

namespace Vell {

namespace {

/// The greater one of two products; one that is no number gives way to the other.
double Further(double along, float a, float b) {
    const double first = along * a;
    const double second = along * b;
    return first >= second || second != second ? first : second;
}

} // namespace

Plane::Plane(const vec3& direction, float distance) : normal(direction), d(distance) {}

void Plane::Set(float a, float b, float c, float distance) {
    Set(vec3(a, b, c), distance);
}

void Plane::Set(const vec3& direction, float distance) {
    normal = direction;
    d = distance;
}

Plane& Plane::SetFromTri(const vec3& p1, const vec3& p2, const vec3& p3) {
    normal = p3 - p1;
    normal.CrossProduct(p2 - p1);
    normal.Normalize();
    d = static_cast<float>(-normal.DotProduct(p1));
    return *this;
}

void Plane::Normalize() {
    // d first, while the normal still has its length.
    d = d / normal.Length();
    normal.Normalize();
}

vec4 Plane::Get() const {
    return vec4(normal.x, normal.y, normal.z, d);
}

bool Plane::PointIn(const vec3& p) const {
    return normal.DotProduct(p) + d > 0.0;
}

// One corner in the place of eight: the furthest along the normal, axis by axis. Its sum, with its
// roundings, is the largest of all, since rounding never changes an order; so the answer is that of
// the eight.
bool Plane::AnyCornerIn(const vec3& corner, const vec3& opposite) const {
    const double sum = Further(normal.x, corner.x, opposite.x) +
                       Further(normal.y, corner.y, opposite.y) +
                       Further(normal.z, corner.z, opposite.z);
    return sum + d > 0.0;
}

} // namespace Vell
