#include "art/city/plan.h"

#include "art/city/houses.h"
#include "art/city/skyline.h"
#include "art/city/towers.h"
#include "art/city/waterfront.h"
#include "art/common/noise.h"

namespace Art {

namespace {

// The ground plan, seen from above with x to the right and z downwards. The basin is an
// octagon about (26, 14), 9 units from its middle to its sides. One canal comes in from the
// upper left, one leaves through the lower side and bends towards the sea at the lower left.

// The north town stands on a vault: its pavement reaches farther than the ground under it.
const std::vector<vec2> northPavement = {{22.2f, 5}, {-7.2f, -21.4f}, {-12, -25.7f},
                                         {-12, -41}, {46, -41},       {46, 5}};
const std::vector<vec2> northGround = {{22.2f, 5}, {-5.6f, -20}, {46, -20}, {46, 5}};

const std::vector<std::vector<vec2>> landOutlines = {
    {{-10, -16.7f}, {18.4f, 8.88f}, {17, 10.27f}, {17, 17.73f}, {-10, 17.73f}},
    {{-6, 17.73f}, {17, 17.73f}, {23.4f, 24.13f}, {22.6f, 32.5f}, {-6, 33.4f}},
    {{-6, 33.4f}, {22.6f, 32.5f}, {4, 62.3f}, {-6, 62.3f}},
    {{29.73f, 5}, {47, 5}, {47, 14}, {35, 14}, {35, 10.27f}},
    {{35, 14}, {47, 14}, {47, 34.6f}, {28, 34.6f}, {28.6f, 24.13f}, {35, 17.73f}},
    {{48.5f, -30}, {66, -26}, {71, -10}, {71, 34.6f}, {47, 34.6f}, {47, 5}},
    {{28, 34.6f}, {60, 34.6f}, {60, 50}, {40, 62}, {9.5f, 64.1f}},
    {{-0.7f, 62.3f}, {1.7f, 62.3f}, {1.5f, 104}, {-0.5f, 104}},
    // Islets out at sea.
    {{-43, 5}, {-38, 4}, {-35, 8}, {-38, 12}, {-43, 11}},
    {{100, 22}, {106, 21}, {109, 26}, {106, 31}, {100, 30}},
};

/// Houses between two points, facing to the right of the way from one to the other (z down).
struct Row {
    vec2 from, to;
    RowStyle style;
};

const RowStyle canalStyle{
    .lowest = 3.4f, .highest = 6.4f, .narrowest = 2.3f, .widest = 4.2f, .depth = 4};
const RowStyle canalCoolStyle{
    .lowest = 3.6f, .highest = 7.0f, .narrowest = 2.3f, .widest = 4.0f, .depth = 4, .materials = 1};
const RowStyle canalArcadeStyle{.lowest = 4.5f,
                                .highest = 6.8f,
                                .narrowest = 3.0f,
                                .widest = 5.0f,
                                .depth = 4.2f,
                                .arcade = true,
                                .materials = 2};
const RowStyle basinStyle{.lowest = 4.4f,
                          .highest = 7.5f,
                          .narrowest = 2.6f,
                          .widest = 4.4f,
                          .depth = 4.5f,
                          .arcade = true,
                          .materials = 2};
const RowStyle basinHighStyle{.lowest = 6.0f,
                              .highest = 9.5f,
                              .narrowest = 2.8f,
                              .widest = 4.6f,
                              .depth = 4.5f,
                              .arcade = true};
const RowStyle behindStyle{
    .lowest = 5.4f, .highest = 7.0f, .narrowest = 2.6f, .widest = 4.2f, .depth = 4.4f};
const RowStyle behindHighStyle{.lowest = 6.6f,
                               .highest = 7.4f,
                               .narrowest = 2.0f,
                               .widest = 2.6f,
                               .depth = 4.4f,
                               .flat = true};
const RowStyle lowStyle{
    .lowest = 1.8f, .highest = 3.0f, .narrowest = 2.4f, .widest = 4.0f, .depth = 3.6f};
const RowStyle lowFlatStyle{.lowest = 1.8f,
                            .highest = 2.6f,
                            .narrowest = 2.6f,
                            .widest = 4.2f,
                            .depth = 3.2f,
                            .flat = true,
                            .materials = 2};
const RowStyle townStyle{.lowest = 4.0f,
                         .highest = 9.0f,
                         .narrowest = 3.2f,
                         .widest = 5.4f,
                         .depth = 4.6f,
                         .detailed = false,
                         .materials = 1};
const RowStyle farTownStyle{.lowest = 4.0f,
                            .highest = 9.0f,
                            .narrowest = 3.2f,
                            .widest = 5.4f,
                            .depth = 4.6f,
                            .detailed = false,
                            .materials = 3};
const RowStyle highStyle{.lowest = 5.5f,
                         .highest = 15.0f,
                         .narrowest = 3.6f,
                         .widest = 5.6f,
                         .depth = 5,
                         .detailed = false,
                         .materials = 3};
const RowStyle highFlatStyle{.lowest = 6.0f,
                             .highest = 16.0f,
                             .narrowest = 3.8f,
                             .widest = 6.0f,
                             .depth = 5,
                             .detailed = false,
                             .flat = true,
                             .materials = 3};

const std::vector<Row> houseRows = {
    // The upper canal, left bank, then right bank.
    {{14.6f, 7.2f}, {-8.6f, -13.7f}, canalStyle},
    {{-6.2f, -22.4f}, {17.4f, -1.2f}, canalArcadeStyle},
    // Around the basin: west, south-west, south-east, east, north-east, north.
    {{15.6f, 17.3f}, {15.6f, 14.2f}, lowStyle},
    {{15.6f, 14.0f}, {15.6f, 10.9f}, lowFlatStyle},
    {{22.1f, 24.5f}, {16.4f, 18.8f}, basinStyle},
    {{36.2f, 18.3f}, {29.6f, 24.9f}, basinHighStyle},
    {{36.4f, 10.5f}, {36.4f, 17.7f}, lowStyle},
    {{31.0f, 4.5f}, {36.0f, 9.5f}, lowFlatStyle},
    {{21.6f, 3.2f}, {30.0f, 3.2f}, lowFlatStyle},
    // The lower canal: the short reach, then both banks of the long one.
    {{21.2f, 32.0f}, {21.9f, 25.8f}, canalArcadeStyle},
    {{29.8f, 25.8f}, {29.4f, 34.0f}, basinStyle},
    {{4.6f, 59.0f}, {20.9f, 33.0f}, canalCoolStyle},
    {{29.2f, 35.4f}, {12.6f, 61.9f}, canalArcadeStyle},
    // Low roofs under the seventh flight.
    {{1.8f, 9.8f}, {13.2f, 9.8f}, lowStyle},
    {{13.6f, 11.6f}, {1.8f, 11.6f}, lowStyle},
    {{-8.8f, -12.5f}, {-8.8f, 17.0f}, townStyle},
    {{-3.2f, 16.6f}, {-3.2f, -8.5f}, townStyle},
    // West town.
    {{15.2f, 19.5f}, {2.0f, 19.5f}, townStyle},
    {{-4.8f, 18.5f}, {-4.8f, 61.0f}, townStyle},
    {{1.2f, 60.0f}, {1.2f, 34.0f}, townStyle},
    {{2.0f, 26.0f}, {18.5f, 26.0f}, townStyle},
    // North town: the front over the sea and the streets behind it.
    {{44.5f, -37.4f}, {-11.4f, -37.4f}, farTownStyle},
    {{-9.0f, -26.5f}, {44.0f, -26.5f}, highFlatStyle},
    {{44.0f, -20.0f}, {2.0f, -20.0f}, highStyle},
    {{3.5f, -18.5f}, {44.0f, -9.5f}, highFlatStyle},
    {{44.0f, -5.5f}, {18.0f, -5.5f}, townStyle},
    {{45.0f, -9.0f}, {45.0f, -36.0f}, farTownStyle},
    {{45.0f, 4.0f}, {45.0f, -8.0f}, lowFlatStyle},
    // East terraces and the wall of houses behind them.
    {{40.5f, 9.0f}, {46.0f, 9.0f}, lowFlatStyle},
    {{46.0f, 15.0f}, {41.5f, 15.0f}, lowFlatStyle},
    {{42.4f, 18.8f}, {38.5f, 18.8f}, behindStyle},
    {{48.6f, -28.0f}, {48.5f, 3.0f}, townStyle},
    {{48.5f, 3.2f}, {48.5f, 17.0f}, lowStyle},
    {{48.5f, 17.2f}, {48.4f, 33.0f}, townStyle},
    {{69.8f, 33.5f}, {69.8f, -9.0f}, farTownStyle},
    {{61.0f, 33.0f}, {61.0f, -22.0f}, highStyle},
    // South-east town.
    {{58.8f, 49.0f}, {58.8f, 35.6f}, farTownStyle},
    {{58.0f, 35.8f}, {38.0f, 35.8f}, highStyle},
    {{24.5f, 48.5f}, {56.0f, 48.5f}, farTownStyle},
    {{17.8f, 62.4f}, {39.5f, 60.8f}, farTownStyle},
    // With their neighbours to the west they stand behind the low houses of the basin's east side,
    // so that the water mirrors lit windows there and no gap of sky.
    {{46.8f, 18.8f}, {42.4f, 18.8f}, behindHighStyle},
};

const std::vector<Tower> towers = {
    {.at = {20.0f, -30.0f}, .width = 5.2f, .height = 31, .crown = Crown::Spire, .rotation = 0.15f},
    {.at = {-7.5f, -32.0f}, .width = 5.6f, .height = 26, .crown = Crown::Setbacks},
    {.at = {36.0f, -31.0f}, .width = 4.4f, .height = 25, .crown = Crown::Spire, .rotation = 0.5f},
    {.at = {57.0f, 4.0f}, .width = 7.0f, .height = 32, .crown = Crown::Setbacks},
    {.at = {54.5f, 18.5f}, .width = 5.4f, .height = 21, .crown = Crown::Slab, .rotation = pi / 2},
    {.at = {62.0f, -16.0f}, .width = 7.0f, .height = 20, .crown = Crown::Slab, .rotation = 0.3f},
    {.at = {42.0f, -3.0f}, .width = 4.6f, .height = 17, .crown = Crown::Setbacks},
    {.at = {42.5f, 27.5f}, .width = 5.0f, .height = 19, .crown = Crown::Rotunda},
    {.at = {7.5f, 29.8f}, .width = 2.8f, .height = 24, .crown = Crown::Campanile, .rotation = 0.2f},
    {.at = {50.0f, 43.0f}, .width = 5.6f, .height = 27, .crown = Crown::Spire, .rotation = 0.4f},
    {.at = {64.5f, 12.0f}, .width = 5.0f, .height = 22, .crown = Crown::Rotunda},
    {.at = {31.5f, 29.5f}, .width = 3.0f, .height = 15, .crown = Crown::Campanile},
    {.at = {-2.0f, 47.0f}, .width = 4.4f, .height = 18, .crown = Crown::Setbacks},
    {.at = {26.0f, -14.5f}, .width = 4.2f, .height = 19, .crown = Crown::Slab, .rotation = 0.2f},
    {.at = {3.0f, -24.0f},
     .width = 3.0f,
     .height = 18,
     .crown = Crown::Campanile,
     .rotation = 0.1f},
    {.at = {11.0f, -15.0f}, .width = 3.4f, .height = 16, .crown = Crown::Spire},
    {.at = {29.5f, -23.5f}, .width = 3.0f, .height = 20, .crown = Crown::Setbacks},
    {.at = {44.5f, -33.5f}, .width = 2.6f, .height = 15, .crown = Crown::Campanile},
    {.at = {53.0f, -24.0f}, .width = 3.0f, .height = 17, .crown = Crown::Spire, .rotation = 0.3f},
    {.at = {68.0f, 0.0f}, .width = 3.4f, .height = 15, .crown = Crown::Campanile},
    {.at = {51.5f, -8.0f}, .width = 4.0f, .height = 18, .crown = Crown::Setbacks},
    {.at = {36.0f, -14.0f}, .width = 3.2f, .height = 17, .crown = Crown::Campanile},
    {.at = {40.0f, 55.0f}, .width = 3.4f, .height = 17, .crown = Crown::Setbacks},
    {.at = {-40.0f, 8.0f}, .width = 3.0f, .height = 14, .crown = Crown::Campanile},
    {.at = {104.0f, 26.0f}, .width = 3.6f, .height = 17, .crown = Crown::Spire},
};

struct LampLine {
    vec2 from, to;
    float spacing;
};

const std::vector<LampLine> lampLines = {
    {{16.7f, 17.4f}, {16.7f, 11.0f}, 3.2f},    {{17.3f, 18.4f}, {22.9f, 24.0f}, 2.6f},
    {{28.9f, 24.2f}, {34.8f, 18.3f}, 2.8f},    {{35.3f, 17.4f}, {35.3f, 10.6f}, 3.4f},
    {{22.6f, 4.7f}, {29.5f, 4.7f}, 3.4f},      {{15.8f, 7.0f}, {-9.0f, -15.3f}, 4.2f},
    {{-6.4f, -21.1f}, {20.5f, 3.0f}, 4.2f},    {{22.3f, 33.4f}, {5.2f, 60.8f}, 3.6f},
    {{27.8f, 35.4f}, {10.8f, 62.5f}, 3.6f},    {{0.5f, 70.0f}, {0.5f, 102.0f}, 8.0f},
    {{44.0f, -40.6f}, {-11.0f, -40.6f}, 5.0f}, {{-9.6f, -14.0f}, {-9.6f, 17.0f}, 6.0f},
};

void AddStairsAt(Builder& b, vec2 at, vec2 out, float width) {
    // Local +z must point out over the water: x is out turned by a quarter.
    b.SetPlace({{at.x, 0, at.y}, {out.y, -out.x}});
    AddStairs(b, -width / 2, width / 2, 0, quayHeight, -0.5f, 6, Plain(Material::Stone, {2, 1}));
    b.SetPlace({});
}

void AddWaterStairs(Builder& b) {
    constexpr float diagonal = 0.70711f;
    AddStairsAt(b, {20.2f, 20.93f}, {diagonal, -diagonal}, 2.4f);
    AddStairsAt(b, {31.8f, 20.93f}, {-diagonal, -diagonal}, 2.4f);
    AddStairsAt(b, {35, 14}, {-1, 0}, 2.4f);
    AddStairsAt(b, {17, 14}, {1, 0}, 2.0f);
    AddStairsAt(b, {26, 5}, {0, 1}, 2.4f);
    AddStairsAt(b, {18.5f, 39.1f}, {0.848f, 0.53f}, 2.0f);
    AddStairsAt(b, {22.6f, 43.2f}, {-0.848f, -0.53f}, 2.0f);
}

/// Poles along a quay; the water lies to the right of the way from one end to the other.
struct PoleLine {
    vec2 from, to;
    float spacing;
    int lit; ///< of ten
};

const std::vector<PoleLine> poleLines = {
    // The lower canal; where the fifth flight begins every pole carries a light.
    {{19.3f, 37.79f}, {22.5f, 32.65f}, 1.5f, 10},
    {{4.4f, 61.7f}, {18.0f, 39.9f}, 3.4f, 3},
    {{28.0f, 34.6f}, {23.4f, 41.93f}, 1.6f, 10},
    {{22.0f, 44.2f}, {9.9f, 63.4f}, 3.6f, 3},
    // The upper canal.
    {{17.0f, 7.62f}, {-4.0f, -11.3f}, 4.2f, 3},
    {{-5.0f, -19.4f}, {20.4f, 3.4f}, 4.2f, 3},
};

struct Mooring {
    vec2 at;
    float heading;
    float length;
};

const std::vector<Mooring> boats = {
    {{18.6f, 17.2f}, 1.7f, 2.2f},  {{33.7f, 12.4f}, 1.5f, 2.0f},  {{28.4f, 22.0f}, 0.1f, 2.2f},
    {{30.6f, 20.6f}, 2.3f, 2.0f},  {{23.3f, 22.3f}, 0.7f, 2.2f},  {{19.9f, 37.9f}, 2.12f, 1.9f},
    {{22.1f, 42.8f}, 2.15f, 2.0f}, {{16.2f, 43.8f}, 2.12f, 2.0f}, {{14.2f, 55.6f}, 2.13f, 2.0f},
    {{2.6f, -6.1f}, 0.73f, 2.0f},  {{14.4f, -1.3f}, 0.75f, 2.0f}, {{-3.4f, -11.4f}, 0.7f, 2.0f},
};

void AddBoats(Builder& b) {
    for (const Mooring& boat : boats) {
        b.SetPlace({{boat.at.x, 0, boat.at.y}, {std::cos(boat.heading), std::sin(boat.heading)}});
        AddBoat(b, {0, 0.06f, 0}, boat.length);
    }
    b.SetPlace({});
}

} // namespace

Builder BuildCity(unsigned seed) {
    Builder b;
    for (const auto& outline : landOutlines)
        AddLand(b, outline);
    AddVault(b, northPavement, northGround);
    for (std::size_t i = 0; i < houseRows.size(); ++i)
        AddRow(b, houseRows[i].from, houseRows[i].to, houseRows[i].style,
               Hash(seed, static_cast<unsigned>(i)));
    for (std::size_t i = 0; i < towers.size(); ++i)
        AddTower(b, towers[i], Hash(seed, static_cast<unsigned>(i), 1));
    AddPalace(b, {32.6f, 27.0f}, {23.6f + 5.4f, 27.4f}, 3, 5, Hash(seed, 1, 2));
    AddBasilica(b, {8.0f, -36.2f}, {-1, 0}, 1.5f, Hash(seed, 2, 2));
    for (const LampLine& line : lampLines)
        AddLamps(b, line.from, line.to, line.spacing);
    AddBridge(b, {23.1f, 28.0f}, {28.35f, 28.0f}, 1.5f, 1.9f);
    AddBridge(b, {11.9f, 50.0f}, {16.4f, 53.0f}, 1.6f, 4.4f);
    AddBridge(b, {-6.3f, -13.4f}, {-2.7f, -17.4f}, 1.6f, 1.9f);
    AddSkyBridge(b, {53.6f, 7.4f}, {53.6f, 16.0f}, 1.5f, 10.6f);
    AddWaterGate(b, {22.1f, 30.4f}, {29.1f, 30.4f});
    AddSeaGate(b, {0.4f, 68.0f}, {7.4f, 72.4f});
    AddViaduct(b, {138.0f, -22.0f}, {68.2f, -17.0f}, 12, 5.2f);
    AddViaduct(b, {-11.0f, -30.0f}, {-76.0f, -14.0f}, 12, 5.2f);
    AddSeaFort(b, {-44.0f, -56.0f}, 3.2f, 15);
    AddSeaFort(b, {-92.0f, -34.0f}, 3.6f, 19);
    AddLighthouse(b, {0.5f, 106.0f}, 9);
    AddWaterStairs(b);
    AddBoats(b);
    AddSkyline(b);
    for (std::size_t i = 0; i < poleLines.size(); ++i) {
        const PoleLine& line = poleLines[i];
        AddMooringPoles(b, line.from, line.to, line.spacing, line.lit,
                        Hash(seed, static_cast<unsigned>(i), 3));
    }
    AddSeaBed(b, 1);
    return b;
}

} // namespace Art
