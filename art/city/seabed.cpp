// What lies under the water; declared with the rest of the waterfront.
#include "art/city/waterfront.h"

#include "art/city/houses.h"
#include "art/city/quarter.h"
#include "art/common/noise.h"

namespace Art {

namespace {

constexpr float cellSize = 5.5f;
constexpr float west = -75;
constexpr float east = 135;
constexpr float north = -100;
constexpr float south = -20;

const Paint stone = Plain(Material::Stone);
const Finish stony{stone, stone};

/// How much of the quarter's level ground is under a point: 1 in its streets, 0 far from it.
float QuarterShare(vec2 p) {
    const float aside = std::max(std::abs(p.x - 30) - 34, 0.0f);
    const float before = std::max(-100 - p.y, 0.0f);
    return 1 - SmoothStep(0, 30, std::max(aside, before));
}

/// Height of the sea bed at a ground point.
float SeaBedHeight(vec2 p, unsigned seed) {
    const float hills = Fbm2(p * 0.045f, seed, 3) * 3.2f;
    const float ridge = (1 - std::abs(Noise2(p * 0.07f, seed + 9))) * 2.2f;
    const float level = quarterFloor - 0.3f + 0.45f * Noise2(p * 0.16f, seed + 4);
    return Lerp(-15.5f + hills + ridge, level, QuarterShare(p));
}

void AddGround(Builder& b, unsigned seed) {
    const auto corner = [&](int i, int j) {
        const vec2 p{west + cellSize * static_cast<float>(i),
                     north + cellSize * static_cast<float>(j)};
        return vec3{p.x, SeaBedHeight(p, seed), p.y};
    };
    const vec2 tile = FileOf(Material::SeaBed).tile;
    for (int j = 0; north + cellSize * static_cast<float>(j) < south; ++j) {
        for (int i = 0; west + cellSize * static_cast<float>(i) < east; ++i) {
            const vec3 c[] = {corner(i, j + 1), corner(i + 1, j + 1), corner(i + 1, j),
                              corner(i, j)};
            const Paint paint{
                Material::SeaBed, {c[0].x / tile.x, -c[0].z / tile.y}, {1 / tile.x, 1 / tile.y}};
            b.Facet({c[0], c[1], c[2]}, paint);
            // The second triangle starts at its own corner but keeps the plane's pattern.
            const Paint second{
                Material::SeaBed, {c[2].x / tile.x, -c[2].z / tile.y}, {-1 / tile.x, -1 / tile.y}};
            b.Facet({c[2], c[3], c[0]}, second);
        }
    }
}

void AddRock(Builder& b, vec2 at, float size, unsigned seed) {
    std::vector<vec2> ring = Ring(at, size, 6, HashUnit(seed) * 6);
    for (std::size_t i = 0; i < ring.size(); ++i)
        ring[i] = at + (ring[i] - at) * (0.7f + 0.6f * HashUnit(seed, static_cast<unsigned>(i)));
    const float y = SeaBedHeight(at, 1) - std::min(1.0f, 0.5f * size);
    const float middle = y + size * (0.9f + HashUnit(seed, 11));
    const Paint rock = Plain(Material::SeaBed, {at.x, at.y});
    std::vector<vec2> upper;
    upper.reserve(ring.size());
    const vec2 lean = at + vec2{size * 0.3f, size * 0.2f};
    for (const vec2 p : ring)
        upper.push_back(lean + (p - lean) * 0.62f);
    AddTaper(b, ring, lean, y, middle, 0.62f, {rock, rock}, false);
    AddTaper(b, upper, lean, middle, middle + size * (0.4f + 0.8f * HashUnit(seed, 5)), 0.15f,
             {rock, rock});
}

/// Great arches under water that carry the promenade of the north front.
void AddFootArcade(Builder& b, float x0, float x1, float z, float depth) {
    constexpr float columnPitch = 6;
    constexpr float arcadeTop = -0.8f;
    const int count = static_cast<int>((x1 - x0) / columnPitch);
    b.SetPlace({{x1, 0, z}, {-1, 0}});
    const float length = x1 - x0;
    ArchWall wall{.x0 = 0,
                  .x1 = length,
                  .y0 = seaFloor,
                  .y1 = arcadeTop,
                  .z = 0,
                  .thickness = depth,
                  .back = false,
                  .segments = 8};
    for (int i = 0; i < count; ++i) {
        const float middle = length * (static_cast<float>(i) + 0.5f) / static_cast<float>(count);
        wall.arches.push_back({middle - 2.1f, middle + 2.1f, -4.2f});
    }
    AddArchWall(b, wall, stone, stone);
    for (int i = 0; i <= count; ++i) {
        const float x = length * static_cast<float>(i) / static_cast<float>(count);
        AddBox(b, {{x - 0.55f, x + 0.55f}, {seaFloor, -3.4f}, {0, 0.9f}}, stony);
        AddTaper(b, {{x - 0.55f, 0}, {x + 0.55f, 0}, {x + 0.55f, 0.9f}, {x - 0.55f, 0.9f}}, {x, 0},
                 -3.4f, -2.2f, 0.1f, stony);
    }
    b.SetPlace({});
}

/// Rows of columns that carry the pavement between the arcade and the ground.
void AddColumnForest(Builder& b, unsigned seed) {
    for (int j = 0; j < 2; ++j) {
        for (int i = 0; i < 10; ++i) {
            const vec2 at{-9 + 5.8f * static_cast<float>(i), -35.5f + 4.8f * static_cast<float>(j)};
            const float foot = SeaBedHeight(at, seed) - 0.5f;
            AddTaper(b, Ring(at, 0.75f, 6), at, foot, -2.2f, 0.8f, stony, false);
            AddTaper(b, Ring(at, 0.62f, 6), at, -2.2f, -0.8f, 2.2f, stony, false);
        }
    }
}

/// Closes the view from the flight under water, where the sea bed ends, before the sky shows
/// under the horizon. Haze hides all but its colour, so it is wider than stones of their own size
/// could make it: view marks leave a surface 32 repeats to each side.
void AddBackdrop(Builder& b) {
    constexpr float course = 40; // units a repeat
    b.Rect({290, seaFloor, -9}, {-1, 0, 0}, {0, 1, 0}, 520, Builder::splitLow - seaFloor,
           {Material::Stone, {0, 0}, {1 / course, 1 / course}});
}

} // namespace

void AddVault(Builder& b, const std::vector<vec2>& pavement, const std::vector<vec2>& ground) {
    b.SetPlace({});
    AddQuay(b, pavement);
    AddPrism(b, ground, seaFloor, -0.9f, stony);
    // The slab's underside, as one piece over the outline's box from the sea to the ground.
    b.Rect({-12, -0.8f, -41}, {1, 0, 0}, {0, 0, 1}, 58, 22, stone);
}

void AddSeaBed(Builder& b, unsigned seed) {
    b.SetPlace({});
    AddGround(b, seed);
    AddQuarter(b, seed);
    AddFootArcade(b, -12, 46, -41, 1.4f);
    AddColumnForest(b, seed);
    AddBackdrop(b);
    for (unsigned i = 0; i < 34; ++i) {
        const vec2 at{Lerp(-50.0f, 110.0f, HashUnit(seed, i, 40)),
                      Lerp(-88.0f, -46.0f, HashUnit(seed, i, 41))};
        // Among the streets there is rubble only.
        const float size = 1.2f + 2.6f * HashUnit(seed, i, 42);
        if (std::abs(at.x - 30) > 5)
            AddRock(b, at, QuarterShare(at) > 0.5f ? size * 0.22f : size, Hash(seed, i));
    }
}

} // namespace Art
