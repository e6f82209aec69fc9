#include "art/sky/dusk.h"

#include "art/common/noise.h"
#include "art/common/palette.h"
#include "art/sky/clouds.h"
#include "art/sky/gradient.h"

namespace Art {
namespace {

constexpr float radiansPerDegree = pi / 180;

// ---- Stars -----------------------------------------------------------------------------------

constexpr float starCells = 34;      // cells along the radius of the unit sphere
constexpr float starChance = 0.055f; // of a cell near the sphere to hold a star
constexpr float starSize = 0.0021f;  // radius in radians: a texel and a half, so none flickers

/// Brightness that the star of one cell, if there is any, adds at `direction`.
float StarOfCell(int x, int y, int z, vec3 direction) {
    const std::uint32_t cell = Hash(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y),
                                    static_cast<std::uint32_t>(z));
    if (HashUnit(cell, 1) > starChance)
        return 0;
    const vec3 place = {static_cast<float>(x) + HashUnit(cell, 2),
                        static_cast<float>(y) + HashUnit(cell, 3),
                        static_cast<float>(z) + HashUnit(cell, 4)};
    const float away = Length(Normalized(place) - direction) / starSize;
    if (away > 4)
        return 0;
    const float magnitude = HashUnit(cell, 5);
    return (0.10f + 0.85f * std::pow(magnitude, 5.0f)) * std::exp(-away * away);
}

float Stars(vec3 direction) {
    const vec3 p = direction * starCells;
    const int x = static_cast<int>(std::floor(p.x));
    const int y = static_cast<int>(std::floor(p.y));
    const int z = static_cast<int>(std::floor(p.z));
    float light = 0;
    for (int i = 0; i < 27; ++i)
        light += StarOfCell(x + i % 3 - 1, y + i / 3 % 3 - 1, z + i / 9 - 1, direction);
    return light;
}

/// Stars drown in the haze of the horizon and in the glow.
float StarVisibility(const SkyPoint& point) {
    return SmoothStep(5, 18, point.elevation) * (1 - 0.85f * RegionsAt(point.fromLight).towards *
                                                         (1 - SmoothStep(20, 60, point.elevation)));
}

// ---- Moon ------------------------------------------------------------------------------------

constexpr float moonRadius = 1.0f * radiansPerDegree; // four times life size: the eye's memory
constexpr float moonElevation = 7.2f * radiansPerDegree;
// Straight opposite the light it would hardly ever be in the picture.
constexpr float moonAside = 15 * radiansPerDegree;

/// Where the full moon stands: low and nearly opposite the afterglow, as it does at that hour.
vec3 MoonDirection() {
    const vec3 light = LightDirection();
    const float heading = std::atan2(-light.z, -light.x) + moonAside;
    const float level = std::cos(moonElevation);
    return {level * std::cos(heading), std::sin(moonElevation), level * std::sin(heading)};
}

/// The grey seas of the disc: 1 on open ground, less in them. Coordinates in disc radii.
float MoonFace(vec2 disc) {
    const float seas = Fbm2(disc * 0.9f + vec2{3.7f, 1.2f}, 311, 4);
    const float limb = 1 - 0.18f * Dot(disc, disc);
    return limb * (1 - 0.24f * SmoothStep(-0.15f, 0.45f, seas));
}

vec3 AddMoon(vec3 direction, vec3 behind, float uncovered) {
    const vec3 moon = MoonDirection();
    const float angle = std::acos(std::clamp(Dot(direction, moon), -1.0f, 1.0f));
    const float wide = angle / (7.0f * radiansPerDegree);
    const float near = angle / (2.3f * radiansPerDegree);
    vec3 colour = behind +
                  vec3{0.16f, 0.12f, 0.085f} * std::exp(-wide * wide) * (0.4f + 0.6f * uncovered) +
                  vec3{0.22f, 0.18f, 0.13f} * std::exp(-near * near) * (0.3f + 0.7f * uncovered);
    if (angle > 1.2f * moonRadius)
        return colour;
    const vec3 right = Normalized(Cross(moon, {0, 1, 0}));
    const vec2 disc = {Dot(direction, right) / moonRadius,
                       Dot(direction, Cross(right, moon)) / moonRadius};
    const vec3 face = vec3{1.0f, 0.91f, 0.74f} * MoonFace(disc);
    const float edge = 1 - SmoothStep(0.95f, 1.05f, angle / moonRadius);
    return Lerp(colour, face, edge * uncovered);
}

// ---- Far isles --------------------------------------------------------------------------------

/// Height in degrees of the land on the horizon; negative where there is open sea.
float LandHeight(vec2 heading) {
    const vec3 around = {heading.x, 0, heading.y};
    const float groups = SmoothStep(0.10f, 0.55f, Fbm3(around * 2.1f, 503, 2));
    const float ridges = 1 - 2 * std::abs(Fbm3(around * 8.0f, 509, 4));
    return groups * (1.7f + 1.5f * ridges) - 0.12f;
}

vec3 AddLand(const SkyPoint& point, vec3 behind) {
    const float height = LandHeight(point.heading);
    const float cover = SmoothStep(-0.05f, 0.09f, height - point.elevation);
    if (cover <= 0)
        return behind;
    const vec3 horizon = ClearSky({point.direction, 0.5f, point.fromLight, point.heading});
    const float mist = 0.22f + 0.38f * (1 - SmoothStep(0, 1.3f, point.elevation));
    return Lerp(behind, Lerp(vec3{0.045f, 0.062f, 0.135f}, horizon, mist), cover);
}

/// What stands in the sky and on the horizon.
vec3 Scenery(const SkyPoint& point) {
    const float starlight = Stars(point.direction) * StarVisibility(point);
    const vec3 clear = ClearSky(point) + vec3{0.90f, 0.93f, 1.0f} * starlight;
    const Clouded clouded = AddClouds(point, clear);
    vec3 colour = AddMoon(point.direction, clouded.colour, clouded.open);
    // Haze: the last degree takes the colour of the horizon, whatever stands there.
    const vec3 horizon = ClearSky({point.direction, 0, point.fromLight, point.heading});
    colour = Lerp(horizon, colour, SmoothStep(-0.6f, 2.2f, point.elevation));
    return AddLand(point, colour);
}

/// A hair of dark sea along the horizon: without it a mirror-like sea would pass into the sky
/// unseen.
vec3 AddFarSea(const SkyPoint& point, vec3 behind) {
    const vec3 sea = behind * 0.74f + vec3{0.003f, 0.008f, 0.022f};
    return Lerp(sea, behind, SmoothStep(0.08f, 0.36f, std::abs(point.elevation)));
}

// ---- Under water -------------------------------------------------------------------------------

// A camera at ten units sees the rim of the water half a degree under the horizon; only below
// that may the colour turn into water.
constexpr float rimEnd = -0.65f;
constexpr float waterStart = -1.5f;

/// Slanted shafts of light that the waves let through, brightest just under the surface.
float Shafts(const SkyPoint& point) {
    const float lean = point.elevation * 0.010f;
    const vec3 across = {point.heading.x * 6 + lean, 0.012f * point.elevation,
                         point.heading.y * 6 - lean};
    const float wide = SmoothStep(0.0f, 0.5f, Fbm3(across, 601, 2));
    const float fine = 0.55f + 0.45f * Noise3(across * 4.3f, 607);
    return wide * fine * std::exp(point.elevation / 13);
}

vec3 Water(const SkyPoint& point) {
    const vec3 dim = {0.030f, 0.130f, 0.260f};
    const vec3 deep = {0.008f, 0.035f, 0.090f};
    const float down = -point.elevation;
    const vec3 body = Lerp(Lerp(UnderwaterColour(), dim, SmoothStep(-6, 22, down)), deep,
                           SmoothStep(8, 70, down));
    const float sunward = RegionsAt(point.fromLight).towards;
    return body * (1 + 0.25f * sunward) +
           vec3{0.16f, 0.34f, 0.32f} * (Shafts(point) * (1 + 0.6f * sunward));
}

vec3 BelowHorizon(const SkyPoint& point) {
    SkyPoint onHorizon = point;
    onHorizon.elevation = 0;
    return Lerp(Water(point), Scenery(onHorizon), SmoothStep(waterStart, rimEnd, point.elevation));
}

} // namespace

vec3 DuskColour(vec3 direction) {
    const SkyPoint point = MakeSkyPoint(direction);
    const vec3 scene = point.elevation >= 0 ? Scenery(point) : BelowHorizon(point);
    const vec3 colour = AddFarSea(point, scene);
    return {Clamp01(colour.x), Clamp01(colour.y), Clamp01(colour.z)};
}

} // namespace Art
