#pragma once

#include "engine/math/vector.h"

namespace Vell {

/// Two floats: a texture coordinate, or a position or size on the screen.
/// The arithmetic is that of VectorOperations.
struct vec2 : VectorOperations<vec2, float, 2> {
    /// One after the other in memory.
    float x, y;

    /// All components 0, or the components in their order.
    constexpr vec2() : x(0.0f), y(0.0f) {}
    constexpr vec2(float first, float second) : x(first), y(second) {}
    /// Both components = s.
    constexpr explicit vec2(float s) : x(s), y(s) {}
    constexpr vec2(const vec2&) = default;
    constexpr vec2& operator=(const vec2&) = default;
    ~vec2() = default;

    /// 0 is x, any other index is y.
    constexpr float& operator[](int i) { return i == 0 ? x : y; }
    constexpr const float& operator[](int i) const { return i == 0 ? x : y; }

    /// Length of the difference.
    float Distance(const vec2& other) const;
};

/// a.x b.x + a.y b.y, in float.
constexpr float Dot(const vec2& a, const vec2& b) {
    return a.x * b.x + a.y * b.y;
}

/// Twice the signed area of the triangle (0, a, b): positive when b lies to the left of a.
constexpr float Cross(const vec2& a, const vec2& b) {
    return a.x * b.y - a.y * b.x;
}

/// Two 32-bit integers: a size or position in pixels.
/// The arithmetic is that of VectorOperations.
struct ivec2 : VectorOperations<ivec2, std::int32_t, 2> {
    /// One after the other in memory.
    std::int32_t x, y;

    /// All components 0, or the components in their order.
    constexpr ivec2() : x(0), y(0) {}
    constexpr ivec2(std::int32_t first, std::int32_t second) : x(first), y(second) {}
    /// Both components = s.
    constexpr explicit ivec2(std::int32_t s) : x(s), y(s) {}
    constexpr ivec2(const ivec2&) = default;
    constexpr ivec2& operator=(const ivec2&) = default;
    ~ivec2() = default;

    /// 0 is x, any other index is y.
    constexpr std::int32_t& operator[](int i) { return i == 0 ? x : y; }
    constexpr const std::int32_t& operator[](int i) const { return i == 0 ? x : y; }

    /// Length of the difference; NaN where the summed squares wrap to a negative number.
    float Distance(const ivec2& other) const;
};

} // namespace Vell
