#pragma once

#include "engine/math/vector.h"

namespace Vell {

/// Three floats: a position, a direction, a normal or a colour without alpha.
/// The arithmetic is that of VectorOperations.
struct vec3 : VectorOperations<vec3, float, 3> {
    /// One after the other in memory.
    float x, y, z;

    /// All components 0, or the components in their order.
    constexpr vec3() : x(0.0f), y(0.0f), z(0.0f) {}
    constexpr vec3(float first, float second, float third) : x(first), y(second), z(third) {}
    /// All components = s.
    constexpr explicit vec3(float s) : x(s), y(s), z(s) {}
    constexpr vec3(const vec3&) = default;
    constexpr vec3& operator=(const vec3&) = default;
    ~vec3() = default;

    /// 0 is x, 1 is y, any other index is z.
    constexpr float& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    constexpr const float& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    /// Length of the difference.
    float Distance(const vec3& other) const;
    /// Sum of the component products, not rounded to float.
    double DotProduct(const vec3& other) const;

    /// *this x v, computed in place one component after the other: y reads the x just written and
    /// z both. That is intended, so (1, 0, 0) with (0, 1, 0) gives (0, 0, 0); the form with two
    /// arguments gives the geometric cross product.
    vec3& CrossProduct(const vec3& v);
    /// *this = a x b, the ordinary cross product; *this may be one of the two.
    vec3& CrossProduct(const vec3& a, const vec3& b);
};

/// a.x b.x + a.y b.y + a.z b.z, in float.
constexpr float Dot(const vec3& a, const vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The ordinary cross product a x b, in float: x cross y is z.
constexpr vec3 Cross(const vec3& a, const vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Three 32-bit integers. The arithmetic is that of VectorOperations.
struct ivec3 : VectorOperations<ivec3, std::int32_t, 3> {
    /// One after the other in memory.
    std::int32_t x, y, z;

    /// All components 0, or the components in their order.
    constexpr ivec3() : x(0), y(0), z(0) {}
    constexpr ivec3(std::int32_t first, std::int32_t second, std::int32_t third)
        : x(first), y(second), z(third) {}
    /// All components = s.
    constexpr explicit ivec3(std::int32_t s) : x(s), y(s), z(s) {}
    constexpr ivec3(const ivec3&) = default;
    constexpr ivec3& operator=(const ivec3&) = default;
    ~ivec3() = default;

    /// 0 is x, 1 is y, any other index is z.
    constexpr std::int32_t& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    constexpr const std::int32_t& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    /// Length of the difference; NaN where the summed squares wrap to a negative number.
    float Distance(const ivec3& other) const;
    /// Sum of the component products; wraps round on overflow.
    std::int32_t DotProduct(const ivec3& other) const;

    /// In place and component by component, as vec3::CrossProduct(v).
    ivec3& CrossProduct(const ivec3& v);
    /// *this = a x b, the ordinary cross product; *this may be one of the two.
    ivec3& CrossProduct(const ivec3& a, const ivec3& b);
};

} // namespace Vell
