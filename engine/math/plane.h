#pragma once

#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

namespace Vell {

/// The points p with normal . p + d = 0. Its inside is the side that the normal points to.
class Plane {
public:
    /// Normal (0, 0, 0) and d 0: no point is inside.
    Plane() = default;
    Plane(const vec3& direction, float distance);
    ~Plane() = default;

    /// Normal (a, b, c) and distance term `distance`, none of them normalised.
    void Set(float a, float b, float c, float distance);
    void Set(const vec3& direction, float distance);
    /// The plane through three points, its normal from (p3 - p1) and (p2 - p1) by the in-place
    /// cross product of vec3, which is not the geometric one in general; d then puts p1 on the
    /// plane.
    Plane& SetFromTri(const vec3& p1, const vec3& p2, const vec3& p3);

    /// Scales normal and d so that the normal has length 1 and normal . p + d is a distance.
    /// A zero normal stays zero and d is divided by zero.
    void Normalize();

    /// (normal.x, normal.y, normal.z, d).
    vec4 Get() const;
    /// Whether `p` lies strictly inside; a point on the plane is outside.
    bool PointIn(const vec3& p) const;
    /// Whether PointIn() holds for any of the eight corners of the box from `corner` to `opposite`,
    /// in any order and of any numbers.
    bool AnyCornerIn(const vec3& corner, const vec3& opposite) const;

private:
    vec3 normal;
    float d = 0.0f;
};

} // namespace Vell
