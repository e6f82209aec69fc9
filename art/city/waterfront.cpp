#include "art/city/waterfront.h"

#include "art/city/fittingparts.h"
#include "art/city/houses.h"
#include "art/city/nearwalls.h"
#include "art/common/noise.h"

namespace Art {

namespace {

constexpr vec3 up{0, 1, 0};
const Paint trim = Plain(Material::Trim);
const Paint stone = Plain(Material::Stone);
const Paint roof = Plain(Material::Roof);
const Finish trimmed{trim, trim};

} // namespace

void AddQuay(Builder& b, const std::vector<vec2>& outline) {
    const std::vector<vec2> edge = Outwards(outline);
    for (std::size_t i = 0; i < edge.size(); ++i)
        AddQuayWall(b, edge[i], edge[(i + 1) % edge.size()], quayHeight);
    AddFloor(b, edge, quayHeight, Plain(Material::Stone, {1.7f, 3.1f}));
}

void AddLand(Builder& b, const std::vector<vec2>& outline) {
    b.SetPlace({});
    const std::vector<vec2> edge = Outwards(outline);
    for (std::size_t i = 0; i < edge.size(); ++i)
        AddWall(b, edge[i], edge[(i + 1) % edge.size()], seaFloor, Builder::splitLow, stone);
    AddQuay(b, edge);
}

void AddMooringPoles(Builder& b, vec2 from, vec2 to, float spacing, int lit, unsigned seed) {
    constexpr float off = 0.38f; // the quay's edge
    const Place edge = Facing(from, to);
    b.SetPlace(edge);
    Random random(seed);
    const float length = Length(to - from);
    for (float x = random.Range(0.2f, 0.6f) * spacing; x < length;
         x += spacing * random.Range(0.7f, 1.3f)) {
        const float height = random.Range(0.75f, 1.15f);
        AddMooringPole(b, {x, off}, height, random.Int(0, 9) < lit);
        if (random.Chance(0.4f))
            AddMooringPole(b, {x + 0.35f, off - 0.06f}, height - 0.22f, false);
    }
    b.SetPlace({});
}

void AddLamps(Builder& b, vec2 from, vec2 to, float spacing, float height) {
    b.SetPlace({});
    const int count = std::max(1, static_cast<int>(Length(to - from) / spacing));
    for (int i = 0; i <= count; ++i) {
        const vec2 p = Lerp(from, to, static_cast<float>(i) / static_cast<float>(count));
        AddLampPost(b, {p.x, quayHeight, p.y}, height);
    }
}

namespace {

/// The two curves of a humped bridge, over x from its middle.
struct Hump {
    float half;  ///< of the opening
    float reach; ///< from the middle to where the deck meets the quay
    float crown;

    float Under(float x) const {
        const float inside = std::max(0.0f, 1 - x * x / (half * half));
        return Builder::splitHigh + (crown - Builder::splitHigh) * std::sqrt(inside);
    }
    float Deck(float x) const {
        const float t = x / reach;
        return quayHeight + (crown + 0.3f - quayHeight) * (1 - t * t);
    }
};

constexpr int humpSegments = 10;

/// Places across the bridge: the abutments, then the arch, denser where it is steep.
std::vector<float> HumpStations(const Hump& hump) {
    std::vector<float> stations{-hump.reach};
    for (int i = 0; i <= humpSegments; ++i)
        stations.push_back(-hump.half * std::cos(pi * static_cast<float>(i) / humpSegments));
    stations.push_back(hump.reach);
    return stations;
}

void AddHumpSide(Builder& b, const Hump& hump, float z, float facing, float low, bool deckOnly) {
    const std::vector<float> stations = HumpStations(hump);
    Surface& face = b.Open({0, 0, z}, {facing, 0, 0}, up, stone);
    for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
        const float a = stations[i];
        const float c = stations[i + 1];
        const bool solid = i == 0 || i + 2 == stations.size();
        const auto under = [&](float x) {
            if (deckOnly)
                return hump.Deck(x);
            return solid ? Builder::splitHigh : hump.Under(x);
        };
        std::vector<vec2> quad{{a * facing, under(a)},
                               {c * facing, under(c)},
                               {c * facing, hump.Deck(c) + low},
                               {a * facing, hump.Deck(a) + low}};
        if (facing < 0)
            std::reverse(quad.begin(), quad.end());
        face.polygons.push_back(quad);
    }
}

void AddHumpSurfaces(Builder& b, const Hump& hump, float z) {
    const std::vector<float> stations = HumpStations(hump);
    for (std::size_t i = 0; i + 1 < stations.size(); ++i) {
        const float a = stations[i];
        const float c = stations[i + 1];
        b.Facet({{a, hump.Deck(a), z},
                 {c, hump.Deck(c), z},
                 {c, hump.Deck(c), -z},
                 {a, hump.Deck(a), -z}},
                trim);
        if (i > 0 && i + 2 < stations.size())
            b.Facet({{a, hump.Under(a), -z},
                     {c, hump.Under(c), -z},
                     {c, hump.Under(c), z},
                     {a, hump.Under(a), z}},
                    stone);
    }
}

/// Two rows of lanterns that hang from the arch on rods, beside the way of the boats.
void AddHangingLanterns(Builder& b, const Hump& hump, float z) {
    constexpr float lanternHeight = 2.35f;
    constexpr float lanternSize = 0.13f;
    const Finish iron{EvenPaint(Fitting::Iron), EvenPaint(Fitting::Iron)};
    for (const float x : {-hump.half * 0.82f, hump.half * 0.82f})
        for (const float side : {-0.7f, 0.0f, 0.7f}) {
            const vec2 at{x, side * z};
            AddLantern(b, {at.x, lanternHeight, at.y}, lanternSize, 0.6f);
            AddTaper(b, Ring(at, 0.025f, 3), at, lanternHeight + lanternSize * 1.5f,
                     hump.Under(x) + 0.1f, 1, iron, false);
        }
}

} // namespace

