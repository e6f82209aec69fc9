#include "art/city/towers.h"

#include "art/city/houses.h"
#include "art/common/noise.h"

namespace Art {

namespace {

const Paint trim = Plain(Material::Trim);
const Paint roof = Plain(Material::Roof);
const Finish trimmed{trim, trim};

Box Centred(float half, float y0, float y1, float aspect = 1) {
    return {{-half, half}, {y0, y1}, {-half * aspect, half * aspect}};
}

/// A ledge around a box at height y.
void AddLedge(Builder& b, const Box& box, float y, float reach, float thick) {
    AddBox(b, {{box.x0 - reach, box.x1 + reach}, {y, y + thick}, {box.z0 - reach, box.z1 + reach}},
           trimmed, true);
}

float Storeys(float y) {
    return std::max(1.0f, std::round(y));
}

/// Four lanterns at the corners of a terrace.
void AddCornerLights(Builder& b, const Box& box, float y) {
    for (const float x : {box.x0, box.x1})
        for (const float z : {box.z0, box.z1})
            AddSpark(b, {x * 0.94f, y + 0.35f, z * 0.94f}, 0.11f, 0.6f);
}

void AddMast(Builder& b, float y0, float y1, float radius) {
    AddTaper(b, Ring({}, radius, 4), {}, y0, y1, 0, {trim, trim}, false);
    AddSpark(b, {0, y1 - 0.1f, 0}, 0.13f, 0.5f);
}

void AddSetbacks(Builder& b, const Tower& t, unsigned seed) {
    float half = t.width / 2;
    float y = quayHeight;
    const float shaft = t.height * 0.84f;
    constexpr float heightShares[] = {0.42f, 0.27f, 0.18f, 0.13f};
    for (std::size_t i = 0; i < 4; ++i) {
        const float top = y + Storeys(shaft * heightShares[i]);
        const Box stage = Centred(half, y, top);
        AddFacadeBox(b, stage, Material::Tower, trim, seed);
        AddLedge(b, stage, top - 0.3f, 0.14f, 0.3f);
        if (i < 2) {
            AddCornerLights(b, stage, top);
            const float fin = half * 0.16f;
            for (const float s : {-1.0f, 1.0f}) {
                AddBox(b,
                       {{s * half * 0.5f - fin, s * half * 0.5f + fin},
                        {y, top + 0.6f},
                        {half, half + 0.2f}},
                       trimmed);
                AddBox(b,
                       {{s * half * 0.5f - fin, s * half * 0.5f + fin},
                        {y, top + 0.6f},
                        {-half - 0.2f, -half}},
                       trimmed);
            }
        }
        y = top;
        half *= 0.76f;
    }
    AddTaper(b, Ring({}, half * 1.3f, 8), {}, y, y + half * 1.2f, 0.45f, {roof, trim});
    AddMast(b, y + half * 1.2f, t.height, 0.12f);
}

void AddSpire(Builder& b, const Tower& t, unsigned seed) {
    const float half = t.width / 2;
    const float shaft = quayHeight + Storeys(t.height * 0.55f);
    const Box body = Centred(half, quayHeight, shaft);
    AddFacadeBox(b, body, Material::Tower, trim, seed);
    AddLedge(b, body, shaft, 0.25f, 0.35f);
    for (const float x : {-half, half})
        for (const float z : {-half, half}) {
            AddBox(b, {{x - 0.25f, x + 0.25f}, {quayHeight, shaft + 1.2f}, {z - 0.25f, z + 0.25f}},
                   trimmed);
            AddTaper(b, Ring({x, z}, 0.36f, 4, pi / 4), {x, z}, shaft + 1.2f, shaft + 2.8f, 0,
                     {roof, roof}, false);
        }
    const float belfry = shaft + 0.35f + Storeys(t.height * 0.12f);
    AddPrism(b, Ring({}, half * 0.95f, 8, pi / 8), shaft + 0.35f, belfry,
             {Plain(Material::Palace, {0, 2}), trim});
    AddPrism(b, Ring({}, half * 1.05f, 8, pi / 8), belfry, belfry + 0.3f, trimmed);
    AddTaper(b, Ring({}, half * 0.9f, 8, pi / 8), {}, belfry + 0.3f, t.height, 0, {roof, roof},
             false);
    AddSpark(b, {0, t.height, 0}, 0.16f, 0.6f);
    AddCornerLights(b, body, shaft + 0.2f);
}

void AddRotunda(Builder& b, const Tower& t, unsigned seed) {
    const float radius = t.width / 2;
    const float shaft = quayHeight + Storeys(t.height * 0.72f);
    constexpr int sides = 12;
    const float bays = std::round(2 * pi * radius / sides);
    const float side = 2 * radius * std::sin(pi / sides);
    const Paint wall{
        Material::Tower, {HashUnit(seed), 0}, {std::max(bays, 1.0f) / side / 16, 1.0f / 16}};
    AddPrism(b, Ring({}, radius, sides), quayHeight, shaft, {wall, trim});
    for (const float share : {0.35f, 0.7f, 1.0f}) {
        const float y = Lerp(quayHeight, shaft, share) - 0.3f;
        AddPrism(b, Ring({}, radius * 1.12f, sides), y, y + 0.3f, trimmed);
    }
    AddPrism(b, Ring({}, radius * 0.78f, sides), shaft, shaft + 2, {wall, trim});
    AddDome(b, {}, radius * 0.82f, shaft + 2, t.height * 0.14f, sides, 4, roof);
    AddMast(b, shaft + 2 + t.height * 0.135f, t.height, 0.14f);
    for (const vec2 p : Ring({}, radius * 1.05f, 6))
        AddSpark(b, {p.x, shaft + 0.4f, p.y}, 0.12f, 0.6f);
}

void AddSlab(Builder& b, const Tower& t, unsigned seed) {
    constexpr float depthShare = 0.5f;
    const float half = t.width / 2;
    const float high = quayHeight + Storeys(t.height * 0.9f);
    const float low = quayHeight + Storeys(t.height * 0.62f);
    AddFacadeBox(
        b, {{-half, half * 0.45f}, {quayHeight, high}, {-half * depthShare, half * depthShare}},
        Material::Tower, trim, seed);
    const Box wing{{half * 0.45f, half},
                   {quayHeight, low},
                   {-half * depthShare * 0.9f, half * depthShare * 0.9f}};
    AddFacadeBox(b, wing, Material::Tower, trim, seed);
    for (int i = 0; i < 4; ++i) {
        const float x = Lerp(-half, half * 0.45f, static_cast<float>(i) / 3);
        AddBox(b,
               {{x - 0.14f, x + 0.14f},
                {quayHeight, high + 0.9f},
                {half * depthShare, half * depthShare + 0.28f}},
               trimmed);
        AddBox(b,
               {{x - 0.14f, x + 0.14f},
                {quayHeight, high + 0.9f},
                {-half * depthShare - 0.28f, -half * depthShare}},
               trimmed);
    }
    AddFacadeBox(b, {{-half * 0.8f, half * 0.2f}, {high, high + 1}, {-half * 0.3f, half * 0.3f}},
                 Material::Palace, trim, seed + 2);
    b.Lamp({half * 0.7f, low + 0.8f, 0}, 0.6f);
    AddSpark(b, {half * 0.9f, low + 0.4f, half * depthShare * 0.8f}, 0.12f, 0.6f);
    AddTaper(b, Ring({-half * 0.3f, 0}, 0.2f, 4), {-half * 0.3f, 0}, high + 1, t.height, 0, trimmed,
             false);
}

void AddCampanile(Builder& b, const Tower& t, unsigned seed) {
    const float half = t.width / 2;
    const float shaft = quayHeight + Storeys(t.height * 0.62f);
    const Box body = Centred(half, quayHeight, shaft);
    AddFacadeBox(b, body, Material::HouseWarm, trim, seed);
    AddLedge(b, body, shaft, 0.18f, 0.3f);
    const float y = shaft + 0.3f;
    const float open = t.height * 0.1f;
    for (int side = 0; side < 4; ++side) {
        const Place before = b.GetPlace();
        const float angle = pi / 2 * static_cast<float>(side);
        const vec2 x{std::cos(angle), std::sin(angle)};
        const Place turned{
            before.origin,
            {before.x.x * x.x - before.x.y * x.y, before.x.x * x.y + before.x.y * x.x}};
        b.SetPlace(turned);
        ArchWall wall{.x0 = -half,
                      .x1 = half,
                      .y0 = y,
                      .y1 = y + open + half,
                      .z = half,
                      .thickness = 0.25f,
                      .arches = {{-half * 0.6f, half * 0.6f, y + open * 0.8f}},
                      .ends = false};
        AddArchWall(b, wall, trim, trim);
        b.SetPlace(before);
    }
    AddFloor(b, {{-half, -half}, {half, -half}, {half, half}, {-half, half}}, y + 0.02f, trim);
    AddSpark(b, {0, y + 0.7f, 0}, 0.2f, 1.4f);
    const Box lid = Centred(half + 0.2f, y + open + half, y + open + half + 0.3f);
    AddBox(b, lid, trimmed, true);
    AddTaper(b, Ring({}, half * 1.42f, 4, pi / 4), {}, lid.y1, t.height, 0, {roof, roof}, false);
}

} // namespace

void AddTower(Builder& b, const Tower& tower, unsigned seed) {
    b.SetPlace({{tower.at.x, 0, tower.at.y}, {std::cos(tower.rotation), std::sin(tower.rotation)}});
    using Make = void (*)(Builder&, const Tower&, unsigned);
    constexpr Make makers[] = {AddSetbacks, AddSpire, AddRotunda, AddSlab, AddCampanile};
    makers[static_cast<int>(tower.crown)](b, tower, seed);
    b.Building();
    b.SetPlace({});
}

} // namespace Art
