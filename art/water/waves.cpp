#include "art/water/waves.h"

#include "art/common/noise.h"
#include "art/common/parallel.h"

#include <complex>
#include <numbers>

namespace Art {
namespace {

/// One sine wave that fits the tile: `x` and `y` whole periods along its sides.
struct Wave {
    int x;
    int y;
    float phase;
    vec2 slope; ///< amplitude of its slope along s and t
};

/// A range of wave lengths and how steep all its waves together are.
struct Scale {
    float fewest;  ///< periods per tile of its longest waves
    float most;    ///< periods per tile of its shortest waves
    int waves;     ///< how many are drawn from it
    float steep;   ///< root mean square slope of their sum
    float gusting; ///< 0: the same everywhere; 1: only where the gusts blow
    float across;  ///< what it moves the picture sideways, as a share of up and down
};

// The tile is twenty units wide: swell of seven to three units, which is all that is left where the
// water is far, waves of three to one that break the edges of what is mirrored, and ripples that
// make it tremble near the eye. Nothing is longer, or one would see how soon it comes again.
//
// The mirrored picture is ten times as wide as high and is shifted by fractions of either side, so
// the same slope along s moves it ten times as far. A flat look over water sees it the other way
// round: waves draw lights out into columns and hardly move them aside. The shorter a wave, the
// less it may: what neighbouring pixels fetch from far apart tears the picture into crumbs that
// glitter.
constexpr Scale scales[] = {
    {.fewest = 3, .most = 6, .waves = 26, .steep = 0.11f, .gusting = 0.0f, .across = 0.14f},
    {.fewest = 6, .most = 16, .waves = 44, .steep = 0.11f, .gusting = 0.15f, .across = 0.10f},
    {.fewest = 16, .most = 45, .waves = 60, .steep = 0.11f, .gusting = 0.5f, .across = 0.05f},
    {.fewest = 45, .most = 140, .waves = 80, .steep = 0.055f, .gusting = 0.8f, .across = 0.03f},
};

// The third part of the normals. The shader makes them unit length, so the smaller it is the
// farther a wave of the same slope moves the picture, up to the whole of what the shader allows.
constexpr float calm = 0.38f;  // a mirror, in the lanes between the gusts
constexpr float windy = 0.20f; // in pieces

Wave DrawWave(const Scale& scale, Random& random) {
    for (;;) {
        const float length = scale.fewest * std::pow(scale.most / scale.fewest, random.Unit());
        const float angle = random.Range(0, 2 * pi);
        const int x = static_cast<int>(std::lround(length * std::cos(angle)));
        const int y = static_cast<int>(std::lround(length * std::sin(angle)));
        if (x == 0 && y == 0)
            continue;
        // A sine of amplitude 1 has a root mean square of sqrt(1/2). The eyes look along all
        // directions, so wherever a wave runs to, it moves the picture up and down.
        const float each = scale.steep * std::sqrt(2.0f / static_cast<float>(scale.waves));
        const float across = random.Chance(0.5f) ? scale.across : -scale.across;
        return {x, y, random.Range(0, 2 * pi), {each * across, each}};
    }
}

std::vector<Wave> DrawWaves(const Scale& scale, std::uint32_t seed) {
    Random random(seed);
    std::vector<Wave> waves;
    waves.reserve(static_cast<std::size_t>(scale.waves));
    for (int i = 0; i < scale.waves; ++i)
        waves.push_back(DrawWave(scale, random));
    return waves;
}

/// Adds one wave's slopes to one row. The sine is carried from texel to texel by a rotation.
void AddToRow(const Wave& wave, int size, int t, std::vector<vec2>& row) {
    const double step = 2 * std::numbers::pi / size;
    const std::complex<double> rotation = std::polar(1.0, step * wave.x);
    std::complex<double> at = std::polar(1.0, step * wave.y * t + static_cast<double>(wave.phase));
    for (vec2& slope : row) {
        slope = slope + wave.slope * static_cast<float>(at.imag());
        at *= rotation;
    }
}

/// How strongly the wind blows, 0..1, in patches of a few units.
float Gust(int s, int t, int size) {
    constexpr int patches = 5; // along a side of the tile
    const float scale = static_cast<float>(patches) / static_cast<float>(size);
    const vec2 p = {static_cast<float>(s) * scale, static_cast<float>(t) * scale};
    return SmoothStep(-0.45f, 0.45f, Fbm2(p, 907, 3, patches));
}

void FillRow(const std::vector<std::vector<Wave>>& sea, int t, SlopeMap& map) {
    std::vector<vec2> row(static_cast<std::size_t>(map.size));
    for (int s = 0; s < map.size; ++s)
        map.wind[static_cast<std::size_t>(t) * map.size + s] = Gust(s, t, map.size);
    for (std::size_t i = 0; i < sea.size(); ++i) {
        row.assign(row.size(), {});
        for (const Wave& wave : sea[i])
            AddToRow(wave, map.size, t, row);
        for (int s = 0; s < map.size; ++s) {
            const float share = Lerp(1.0f, 1.5f * map.Wind(s, t), scales[i].gusting);
            vec2& slope = map.slopes[static_cast<std::size_t>(t) * map.size + s];
            slope = slope + row[s] * share;
        }
    }
}

/// Takes the mean away, which the patches of the gusts leave behind.
void Level(SlopeMap& map) {
    double x = 0;
    double y = 0;
    for (const vec2& slope : map.slopes) {
        x += slope.x;
        y += slope.y;
    }
    const auto count = static_cast<double>(map.slopes.size());
    const vec2 mean = {static_cast<float>(x / count), static_cast<float>(y / count)};
    for (vec2& slope : map.slopes)
        slope = slope - mean;
}

} // namespace

SlopeMap MakeWaves(int size) {
    std::vector<std::vector<Wave>> sea;
    for (const Scale& scale : scales)
        sea.push_back(DrawWaves(scale, 700 + static_cast<std::uint32_t>(sea.size())));
    const std::size_t texels = static_cast<std::size_t>(size) * size;
    SlopeMap map{size, std::vector<vec2>(texels), std::vector<float>(texels)};
    ForEachIndex(size, 0, [&](int t) { FillRow(sea, t, map); });
    Level(map);
    return map;
}

Picture NormalPicture(const SlopeMap& map) {
    Picture picture(map.size, map.size);
    for (int t = 0; t < map.size; ++t)
        for (int s = 0; s < map.size; ++s) {
            const vec2 slope = map.At(s, t);
            const vec3 normal{-slope.x, -slope.y, Lerp(calm, windy, map.Wind(s, t))};
            picture.At(s, map.size - 1 - t) = {0.5f + 0.5f * normal.x, 0.5f + 0.5f * normal.y,
                                               0.5f + 0.5f * normal.z, 1};
        }
    return picture;
}

} // namespace Art