void AddBridge(Builder& b, vec2 from, vec2 to, float width, float crown) {
    constexpr float parapetHeight = 0.32f;
    constexpr float parapetThickness = 0.12f;
    const Place start = Facing(from, to);
    const float length = Length(to - from);
    b.SetPlace({start.World({length / 2, 0, 0}), start.x});
    const Hump hump{length / 2, length / 2 + 1.5f + crown * 0.35f, crown};
    const float z = width / 2;
    AddHumpSide(b, hump, z, 1, parapetHeight, false);
    AddHumpSide(b, hump, -z, -1, parapetHeight, false);
    AddHumpSide(b, hump, z - parapetThickness, -1, parapetHeight, true);
    AddHumpSide(b, hump, -z + parapetThickness, 1, parapetHeight, true);
    AddHumpSurfaces(b, hump, z);
    for (const float x : {-0.55f, 0.0f, 0.55f})
        for (const float side : {-z, z})
            AddLampPost(b, {x * length, hump.Deck(x * length), side}, 1.0f);
    if (crown > 3) // boats and eyes pass under it
        AddHangingLanterns(b, hump, z);
    b.SetPlace({});
}

void AddSkyBridge(Builder& b, vec2 from, vec2 to, float width, float y) {
    b.SetPlace(Facing(from, to));
    const float length = Length(to - from);
    const float z = width / 2;
    const int count = std::max(1, static_cast<int>(length / 3));
    const float pitch = length / static_cast<float>(count);
    ArchWall wall{
        .x0 = 0, .x1 = length, .y0 = y - 1.6f, .y1 = y, .z = z, .thickness = width, .ends = false};
    for (int i = 0; i < count; ++i)
        wall.arches.push_back({pitch * (static_cast<float>(i) + 0.06f),
                               pitch * (static_cast<float>(i) + 0.94f), y - 1.6f});
    for (Arch& arch : wall.arches)
        arch.spring = y - 0.3f - (arch.x1 - arch.x0) / 2;
    wall.y0 = wall.arches[0].spring;
    AddArchWall(b, wall, trim, trim);
    AddBox(b, {{0, length}, {y, y + 0.2f}, {-z - 0.15f, z + 0.15f}}, trimmed, true);
    AddFacadeBox(b, {{0, length}, {y + 0.2f, y + 1.2f}, {-z, z}}, Material::Palace, trim, 91);
    AddGableAlongX(b, {{0, length}, {0, y + 1.2f}, {-z, z}}, 0.6f, 0.12f, {trim, roof});
    for (int i = 0; i <= count; ++i)
        for (const float side : {-z - 0.1f, z + 0.1f})
            AddSpark(b, {pitch * static_cast<float>(i), y + 0.55f, side}, 0.1f, 0.5f);
    b.SetPlace({});
}

