#pragma once

#include "engine/math/vec2.h"
#include "engine/math/vec3.h"

#include <algorithm>
#include <numbers>

/// The engine's vectors under their short names, and what the programs that make the data need of
/// single numbers. A vec2 holds texture coordinates or a place on the ground plan (x, z); a vec3 a
/// position or direction (+y up), or a linear RGB colour.
namespace Art {

using Vell::vec2;
using Vell::vec3;

inline constexpr float pi = std::numbers::pi_v<float>;

/// a at t = 0 and b at t = 1; t is not clamped. Lerp() of vectors is the engine's.
constexpr float Lerp(float a, float b, float t) {
    return a + (b - a) * t;
}
constexpr float Clamp01(float x) {
    return std::clamp(x, 0.0f, 1.0f);
}
/// 0 below `from`, 1 above `to`, with zero slope at both.
constexpr float SmoothStep(float from, float to, float x) {
    const float t = Clamp01((x - from) / (to - from));
    return t * t * (3 - 2 * t);
}

} // namespace Art
