#include "art/common/palette.h"

namespace Art {

namespace {

// Linear colours of the dome.
constexpr vec3 zenithColour{0.010f, 0.022f, 0.070f};
constexpr vec3 middleColour{0.035f, 0.080f, 0.210f};
constexpr vec3 farHorizonColour{0.170f, 0.160f, 0.270f};
constexpr vec3 glowHorizonColour{1.150f, 0.430f, 0.120f};
constexpr vec3 glowMiddleColour{0.340f, 0.150f, 0.190f};

// Heights (sine of the elevation) at which the bands of the dome end.
constexpr float bandEnd = 0.10f;
constexpr float middleEnd = 0.35f;

/// 1 straight towards the light's azimuth, 0 on the far side.
float TowardsLight(vec3 direction) {
    const vec3 light = LightDirection();
    const vec2 a{direction.x, direction.z};
    const vec2 b{light.x, light.z};
    const float lengths = Length(a) * Length(b);
    const float cosine = lengths > 1e-6f ? Dot(a, b) / lengths : 0.0f;
    return 0.5f + 0.5f * cosine;
}

vec3 Dome(vec3 direction) {
    const float height = std::max(direction.y, 0.0f);
    const float glow = std::pow(TowardsLight(direction), 3.0f);
    const vec3 horizon = Lerp(farHorizonColour, glowHorizonColour, glow);
    const vec3 middle = Lerp(middleColour, glowMiddleColour, glow * 0.6f);
    const float band = std::exp(-height / bandEnd);
    const float upper = SmoothStep(0.0f, 1.0f, height / middleEnd * 0.5f);
    return Lerp(Lerp(middle, zenithColour, upper), horizon, band);
}

} // namespace

vec3 LightDirection() {
    return Normalized(vec3{-0.62f, 0.30f, -0.72f});
}

vec3 LightIrradiance() {
    return {4.60f, 1.66f, 0.46f};
}

vec3 UnderwaterColour() {
    return {0.10f, 0.36f, 0.55f};
}

vec3 SkyRadiance(vec3 direction) {
    if (direction.y >= 0)
        return Dome(direction);
    const vec3 deep = ToLinear({0.02f, 0.08f, 0.20f});
    return Lerp(ToLinear(UnderwaterColour()), deep, SmoothStep(0.0f, 0.6f, -direction.y));
}

vec3 ToDisplay(vec3 linear) {
    const auto one = [](float x) { return std::pow(std::max(x, 0.0f), 1 / 2.2f); };
    return {one(linear.x), one(linear.y), one(linear.z)};
}

vec3 ToLinear(vec3 display) {
    const auto one = [](float x) { return std::pow(std::max(x, 0.0f), 2.2f); };
    return {one(display.x), one(display.y), one(display.z)};
}

} // namespace Art
