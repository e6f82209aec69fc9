#include "art/city/quarter.h"

#include "art/city/parts.h"
#include "art/common/noise.h"

namespace Art {

namespace {

// Its walls stand a little in the ground.
constexpr float sunkIn = 0.5f;
constexpr float foot = quarterFloor - sunkIn;
// The flight's line, which the street follows.
constexpr float axis = 30;

const Paint stone = Plain(Material::Stone);
const Paint pale = Plain(Material::Trim, {0.7f, 1.9f});
const Paint tiles = Plain(Material::Roof);
const Finish stony{stone, stone};
const Finish carved{pale, pale};
const Finish roofed{stone, tiles};

/// A place on the quarter's ground whose local +z points to `out`. Its y = 0 is under the
/// ground: nothing of a building here may be lower, as what crosses y = 0 is parted there.
Place Ground(vec2 at, vec2 out) {
    return {{at.x, foot, at.y}, {out.y, -out.x}};
}

enum class Top { Gable, Hip, Flat, Chimney };

/// A drowned house: the middle of its front, the way that looks and its size.
struct House {
    vec2 at;
    vec2 out;
    float width;
    float depth;
    float height;
    Material material;
    Top top;
};

void AddTop(Builder& b, const Box& walls, Top top) {
    const float rise = std::min(1.3f, -0.3f - foot - walls.y1);
    if (top == Top::Flat || rise < 0.4f) {
        AddBox(b,
               {{walls.x0 - 0.1f, walls.x1 + 0.1f},
                {walls.y1, walls.y1 + 0.2f},
                {walls.z0, walls.z1 + 0.12f}},
               carved);
        return;
    }
    if (top == Top::Hip)
        AddHip(b, walls, rise, 0.25f, tiles);
    else
        AddGableAlongX(b, walls, rise, 0.2f, roofed);
    if (top == Top::Chimney)
        AddBox(b,
               {{walls.x1 - 1.1f, walls.x1 - 0.6f},
                {walls.y1, walls.y1 + rise + 0.25f},
                {walls.z1 - 1.6f, walls.z1 - 1.1f}},
               stony);
}

void AddHouse(Builder& b, const House& house, unsigned seed) {
    b.SetPlace(Ground(house.at, house.out));
    const Box walls{
        {-house.width / 2, house.width / 2}, {0, house.height + sunkIn}, {-house.depth, 0}};
    AddFacadeBox(b, walls, house.material, tiles, seed);
    AddTop(b, walls, house.top);
}

constexpr vec2 toWest{-1, 0};
constexpr vec2 toEast{1, 0};
constexpr vec2 toNorth{0, -1};

// What stands along the street and round the square; x grows to the left of the picture.
const std::vector<House> houses = {
    {{22.4f, -95.0f}, toEast, 4, 5, 3.4f, Material::HouseWarm, Top::Gable},
    {{21.8f, -91.0f}, toEast, 4, 5, 4.6f, Material::HouseCool, Top::Chimney},
    {{22.6f, -87.4f}, toEast, 3, 4, 3.0f, Material::Palace, Top::Flat},
    {{38.4f, -96.0f}, toWest, 4, 5, 4.2f, Material::HouseCool, Top::Chimney},
    {{37.6f, -91.6f}, toWest, 5, 5, 3.2f, Material::Palace, Top::Hip},
    {{38.6f, -87.0f}, toWest, 4, 5, 5.0f, Material::HouseWarm, Top::Gable},
    // The second row, over whose roofs one looks.
    {{13.6f, -93.0f}, toNorth, 5, 5, 5.4f, Material::HouseWarm, Top::Hip},
    {{7.0f, -90.0f}, toNorth, 4, 5, 4.2f, Material::HouseCool, Top::Gable},
    {{47.8f, -92.4f}, toNorth, 5, 5, 5.4f, Material::HouseCool, Top::Hip},
    {{55.0f, -89.4f}, toNorth, 4, 5, 4.0f, Material::HouseWarm, Top::Chimney},
    // East of the square, behind the wreck.
    {{50.0f, -83.0f}, toWest, 4, 5, 4.0f, Material::HouseWarm, Top::Gable},
    {{49.4f, -78.6f}, toWest, 5, 5, 5.6f, Material::Palace, Top::Hip},
    {{50.2f, -74.0f}, toWest, 4, 5, 4.6f, Material::HouseCool, Top::Chimney},
    {{49.6f, -69.8f}, toWest, 4, 5, 3.6f, Material::HouseWarm, Top::Gable},
    // On both sides of the gate.
    {{45.0f, -65.2f}, toNorth, 5, 4, 4.4f, Material::Palace, Top::Hip},
    {{14.6f, -65.2f}, toNorth, 5, 4, 5.0f, Material::HouseCool, Top::Gable},
    {{9.0f, -65.6f}, toNorth, 5, 4, 3.6f, Material::HouseWarm, Top::Chimney},
    {{52.0f, -63.0f}, toNorth, 6, 5, 5.4f, Material::HouseWarm, Top::Gable},
    // Far to the sides: outlines in the haze.
    {{66.0f, -80.0f}, toNorth, 6, 5, 4.6f, Material::HouseCool, Top::Gable},
    {{74.0f, -72.0f}, toNorth, 6, 5, 5.4f, Material::HouseWarm, Top::Hip},
    {{63.0f, -66.0f}, toNorth, 6, 5, 5.6f, Material::Palace, Top::Gable},
    {{-4.0f, -82.0f}, toNorth, 6, 5, 4.8f, Material::HouseWarm, Top::Gable},
    {{-14.0f, -74.0f}, toNorth, 6, 5, 5.4f, Material::HouseCool, Top::Hip},
    {{-6.0f, -50.0f}, toEast, 6, 5, 4.4f, Material::HouseWarm, Top::Gable},
    {{66.0f, -50.0f}, toWest, 6, 5, 4.4f, Material::HouseCool, Top::Hip},
};

/// Slabs of a street, cut so that the haze is right at every corner.
void AddPaving(Builder& b, Range x, Range z, float y) {
    constexpr float slab = 6;
    for (float z0 = z.low; z0 < z.high - 0.01f; z0 += slab)
        for (float x0 = x.low; x0 < x.high - 0.01f; x0 += slab) {
            const float x1 = std::min(x0 + slab, x.high);
            const float z1 = std::min(z0 + slab, z.high);
            b.Rect({x0, y, z1}, {1, 0, 0}, {0, 0, -1}, x1 - x0, z1 - z0,
                   Plain(Material::Stone, {x0, -z1}));
        }
}

/// West of the square: an open hall of round arches with a storey over it.
void AddArcade(Builder& b) {
    constexpr int bays = 6;
    constexpr float bay = 2.9f;
    constexpr float length = bays * bay;
    constexpr float storey = 3.5f + sunkIn;
    b.SetPlace(Ground({14, -84 + length}, toEast));
    ArchWall front{.x0 = 0,
                   .x1 = length,
                   .y0 = 0,
                   .y1 = storey,
                   .z = 0,
                   .thickness = 0.7f,
                   .back = false,
                   .ends = true,
                   .segments = 6};
    for (int i = 0; i < bays; ++i) {
        const float middle = bay * (static_cast<float>(i) + 0.5f);
        front.arches.push_back({middle - 1.05f, middle + 1.05f, 1.9f + sunkIn});
    }
    AddArchWall(b, front, pale, pale);
    AddFacadeBox(b, {{0.2f, length - 0.2f}, {storey, storey + 2}, {-4, -0.15f}}, Material::Palace,
                 tiles, 7);
    AddBox(b, {{0, length}, {storey + 2, storey + 2.25f}, {-4.1f, 0.1f}}, carved);
    b.Rect({0, 0, -3.4f}, {1, 0, 0}, {0, 1, 0}, length, storey, Plain(Material::HouseWarm, {2, 1}));
}

/// The wall with a great arch and two small ones that closes the square.
void AddGate(Builder& b) {
    constexpr float half = 11;
    constexpr float height = 6.2f + sunkIn;
    b.SetPlace(Ground({axis, -65}, toNorth));
    ArchWall wall{.x0 = -half,
                  .x1 = half,
                  .y0 = 0,
                  .y1 = height - 1.5f,
                  .z = 0,
                  .thickness = 1.6f,
                  .back = false,
                  .ends = true,
                  .segments = 6};
    wall.arches = {{-9.2f, -6.2f, 1.6f + sunkIn}, {6.2f, 9.2f, 1.6f + sunkIn}};
    for (const float side : {-1.0f, 1.0f}) {
        ArchWall wing = wall;
        wing.x0 = side < 0 ? -half : 5.0f;
        wing.x1 = side < 0 ? -5.0f : half;
        wing.arches = {wall.arches[side < 0 ? 0 : 1]};
        AddArchWall(b, wing, stone, stone);
    }
    ArchWall middle = wall;
    middle.x0 = -5;
    middle.x1 = 5;
    middle.y1 = height;
    middle.z = 0.35f;
    middle.thickness = 2.2f;
    middle.segments = 10;
    middle.arches = {{-3.8f, 3.8f, 2.0f + sunkIn}};
    AddArchWall(b, middle, pale, stone);
    for (const float x : {-5.0f, 4.4f})
        AddBox(b, {{x, x + 0.6f}, {0, height - 0.9f}, {0.35f, 0.8f}}, carved);
}

/// From the forecourt up to the quay of the city that stands, between two bastions.
void AddGrandStairs(Builder& b) {
    constexpr float half = 5.5f;
    constexpr float top = -0.9f - foot;
    b.SetPlace(Ground({axis, -41}, toNorth));
    constexpr int steps = 12;
    constexpr float rise = top / steps;
    for (int i = 1; i < steps; ++i) {
        const float y = top - rise * static_cast<float>(i);
        const float z = 0.62f * static_cast<float>(i);
        b.Rect({-half, y - rise, z}, {1, 0, 0}, {0, 1, 0}, 2 * half, rise, pale);
        b.Rect({-half, y, z}, {1, 0, 0}, {0, 0, -1}, 2 * half, 0.62f, pale);
    }
    for (const float side : {-1.0f, 1.0f}) {
        const float x = side * (half + 1);
        AddBox(b, {{x - 1, x + 1}, {0, 4.0f}, {0, 7.4f}}, stony);
        AddBox(b, {{x - 1.15f, x + 1.15f}, {4.0f, 4.3f}, {0, 7.55f}}, carved, true);
        AddTaper(b, Ring({x, 6.3f}, 0.55f, 4, pi / 4), {x, 6.3f}, 4.3f, 6.6f, 0.55f, carved);
    }
}

/// Columns of a temple without a roof, some broken, on the side of the square.
void AddColumns(Builder& b, unsigned seed) {
    b.SetPlace({});
    for (unsigned i = 0; i < 9; ++i) {
        const vec2 at{i < 5 ? 20.0f : 40.5f, -83.0f + 4.0f * static_cast<float>(i < 5 ? i : i - 5)};
        const float broken = HashUnit(seed, i, 3) < 0.45f ? 0.35f + 0.4f * HashUnit(seed, i, 4) : 1;
        AddTaper(b, Ring(at, 0.42f, 6), at, foot, quarterFloor + 4.2f * broken, 0.84f, carved);
        if (broken == 1)
            AddBox(b,
                   {{at.x - 0.55f, at.x + 0.55f},
                    {quarterFloor + 4.2f, quarterFloor + 4.6f},
                    {at.y - 0.55f, at.y + 0.55f}},
                   carved, true);
    }
}

/// A church whose spire ends a hand's breadth under the surface.
void AddChurch(Builder& b) {
    b.SetPlace(Ground({3, -58}, toNorth));
    const Box nave{{-2.6f, 2.6f}, {0, 4.4f}, {-8, 0}};
    AddFacadeBox(b, nave, Material::Palace, tiles, 3);
    AddGableAlongZ(b, nave, 1.6f, 0.2f, roofed);
    AddFacadeBox(b, {{2.6f, 4.8f}, {0, 5.2f}, {-2.2f, 0}}, Material::Palace, tiles, 5);
    AddTaper(b, {{2.5f, -2.3f}, {4.9f, -2.3f}, {4.9f, 0.1f}, {2.5f, 0.1f}}, {3.7f, -1.1f}, 5.2f,
             6.8f, 0, {tiles, tiles}, false);
    b.SetPlace(Ground({60, -56}, toNorth));
    AddFacadeBox(b, {{-3, 3}, {0, 3.8f}, {-6, 0}}, Material::Palace, tiles, 9);
    AddPrism(b, Ring({0, -3}, 2.2f, 8), 3.8f, 4.6f, carved);
    AddDome(b, {0, -3}, 2.2f, 4.6f, 2.0f, 8, 3, tiles);
}

} // namespace

void AddQuarter(Builder& b, unsigned seed) {
    b.SetPlace({});
    AddPaving(b, {26, 34}, {-99, -86}, quarterFloor);
    AddPaving(b, {21, 39}, {-86, -66}, quarterFloor);
    AddPaving(b, {24, 36}, {-66, -47}, quarterFloor);
    for (std::size_t i = 0; i < houses.size(); ++i)
        AddHouse(b, houses[i], Hash(seed, static_cast<unsigned>(i)));
    AddArcade(b);
    AddGate(b);
    AddGrandStairs(b);
    AddColumns(b, seed);
    AddChurch(b);
    b.SetPlace({});
    AddStatue(b, {25.2f, quarterFloor, -74}, toNorth);
    AddWreck(b, {41.5f, quarterFloor + 0.3f, -78}, Normalized(vec2{-0.62f, 0.78f}), 11);
    b.SetPlace({});
}

} // namespace Art