void AddSeaGate(Builder& b, vec2 from, vec2 to) {
    b.SetPlace(Facing(from, to));
    const float length = Length(to - from);
    for (const float x : {0.0f, length}) {
        AddBox(b, {{x - 1.9f, x + 1.9f}, {seaFloor, 0.9f}, {-1.9f, 1.9f}}, {stone, trim});
        AddBox(b, {{x - 1.4f, x + 1.4f}, {0.9f, 7.5f}, {-1.4f, 1.4f}}, {stone, trim});
        AddBox(b, {{x - 1.65f, x + 1.65f}, {7.5f, 8.0f}, {-1.65f, 1.65f}}, trimmed, true);
        AddFacadeBox(b, {{x - 1.1f, x + 1.1f}, {8.0f, 10.0f}, {-1.1f, 1.1f}}, Material::Palace,
                     trim, 17);
        AddTaper(b, Ring({x, 0}, 1.9f, 4, pi / 4), {x, 0}, 10.0f, 13.0f, 0, {roof, roof}, false);
        for (const float z : {-1.45f, 1.45f})
            AddLantern(b, {x, 3.0f, z}, 0.16f, 1.2f);
    }
    const float x0 = 1.4f;
    const float x1 = length - 1.4f;
    const float radius = (x1 - x0) / 2;
    ArchWall wall{.x0 = x0,
                  .x1 = x1,
                  .y0 = 3.4f,
                  .y1 = 3.4f + radius + 1.0f,
                  .z = 0.6f,
                  .thickness = 1.2f,
                  .arches = {{x0 + 0.01f, x1 - 0.01f, 3.4f}},
                  .ends = false,
                  .segments = 12};
    AddArchWall(b, wall, stone, trim);
    AddBox(b, {{x0, x1}, {wall.y1, wall.y1 + 0.4f}, {-0.75f, 0.75f}}, trimmed, true);
    for (int i = 0; i < 4; ++i)
        AddSpark(b, {Lerp(x0, x1, (static_cast<float>(i) + 0.5f) / 4), wall.y1 + 0.75f, 0}, 0.12f,
                 0.7f);
    b.Building();
    b.Building({length, 0});
    b.SetPlace({});
}

void AddWaterGate(Builder& b, vec2 from, vec2 to) {
    b.SetPlace(Facing(from, to));
    const float length = Length(to - from);
    constexpr float pierWidth = 0.75f; // of the arch, on either side
    constexpr float halfDepth = 0.8f;  // of the house's depth
    constexpr float floorHeight = 5.0f;
    constexpr float eavesHeight = 10.0f;
    constexpr float roofOverlap = 1.7f; // how far the house reaches over its neighbours' roofs
    const float radius = length / 2 - pierWidth;
    ArchWall wall{.x0 = 0,
                  .x1 = length,
                  .y0 = Builder::splitHigh,
                  .y1 = floorHeight,
                  .z = halfDepth,
                  .thickness = 2 * halfDepth,
                  .arches = {{pierWidth, length - pierWidth, floorHeight - 0.5f - radius}},
                  .segments = 10};
    AddArchWall(b, wall, stone, trim);
    const float x0 = -roofOverlap;
    const float x1 = length + roofOverlap;
    AddBox(b,
           {{x0 - 0.1f, x1 + 0.1f},
            {floorHeight, floorHeight + 0.2f},
            {-halfDepth - 0.2f, halfDepth + 0.2f}},
           trimmed, true);
    AddFacadeBox(b, {{x0, x1}, {floorHeight + 0.2f, eavesHeight}, {-halfDepth, halfDepth}},
                 Material::Palace, trim, 23);
    AddGableAlongX(b, {{x0, x1}, {0, eavesHeight}, {-halfDepth, halfDepth}}, 0.9f, 0.2f,
                   {trim, roof});
    const float middle = length / 2;
    AddFacadeBox(b, {{middle - 1, middle + 1}, {eavesHeight, eavesHeight + 2}, {-0.6f, 0.6f}},
                 Material::Palace, trim, 29);
    AddTaper(b, Ring({middle, 0}, 1.6f, 4, pi / 4), {middle, 0}, eavesHeight + 2,
             eavesHeight + 4.4f, 0, {roof, roof}, false);
    for (const float z : {-halfDepth - 0.2f, halfDepth + 0.2f})
        for (const float x : {0.35f, length - 0.35f})
            AddLantern(b, {x, 2.6f, z}, 0.16f, 1.2f);
    b.Building({middle, 0});
    b.SetPlace({});
}

