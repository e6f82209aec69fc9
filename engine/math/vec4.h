#pragma once

#include "engine/math/vector.h"

namespace Vell {

/// Four floats: a colour (red, green, blue, alpha in 0..1) or a plane's (normal, d).
/// The arithmetic is that of VectorOperations.
struct vec4 : VectorOperations<vec4, float, 4> {
    /// One after the other in memory.
    float x, y, z, w;

    /// All components 0, or the components in their order.
    constexpr vec4() : x(0.0f), y(0.0f), z(0.0f), w(0.0f) {}
    constexpr vec4(float first, float second, float third, float fourth)
        : x(first), y(second), z(third), w(fourth) {}
    /// All components = s.
    constexpr explicit vec4(float s) : x(s), y(s), z(s), w(s) {}
    constexpr vec4(const vec4&) = default;
    constexpr vec4& operator=(const vec4&) = default;
    ~vec4() = default;

    /// 0 is x, 1 is y, 2 is z, any other index is w.
    constexpr float& operator[](int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    constexpr const float& operator[](int i) const {
        return i == 0 ? x : i == 1 ? y : i == 2 ? z : w;
    }

    /// Sum of the four component products, not rounded to float.
    double DotProduct(const vec4& other) const;

    /// x, y and z in place as vec3::CrossProduct(v), each line reading what the ones before it
    /// wrote; w becomes 0.
    vec4& CrossProduct(const vec4& v);
    /// *this from a and b: x = a.x b.z - a.z b.y, with a.x where the geometric cross product has
    /// a.y. That is intended: x is not the geometric one, y and z are; w is 0; *this may be one of
    /// the two.
    vec4& CrossProduct(const vec4& a, const vec4& b);
};

/// a.x b.x + a.y b.y + a.z b.z + a.w b.w, in float.
constexpr float Dot(const vec4& a, const vec4& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
}

/// Four 32-bit integers. The arithmetic is that of VectorOperations.
struct ivec4 : VectorOperations<ivec4, std::int32_t, 4> {
    /// One after the other in memory.
    std::int32_t x, y, z, w;

    /// All components 0, or the components in their order.
    constexpr ivec4() : x(0), y(0), z(0), w(0) {}
    constexpr ivec4(std::int32_t first, std::int32_t second, std::int32_t third,
                    std::int32_t fourth)
        : x(first), y(second), z(third), w(fourth) {}
    /// All components = s.
    constexpr explicit ivec4(std::int32_t s) : x(s), y(s), z(s), w(s) {}
    constexpr ivec4(const ivec4&) = default;
    constexpr ivec4& operator=(const ivec4&) = default;
    ~ivec4() = default;

    /// 0 is x, 1 is y, 2 is z, any other index is w.
    constexpr std::int32_t& operator[](int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    constexpr const std::int32_t& operator[](int i) const {
        return i == 0 ? x : i == 1 ? y : i == 2 ? z : w;
    }

    /// Takes floats, which is intended: the four products are formed and summed in floating point
    /// and only the sum is truncated, so fractions of single products count. 0 when an int cannot
    /// hold the sum.
    std::int32_t DotProduct(const vec4& other) const;

    /// As vec4::CrossProduct(v).
    ivec4& CrossProduct(const ivec4& v);
    /// As vec4::CrossProduct(a, b), with a.x in the first product of x.
    ivec4& CrossProduct(const ivec4& a, const ivec4& b);
};

} // namespace Vell
