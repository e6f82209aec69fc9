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
};

// The tile is twenty units wide: swell of ten to four units that bends whole reflections, waves of
// four to one that break their edges, and ripples that make them sparkle near the eye.
constexpr Scale scales[] = {
    {.fewest = 2, .most = 5, .waves = 14, .steep = 0.14f, .gusting = 0.0f},
    {.fewest = 5, .most = 12, .waves = 30, .steep = 0.16f, .gusting = 0.25f},
    {.fewest = 12, .most = 30, .waves = 48, .steep = 0.11f, .gusting = 0.6f},
    {.fewest = 30, .most = 90, .waves = 60, .steep = 0.07f, .gusting = 0.9f},
};

// The mirrored picture is ten times as wide as high and is shifted by fractions of either side, so
// the same slope along s moves it ten times as far; waves run mostly along t to balance this.
constexpr float acrossShare = 0.45f;

Wave DrawWave(const Scale& scale, Random& random) {
    for (;;) {
        const float length = scale.fewest * std::pow(scale.most / scale.fewest, random.Unit());
        const float angle = random.Range(0, 2 * pi);
        const int x = static_cast<int>(std::lround(length * std::cos(angle)));
        const int y = static_cast<int>(std::lround(length * std::sin(angle)));
        if (x == 0 && y == 0)
            continue;
        const float periods = std::sqrt(static_cast<float>(x * x + y * y));
        const vec2 heading = {static_cast<float>(x) / periods, static_cast<float>(y) / periods};
        // A sine of amplitude 1 has a root mean square of sqrt(1/2).
        const float each = scale.steep * std::sqrt(2.0f / static_cast<float>(scale.waves));
        const vec2 slope = {heading.x * each * acrossShare, heading.y * each};
        return {x, y, random.Range(0, 2 * pi), slope};
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
    const float scale = 4.0f / static_cast<float>(size);
    const vec2 p = {static_cast<float>(s) * scale, static_cast<float>(t) * scale};
    return SmoothStep(-0.45f, 0.55f, Fbm2(p, 907, 3, 4));
}

void FillRow(const std::vector<std::vector<Wave>>& sea, int t, SlopeMap& map) {
    std::vector<vec2> row(static_cast<std::size_t>(map.size));
    for (std::size_t i = 0; i < sea.size(); ++i) {
        row.assign(row.size(), {});
        for (const Wave& wave : sea[i])
            AddToRow(wave, map.size, t, row);
        for (int s = 0; s < map.size; ++s) {
            const float share = Lerp(1.0f, 1.7f * Gust(s, t, map.size), scales[i].gusting);
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
    SlopeMap map{size, std::vector<vec2>(static_cast<std::size_t>(size) * size)};
    ForEachIndex(size, 0, [&](int t) { FillRow(sea, t, map); });
    Level(map);
    return map;
}

Picture NormalPicture(const SlopeMap& map) {
    Picture picture(map.size, map.size);
    for (int t = 0; t < map.size; ++t)
        for (int s = 0; s < map.size; ++s) {
            const vec2 slope = map.At(s, t);
            const vec3 normal = Normalized(vec3{-slope.x, -slope.y, 1});
            picture.At(s, map.size - 1 - t) = {0.5f + 0.5f * normal.x, 0.5f + 0.5f * normal.y,
                                               0.5f + 0.5f * normal.z, 1};
        }
    return picture;
}

} // namespace Art