void AddViaduct(Builder& b, vec2 from, vec2 to, int bays, float deck) {
    b.SetPlace(Facing(from, to));
    const float pitch = Length(to - from) / static_cast<float>(bays);
    const float radius = pitch * 0.4f;
    constexpr float roadWidth = 1.6f;
    ArchWall wall{.x0 = 0,
                  .x1 = pitch * static_cast<float>(bays),
                  .y0 = Builder::splitHigh,
                  .y1 = deck,
                  .z = roadWidth / 2,
                  .thickness = roadWidth};
    for (int i = 0; i < bays; ++i) {
        const float middle = pitch * (static_cast<float>(i) + 0.5f);
        wall.arches.push_back({middle - radius, middle + radius, deck - 0.8f - radius});
    }
    AddArchWall(b, wall, stone, stone);
    AddBox(b, {{0, wall.x1}, {deck, deck + 0.3f}, {-roadWidth / 2 - 0.15f, roadWidth / 2 + 0.15f}},
           trimmed, true);
    for (int i = 0; i <= bays; i += 3) {
        const float x = pitch * static_cast<float>(i);
        const float high = i % 2 == 0 ? 3.6f : 2.2f;
        AddBox(
            b,
            {{x - 0.9f, x + 0.9f}, {0, deck + high}, {-roadWidth / 2 - 0.3f, roadWidth / 2 + 0.3f}},
            {stone, trim});
        AddTaper(b, Ring({x, 0}, 1.5f, 4, pi / 4), {x, 0}, deck + high, deck + high + 2.2f, 0,
                 {roof, roof}, false);
        AddSpark(b, {x, deck + 1.4f, -roadWidth / 2 - 0.4f}, 0.16f, 1);
    }
    for (int i = 0; i < bays; ++i)
        AddBox(b,
               {{pitch * (static_cast<float>(i) + 0.9f), pitch * (static_cast<float>(i) + 1.1f)},
                {seaFloor, Builder::splitLow},
                {-roadWidth / 2, roadWidth / 2}},
               {stone, stone});
    b.SetPlace({});
}

void AddSeaFort(Builder& b, vec2 at, float radius, float height) {
    b.SetPlace({{at.x, 0, at.y}, {1, 0}});
    constexpr int sides = 10;
    AddTaper(b, Ring({}, radius * 1.5f, sides), {}, seaFloor, Builder::splitLow, 0.8f,
             {stone, stone}, false);
    AddPrism(b, Ring({}, radius * 1.2f, sides), Builder::splitHigh, 1.2f, {stone, trim});
    AddPrism(b, Ring({}, radius, sides), 1.2f, height * 0.36f, {stone, trim});
    AddPrism(b, Ring({}, radius * 1.08f, sides), height * 0.36f, height * 0.36f + 0.5f, trimmed);
    const Paint wall{Material::Tower, {0, 0.5f}, {1.0f / 16, 1.0f / 16}};
    AddPrism(b, Ring({}, radius * 0.42f, 8), height * 0.36f, height * 0.72f, {wall, trim});
    AddPrism(b, Ring({}, radius * 0.52f, 8), height * 0.72f, height * 0.76f, trimmed);
    AddTaper(b, Ring({}, radius * 0.5f, 8), {}, height * 0.76f, height, 0, {roof, roof}, false);
    for (const vec2 p : Ring({}, radius * 1.02f, 5, 0.3f))
        AddSpark(b, {p.x, height * 0.36f + 1.0f, p.y}, 0.2f, 1.2f);
    b.Building();
    b.SetPlace({});
}

void AddLighthouse(Builder& b, vec2 at, float height) {
    b.SetPlace({{at.x, 0, at.y}, {1, 0}});
    AddPrism(b, Ring({}, 2.2f, 8, pi / 8), seaFloor, 1.0f, {stone, trim});
    const Paint wall{Material::HouseCool, {}, {1.0f / 8, 1.0f / 16}};
    AddTaper(b, Ring({}, 1.1f, 8), {}, 1.0f, height - 1.8f, 0.6f, {wall, trim});
    AddPrism(b, Ring({}, 1.0f, 8), height - 1.8f, height - 1.55f, trimmed);
    AddSpark(b, {0, height - 1.0f, 0}, 0.42f, 4);
    AddTaper(b, Ring({}, 0.75f, 8), {}, height - 0.45f, height + 0.3f, 0, {roof, roof}, false);
    for (const vec2 p : Ring({}, 0.6f, 4))
        AddBox(b,
               {{p.x - 0.05f, p.x + 0.05f},
                {height - 1.55f, height - 0.45f},
                {p.y - 0.05f, p.y + 0.05f}},
               {roof, roof});
    b.Building();
    b.SetPlace({});
}

} // namespace Art
