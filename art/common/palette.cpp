#include "art/common/palette.h"

namespace Art {

namespace {

// Linear colours of the dome.
constexpr Vec3 zenithColour{0.010f, 0.022f, 0.070f};
constexpr Vec3 middleColour{0.035f, 0.080f, 0.210f};
constexpr Vec3 farHorizonColour{0.170f, 0.160f, 0.270f};
constexpr Vec3 glowHorizonColour{1.150f, 0.430f, 0.120f};
constexpr Vec3 glowMiddleColour{0.340f, 0.150f, 0.190f};

// Heights (sine of the elevation) at which the bands of the dome end.
constexpr float bandEnd = 0.10f;
constexpr float middleEnd = 0.35f;

/// 1 straight towards the light's azimuth, 0 on the far side.
float TowardsLight(Vec3 direction) {
    const Vec3 light = LightDirection();
    const Vec2 a{direction.x, direction.z};
    const Vec2 b{light.x, light.z};
    const float lengths = Length(a) * Length(b);
    const float cosine = lengths > 1e-6f ? Dot(a, b) / lengths : 0.0f;
    return 0.5f + 0.5f * cosine;
}

Vec3 Dome(Vec3 direction) {
    const float height = std::max(direction.y, 0.0f);
    const float glow = std::pow(TowardsLight(direction), 3.0f);
    const Vec3 horizon = Mix(farHorizonColour, glowHorizonColour, glow);
    const Vec3 middle = Mix(middleColour, glowMiddleColour, glow * 0.6f);
    const float band = std::exp(-height / bandEnd);
    const float upper = SmoothStep(0.0f, 1.0f, height / middleEnd * 0.5f);
    return Mix(Mix(middle, zenithColour, upper), horizon, band);
}

} // namespace

Vec3 LightDirection() {
    return Normalize({-0.62f, 0.30f, -0.72f});
}

Vec3 LightIrradiance() {
    return {4.60f, 1.66f, 0.46f};
}

Vec3 UnderwaterColour() {
    return {0.10f, 0.36f, 0.55f};
}

Vec3 SkyRadiance(Vec3 direction) {
    if (direction.y >= 0)
        return Dome(direction);
    const Vec3 deep = ToLinear({0.02f, 0.08f, 0.20f});
    return Mix(ToLinear(UnderwaterColour()), deep, SmoothStep(0.0f, 0.6f, -direction.y));
}

Vec3 ToDisplay(Vec3 linear) {
    const auto one = [](float x) { return std::pow(std::max(x, 0.0f), 1 / 2.2f); };
    return {one(linear.x), one(linear.y), one(linear.z)};
}

Vec3 ToLinear(Vec3 display) {
    const auto one = [](float x) { return std::pow(std::max(x, 0.0f), 2.2f); };
    return {one(display.x), one(display.y), one(display.z)};
}

} // namespace Art
