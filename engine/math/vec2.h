#pragma once

#include "engine/math/vector.h"

namespace Vell {

/// Two floats: a texture coordinate, or a position or size on the screen.
/// The arithmetic is that of VectorOperations.
struct vec2 : VectorOperations<vec2, float, 2> {
    float x, y;

    constexpr vec2() : x(0.0f), y(0.0f) {}
    constexpr vec2(float first, float second) : x(first), y(second) {}
    /// Both components = s.
    constexpr explicit vec2(float s) : x(s), y(s) {}
    constexpr vec2(const vec2&) = default;
    vec2& operator=(const vec2&) = default;
    ~vec2() = default;

    /// 0 is x, any other index is y.
    float& operator[](int i) { return i == 0 ? x : y; }
    const float& operator[](int i) const { return i == 0 ? x : y; }

    /// Length of the difference.
    float Distance(const vec2& other) const;
};

/// Two 32-bit integers: a size or position in pixels.
/// The arithmetic is that of VectorOperations.
struct ivec2 : VectorOperations<ivec2, std::int32_t, 2> {
    std::int32_t x, y;

    constexpr ivec2() : x(0), y(0) {}
    constexpr ivec2(std::int32_t first, std::int32_t second) : x(first), y(second) {}
    /// Both components = s.
    constexpr explicit ivec2(std::int32_t s) : x(s), y(s) {}
    constexpr ivec2(const ivec2&) = default;
    ivec2& operator=(const ivec2&) = default;
    ~ivec2() = default;

    /// 0 is x, any other index is y.
    std::int32_t& operator[](int i) { return i == 0 ? x : y; }
    const std::int32_t& operator[](int i) const { return i == 0 ? x : y; }

    /// Length of the difference; NaN where the summed squares wrap to a negative number.
    float Distance(const ivec2& other) const;
};

} // namespace Vell
