#include "art/sky/clouds.h"

#include "art/common/noise.h"

namespace Art {
namespace {

/// A cloud's colours in the three regions of the horizon.
struct Tint {
    vec3 towards;
    vec3 across;
    vec3 away;
};

vec3 ColourOf(const Tint& tint, float fromLight) {
    return MixRegions(RegionsAt(fromLight), tint.towards, tint.across, tint.away);
}

/// Paints over part of what is behind.
Clouded Over(const Clouded& behind, vec3 colour, float opacity) {
    return {Lerp(behind.colour, colour, opacity), behind.open * (1 - opacity)};
}

/// Noise on the cylinder around the viewer: it closes at 360 degrees by construction.
/// `around` is cells per radian, `up` cells per degree.
float Wrapped(const SkyPoint& point, float around, float up, std::uint32_t seed, int octaves) {
    return Fbm3({point.heading.x * around, point.elevation * up, point.heading.y * around}, seed,
                octaves);
}

// ---- Stratus: long bars, lit from below ---------------------------------------------------

constexpr Tint barLitTint = {{0.86f, 0.46f, 0.22f}, {0.64f, 0.35f, 0.32f}, {0.48f, 0.31f, 0.40f}};
constexpr Tint barCoreTint = {{0.27f, 0.13f, 0.19f}, {0.17f, 0.14f, 0.26f}, {0.135f, 0.14f, 0.28f}};
constexpr float barsTop = 27; // degrees

/// How thick the bars are, about -1..1; cloud begins a little above 0.
float BarField(const SkyPoint& point) {
    SkyPoint bent = point;
    bent.elevation += 1.3f * Wrapped(point, 3.1f, 0.16f, 41, 3);
    const float bars = Wrapped(bent, 2.3f, 0.46f, 17, 5);
    const float fields = Wrapped(point, 1.1f, 0.09f, 34, 2);
    const float high = SmoothStep(9, 24, point.elevation);
    return 1.15f * bars + 0.75f * fields - 0.28f * high;
}

Clouded AddBars(const SkyPoint& point, const Clouded& behind) {
    if (point.elevation >= barsTop)
        return behind;
    const float field = BarField(point);
    const float density = SmoothStep(0.02f, 0.42f, field) *
                          SmoothStep(0.6f, 3.4f, point.elevation) *
                          (1 - SmoothStep(17, barsTop, point.elevation));
    if (density <= 0)
        return behind;
    // Where the cloud thins out downwards its underside faces the low light.
    SkyPoint below = point;
    below.elevation -= 0.55f;
    const float underside = Clamp01(0.40f + 2.3f * (field - BarField(below)));
    const float thin = 1 - SmoothStep(0.05f, 0.75f, field);
    const float lit = Clamp01(0.72f * underside + 0.34f * thin);
    const vec3 colour =
        Lerp(ColourOf(barCoreTint, point.fromLight), ColourOf(barLitTint, point.fromLight), lit);
    return Over(behind, colour, 0.82f * density);
}

// ---- Embers: the last bars before the glow, dark above and burning below ---------------------

constexpr vec3 emberCore = {0.34f, 0.145f, 0.185f};
constexpr vec3 emberEdge = {1.0f, 0.64f, 0.27f};

/// How thick the embers are, about -1..1.
float EmberField(const SkyPoint& point) {
    SkyPoint bent = point;
    bent.elevation += 0.9f * Wrapped(point, 4.0f, 0.2f, 63, 2);
    return Wrapped(bent, 2.6f, 0.62f, 67, 3) + 0.45f * Wrapped(point, 1.3f, 0.15f, 71, 2);
}

Clouded AddEmbers(const SkyPoint& point, const Clouded& behind) {
    const float before = 1 - SmoothStep(45, 85, point.fromLight);
    const float density = SmoothStep(-0.02f, 0.30f, EmberField(point)) * before *
                          SmoothStep(0.9f, 2.2f, point.elevation) *
                          (1 - SmoothStep(9, 15, point.elevation));
    if (density <= 0)
        return behind;
    SkyPoint below = point;
    below.elevation -= 0.5f;
    const float underside = Clamp01(2.6f * (EmberField(point) - EmberField(below)));
    return Over(behind, Lerp(emberCore, emberEdge, underside), 0.78f * density);
}

// ---- Cumulus: banks that stand on the horizon ----------------------------------------------

/// One row of cloud heaps, seen at one distance.
struct Bank {
    std::uint32_t seed;
    float cells;  ///< heaps per radian
    float base;   ///< degrees of height that stand nearly everywhere
    float height; ///< degrees added where the row towers
    float haze;   ///< how much of the horizon's colour lies in front of it, 0..1
};

constexpr Bank banks[] = {
    {.seed = 101, .cells = 2.4f, .base = -0.4f, .height = 7.0f, .haze = 0.36f},
    {.seed = 207, .cells = 4.0f, .base = -1.0f, .height = 5.2f, .haze = 0.12f},
};
constexpr Tint bankLitTint = {{0.90f, 0.53f, 0.29f}, {0.74f, 0.42f, 0.36f}, {0.60f, 0.40f, 0.46f}};
constexpr Tint bankBodyTint = {{0.28f, 0.14f, 0.19f}, {0.18f, 0.15f, 0.27f}, {0.14f, 0.15f, 0.30f}};

/// Heaps of three sizes: folded noise has sharp valleys and round tops, like cauliflower.
float Heaps(const SkyPoint& point, std::uint32_t seed) {
    vec3 p = {point.heading.x * 8, point.elevation * 0.15f, point.heading.y * 8};
    float sum = 0;
    float size = 1.9f;
    for (std::uint32_t octave = 1; octave <= 4; ++octave) {
        sum += size * (0.5f - 2.0f * std::abs(Noise3(p, seed + octave)));
        p = p * 2.13f;
        size *= 0.43f;
    }
    return sum;
}

/// Degrees by which the point lies under the bank's outline; negative above it.
float BankDepth(const SkyPoint& point, const Bank& bank) {
    const vec3 around = {point.heading.x * bank.cells, 0, point.heading.y * bank.cells};
    const float towers = SmoothStep(-0.04f, 0.62f, Fbm3(around, bank.seed, 3));
    const float outline = bank.base + bank.height * towers;
    return outline + Heaps(point, bank.seed) * (0.45f + 0.75f * towers) - point.elevation;
}

Clouded AddBank(const SkyPoint& point, const Clouded& behind, const Bank& bank) {
    constexpr float highestHeap = 2.2f; // degrees above the smooth outline
    if (point.elevation > bank.base + bank.height + highestHeap)
        return behind;
    const float depth = BankDepth(point, bank);
    if (depth <= 0)
        return behind;
    // Heaps catch the light where they turn upwards; the gradient of the depth tells where, near
    // by for the small ones and further off for the large.
    const auto turned = [&](float step) {
        SkyPoint above = point;
        above.elevation += step;
        return std::clamp((depth - BankDepth(above, bank)) / step - 1, -1.0f, 1.0f);
    };
    const float relief = 0.55f * turned(0.35f) + 0.75f * turned(1.5f);
    const float top = std::exp(-depth * 0.9f);
    const float lit = Clamp01(0.46f * top + (0.30f + 0.42f * relief) * std::exp(-depth * 0.12f));
    vec3 colour =
        Lerp(ColourOf(bankBodyTint, point.fromLight), ColourOf(bankLitTint, point.fromLight), lit);
    const vec3 horizon = ClearSky({point.direction, 0.8f, point.fromLight, point.heading});
    const float mist =
        bank.haze + (1 - bank.haze) * (1 - SmoothStep(0, 3.4f, point.elevation)) * 0.8f;
    colour = Lerp(colour, horizon, mist);
    return Over(behind, colour, SmoothStep(0, 0.55f, depth));
}

// ---- Cirrus: thin streaks high up ------------------------------------------------------------

constexpr Tint cirrusTint = {{0.55f, 0.33f, 0.37f}, {0.36f, 0.27f, 0.40f}, {0.29f, 0.25f, 0.40f}};

float CirrusDensity(const SkyPoint& point) {
    if (point.elevation <= 8)
        return 0;
    // A flat layer overhead; the small offset keeps its far end from shrinking to a point.
    const float distance = 1 / (point.direction.y + 0.06f);
    const vec2 p = {point.direction.x * distance, point.direction.z * distance};
    const vec2 wind = {p.x * 0.86f + p.y * 0.51f, p.y * 0.86f - p.x * 0.51f};
    const float bend = Fbm2(p * 0.7f, 57, 3);
    const float streaks = Fbm2({wind.x * 0.55f, wind.y * 2.6f + 1.6f * bend}, 71, 5);
    const float fields = Fbm2(p * 0.35f, 83, 2);
    return SmoothStep(0.02f, 0.65f, streaks + 0.9f * fields) * SmoothStep(8, 22, point.elevation) *
           (1 - 0.75f * SmoothStep(40, 85, point.elevation));
}

Clouded AddCirrus(const SkyPoint& point, const Clouded& behind) {
    const float dim = 1 - 0.25f * SmoothStep(30, 70, point.elevation);
    return Over(behind, ColourOf(cirrusTint, point.fromLight) * dim,
                (0.42f + 0.30f * SmoothStep(16, 30, point.elevation)) * CirrusDensity(point));
}

} // namespace

Clouded AddClouds(const SkyPoint& point, vec3 behind) {
    Clouded sky = AddEmbers(point, AddBars(point, AddCirrus(point, {behind, 1})));
    for (const Bank& bank : banks)
        sky = AddBank(point, sky, bank);
    return sky;
}

} // namespace Art
