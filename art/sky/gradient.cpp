#include "art/sky/gradient.h"

#include "art/common/palette.h"

#include <array>

namespace Art {
namespace {

constexpr float degreesPerRadian = 180.0f / pi;

/// One height of a vertical gradient; the three regions share the heights.
struct Stop {
    float elevation;
    vec3 towards;
    vec3 across;
    vec3 away;
};

// Towards the light an afterglow that cools upwards; away from it the shadow of the earth, blue
// and low, under a rose-coloured belt. All three meet at the same zenith.
constexpr vec3 zenithColour = {0.020f, 0.036f, 0.105f};
constexpr std::array<Stop, 9> stops = {{
    {0, {0.74f, 0.36f, 0.15f}, {0.33f, 0.23f, 0.31f}, {0.105f, 0.145f, 0.28f}},
    {2.5f, {0.65f, 0.30f, 0.17f}, {0.28f, 0.22f, 0.34f}, {0.155f, 0.175f, 0.33f}},
    {6, {0.41f, 0.205f, 0.24f}, {0.20f, 0.19f, 0.35f}, {0.245f, 0.205f, 0.36f}},
    {10, {0.225f, 0.155f, 0.285f}, {0.140f, 0.160f, 0.32f}, {0.19f, 0.18f, 0.35f}},
    {16, {0.135f, 0.135f, 0.285f}, {0.090f, 0.125f, 0.28f}, {0.105f, 0.135f, 0.29f}},
    {26, {0.115f, 0.120f, 0.265f}, {0.100f, 0.112f, 0.25f}, {0.165f, 0.150f, 0.30f}},
    {45, {0.088f, 0.092f, 0.215f}, {0.080f, 0.086f, 0.205f}, {0.135f, 0.125f, 0.26f}},
    {68, {0.028f, 0.046f, 0.125f}, {0.027f, 0.043f, 0.12f}, {0.026f, 0.042f, 0.119f}},
    {90, zenithColour, zenithColour, zenithColour},
}};

vec3 AtRegions(const Stop& stop, const Regions& regions) {
    return MixRegions(regions, stop.towards, stop.across, stop.away);
}

/// The index of the stop at or below the elevation, at most the last but one.
std::size_t StopBelow(float elevation) {
    std::size_t below = 0;
    while (below + 2 < stops.size() && stops[below + 1].elevation <= elevation)
        ++below;
    return below;
}

/// Slope of the gradient at a stop, by its neighbours, so that no stop shows as a band.
vec3 SlopeAt(std::size_t index, const Regions& regions) {
    const Stop& before = stops[index == 0 ? 0 : index - 1];
    const Stop& after = stops[std::min(index + 1, stops.size() - 1)];
    return (AtRegions(after, regions) - AtRegions(before, regions)) /
           (after.elevation - before.elevation);
}

/// The glare that the light leaves in the haze below it.
vec3 Afterglow(const SkyPoint& point) {
    const float sideways = point.fromLight / 20;
    const float upwards = (point.elevation - 2) / 5;
    return vec3{0.16f, 0.15f, 0.06f} * std::exp(-sideways * sideways - upwards * upwards);
}

} // namespace

SkyPoint MakeSkyPoint(vec3 direction) {
    const vec2 flat = {direction.x, direction.z};
    const float length = Length(flat);
    const vec2 heading = length > 1e-6f ? flat * (1 / length) : vec2{1, 0};
    const vec3 light = LightDirection();
    const vec2 lightFlat = {light.x, light.z};
    const float cosine = Dot(heading, lightFlat) / Length(lightFlat);
    return {direction, std::asin(std::clamp(direction.y, -1.0f, 1.0f)) * degreesPerRadian,
            std::acos(std::clamp(cosine, -1.0f, 1.0f)) * degreesPerRadian, heading};
}

Regions RegionsAt(float fromLight) {
    const float towards = 1 - SmoothStep(0, 95, fromLight);
    const float away = SmoothStep(80, 165, fromLight);
    return {towards, (1 - towards) * (1 - away), (1 - towards) * away};
}

vec3 MixRegions(const Regions& regions, vec3 towards, vec3 across, vec3 away) {
    return towards * regions.towards + across * regions.across + away * regions.away;
}

vec3 ClearSky(const SkyPoint& point) {
    const float elevation = std::max(point.elevation, 0.0f);
    const Regions regions = RegionsAt(point.fromLight);
    const std::size_t index = StopBelow(elevation);
    const float span = stops[index + 1].elevation - stops[index].elevation;
    const float t = (elevation - stops[index].elevation) / span;
    // Cubic Hermite interpolation between the two stops.
    const vec3 from = AtRegions(stops[index], regions);
    const vec3 to = AtRegions(stops[index + 1], regions);
    const vec3 curve = from * ((1 + 2 * t) * (1 - t) * (1 - t)) + to * (t * t * (3 - 2 * t)) +
                       SlopeAt(index, regions) * (span * t * (1 - t) * (1 - t)) -
                       SlopeAt(index + 1, regions) * (span * t * t * (1 - t));
    return curve + Afterglow({point.direction, elevation, point.fromLight, point.heading});
}

} // namespace Art
