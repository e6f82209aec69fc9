#include "art/city/houses.h"

#include "art/city/nearwalls.h"
#include "art/common/noise.h"

namespace Art {

namespace {

constexpr float storeyHeight = 1.0f;

const Paint trim = Plain(Material::Trim);
const Finish trimmed{trim, trim};

Paint RoofPaint(Random& random) {
    return Plain(Material::Roof, {random.Range(0, 6), random.Range(0, 6)});
}

Material HouseMaterial(int materials, Random& random) {
    constexpr Material choices[4][4] = {
        {Material::HouseWarm, Material::HouseCool, Material::HouseWarm, Material::Palace},
        {Material::HouseCool, Material::HouseCool, Material::HouseWarm, Material::Palace},
        {Material::Palace, Material::HouseWarm, Material::Palace, Material::HouseCool},
        {Material::Town, Material::Town, Material::HouseWarm, Material::Town},
    };
    return choices[materials][random.Int(0, 3)];
}

void AddChimney(Builder& b, const Box& body, float rise, Random& random) {
    const float x = random.Range(body.x0 + 0.4f, body.x1 - 0.7f);
    const float z = random.Range(body.z0 + 0.5f, body.z1 - 0.9f);
    const float top = body.y1 + rise * random.Range(0.9f, 1.2f) + 0.2f;
    AddBox(b, {{x, x + 0.34f}, {body.y1, top}, {z, z + 0.34f}}, {Plain(Material::Stone), trim});
}

/// A small house of its own on a roof, facing the front.
void AddDormer(Builder& b, float x, float y, float front, float back) {
    const Box box{{x - 0.35f, x + 0.35f}, {y, y + 0.75f}, {back, front}};
    const Paint window{Material::HouseWarm, {0, 3.0f / 16}, {1 / 0.7f / 8, 1 / 0.8f / 16}};
    AddWall(b, {box.x0, front}, {box.x1, front}, box.y0, box.y1, window);
    AddWall(b, {box.x1, front}, {box.x1, back}, box.y0, box.y1, trim);
    AddWall(b, {box.x0, back}, {box.x0, front}, box.y0, box.y1, trim);
    AddGableAlongZ(b, box, 0.35f, 0.08f, {trim, Plain(Material::Roof)});
}

void AddPitched(Builder& b, const Box& body, Random& random, Material material, bool detailed) {
    const Paint roof = RoofPaint(random);
    const float width = body.x1 - body.x0;
    const float depth = body.z1 - body.z0;
    const Paint gable{material, {0, 2.0f / 16}, {1.0f / 8, 1.0f / 16}};
    const int kind = random.Int(0, 3);
    const float pitch = random.Range(0.55f, 0.95f);
    float rise = pitch * depth / 2;
    if (kind == 0) {
        rise = pitch * 1.25f * width / 2;
        AddGableAlongZ(b, body, rise, 0.12f, {gable, roof});
    } else if (kind == 1) {
        AddHip(b, body, pitch * std::min(width, depth) / 2 + 0.2f, 0.15f, roof);
    } else {
        AddGableAlongX(b, body, rise, 0.15f, {gable, roof});
        if (detailed)
            for (int i = 0; i < static_cast<int>(width / 1.6f); ++i)
                AddDormer(b, body.x0 + 0.9f + 1.5f * static_cast<float>(i), body.y1 + 0.1f,
                          body.z1 - 0.25f, body.z1 - 0.25f - 0.75f / pitch);
    }
    AddChimney(b, body, rise * 0.8f, random);
    if (detailed)
        AddChimney(b, body, rise * 0.8f, random);
}

void AddTerrace(Builder& b, const Box& body, Random& random, bool detailed) {
    constexpr float thickness = 0.14f;
    const float y0 = body.y1;
    const float y1 = y0 + 0.35f;
    AddBox(b, {{body.x0, body.x1}, {y0, y1}, {body.z1 - thickness, body.z1}}, trimmed);
    AddBox(b, {{body.x0, body.x1}, {y0, y1}, {body.z0, body.z0 + thickness}}, trimmed);
    AddBox(b,
           {{body.x0, body.x0 + thickness}, {y0, y1}, {body.z0 + thickness, body.z1 - thickness}},
           trimmed);
    AddBox(b,
           {{body.x1 - thickness, body.x1}, {y0, y1}, {body.z0 + thickness, body.z1 - thickness}},
           trimmed);
    const float width = body.x1 - body.x0;
    const float x = body.x0 + width * random.Range(0.2f, 0.5f);
    const float deep = (body.z1 - body.z0) * 0.45f;
    AddFacadeBox(
        b,
        {{x, x + width * 0.35f}, {y0, y0 + storeyHeight}, {body.z0 + 0.3f, body.z0 + 0.3f + deep}},
        Material::HouseCool, trim, random.Next());
    if (detailed && random.Chance(0.5f))
        AddLantern(b, {body.x1 - 0.4f, y1 + 0.45f, body.z1 - 0.07f}, 0.1f, 0.6f);
}

void AddCornice(Builder& b, const Box& body, float y, float reach, float thick) {
    AddBox(b, {{body.x0, body.x1}, {y, y + thick}, {body.z1, body.z1 + reach}}, trimmed, true);
}

/// A slab at the foot of a storey, with a hand rail of stone on balusters of its own width: of the
/// wall's colour, they do not come and go where they are thinner than a pixel.
void AddBalcony(Builder& b, float x, float width, float y, float z) {
    constexpr float thick = 0.08f;
    constexpr int balusters = 5;
    const float front = z + 0.42f;
    const float rail = y + 0.24f;
    AddBox(b, {{x, x + width}, {y - thick, y}, {z, front}}, trimmed, true);
    AddBox(b, {{x, x + width}, {rail, rail + thick}, {front - thick, front}}, trimmed, true);
    for (const float side : {x, x + width - thick})
        AddBox(b, {{side, side + thick}, {rail, rail + thick}, {z, front - thick}}, trimmed, true);
    for (int i = 0; i < balusters; ++i) {
        const float left =
            Lerp(x, x + width - thick, static_cast<float>(i) / static_cast<float>(balusters - 1));
        AddBox(b, {{left, left + thick}, {y, rail}, {front - thick, front}}, trimmed);
    }
}

/// One balcony over the other on every second storey below `top`.
void AddBalconies(Builder& b, float x, float width, float top) {
    for (int storey = 2; quayHeight + storeyHeight * static_cast<float>(storey) < top; storey += 2)
        AddBalcony(b, x, width, quayHeight + storeyHeight * static_cast<float>(storey) + 0.02f, 0);
}

/// One side of a bay that stands out, between two of its corners.
void AddOrielWall(Builder& b, const Box& box, vec2 from, vec2 to, Material material,
                  unsigned seed) {
    const Place house = b.GetPlace();
    const float width = Length(to - from);
    const vec3 along = house.Rotated(vec3{to.x - from.x, 0, to.y - from.y} * (1 / width));
    b.SetPlace({house.World({from.x, 0, from.y}), {along.x, along.z}});
    AddFront(b, {.width = width,
                 .y0 = box.y0,
                 .y1 = box.y1,
                 .z = 0,
                 .material = material,
                 .far = FacadePaint(material, {width, box.y1 - box.y0}, seed, 0),
                 .seed = seed,
                 .street = false,
                 .narrow = true});
    b.SetPlace(house);
}

/// A bay that stands out from the upper storeys.
void AddOriel(Builder& b, float x, float y0, float y1, float z, Material material, unsigned seed) {
    const Box box{{x, x + 1.0f}, {y0, y1}, {z - 0.1f, z + 0.5f}};
    AddOrielWall(b, box, {box.x0, box.z0}, {box.x0, box.z1}, material, seed);
    AddOrielWall(b, box, {box.x0, box.z1}, {box.x1, box.z1}, material, seed);
    AddOrielWall(b, box, {box.x1, box.z1}, {box.x1, box.z0}, material, seed);
    AddTaper(b, {{x, z}, {x + 1, z}, {x + 1, z + 0.5f}, {x, z + 0.5f}}, {x + 0.5f, z}, y1,
             y1 + 0.5f, 0.1f, {Plain(Material::Roof), trim});
    b.Facet({{x + 0.3f, y0 - 0.4f, z},
             {x + 0.7f, y0 - 0.4f, z},
             {x + 1, y0, z + 0.5f},
             {x, y0, z + 0.5f}},
            trim);
}

void AddDress(Builder& b, const Box& body, Material material, Random& random) {
    AddCornice(b, body, body.y1 - 0.30f, 0.14f, 0.16f); // under the eaves, which hide its top
    if (random.Chance(0.6f))
        AddCornice(b, body, body.y0 + storeyHeight, 0.07f, 0.1f);
    const float width = body.x1 - body.x0;
    const int bays = static_cast<int>(width);
    const float bay = width / static_cast<float>(std::max(bays, 1));
    const int what = random.Int(0, 3);
    const float column = static_cast<float>(random.Int(0, std::max(bays - 1, 0)));
    if (what == 0 && body.y1 > quayHeight + 3)
        AddOriel(b, body.x0 + bay * column + bay / 2 - 0.5f, quayHeight + 1.2f, body.y1 - 0.8f, 0,
                 material, random.Next());
    else if (what < 3)
        AddBalconies(b, body.x0 + bay * column + 0.1f, bay * (bays > 2 ? 2.0f : 1.0f) - 0.2f,
                     body.y1 - 1.2f);
    if (random.Chance(0.35f))
        AddLantern(b, {body.x0 + bay * 0.5f, quayHeight + 1.05f, 0.22f}, 0.09f, 0.5f);
}

/// The open ground floor: arches in front, a lit wall behind.
void AddArcade(Builder& b, float width, float height, Material material, Random& random) {
    constexpr float arcadeDepth = 1.1f;
    const int count = std::max(1, static_cast<int>(std::round(width / 1.35f)));
    const float pitch = width / static_cast<float>(count);
    ArchWall wall{.x0 = 0,
                  .x1 = width,
                  .y0 = quayHeight,
                  .y1 = quayHeight + height,
                  .z = 0,
                  .thickness = 0.3f,
                  .back = false,
                  .ends = false};
    for (int i = 0; i < count; ++i) {
        const float middle = pitch * (static_cast<float>(i) + 0.5f);
        const float radius = pitch * 0.36f;
        wall.arches.push_back(
            {middle - radius, middle + radius, quayHeight + height - radius - 0.3f});
    }
    AddArchWall(b, wall, Plain(Material::Stone, {random.Range(0, 8), 0.5f}), trim);
    const float bays = std::round(width);
    const Paint inner{material,
                      {static_cast<float>(random.Int(0, 7)) / 8, 0},
                      {bays / width / 8, 1.0f / 16 / height}};
    AddFront(b, {.width = width,
                 .y0 = quayHeight,
                 .y1 = quayHeight + height,
                 .z = -arcadeDepth,
                 .material = material,
                 .far = inner,
                 .seed = Hash(static_cast<unsigned>(width * 4096),
                              static_cast<unsigned>(inner.origin.x * 8)),
                 .street = true,
                 .sheltered = true});
    if (random.Chance(0.8f))
        AddLantern(b, {pitch * 0.5f, quayHeight + height - 0.5f, -arcadeDepth * 0.6f}, 0.1f, 1.3f);
    if (count > 1) // on the first pier
        AddLantern(b, {pitch, quayHeight + height - 0.5f, 0.2f}, 0.11f, 0.9f);
}

void AddHouse(Builder& b, float width, float height, const RowStyle& style, Random& random) {
    const Material material = HouseMaterial(style.materials, random);
    const float top = quayHeight + std::round(height / storeyHeight) * storeyHeight;
    const float depth = style.depth * random.Range(0.85f, 1.1f);
    const Box body{{0, width}, {quayHeight, top}, {-depth, 0}};
    Box upper = body;
    if (style.arcade) {
        constexpr float arcadeHeight = 1.7f;
        AddArcade(b, width, arcadeHeight, material, random);
        upper.y0 += arcadeHeight;
        b.Rect({0, upper.y0, -1.1f}, {1, 0, 0}, {0, 0, 1}, width, 0.8f, trim);
        b.surfaces.back().shades = true;
        AddFacadeBox(b, {{0, width}, {quayHeight, upper.y0}, {-depth, -1.1f}}, material, trim,
                     random.Next(), false);
    }
    const unsigned seed = random.Next();
    AddFacadeBox(b, upper, material, trim, seed, false);
    AddFront(b, {.width = width,
                 .y0 = upper.y0,
                 .y1 = upper.y1,
                 .z = 0,
                 .material = material,
                 .far = FacadePaint(material, {width, upper.y1 - upper.y0}, seed, 0),
                 .seed = seed,
                 .street = !style.arcade});
    if (style.detailed)
        AddDress(b, upper, material, random);
    if (style.flat || random.Chance(0.22f))
        AddTerrace(b, body, random, style.detailed);
    else
        AddPitched(b, body, random, material, style.detailed && random.Chance(0.7f));
    b.Building();
}

} // namespace

Place Facing(vec2 from, vec2 to, float y) {
    const vec2 along = (to - from) * (1 / Length(to - from));
    return {{from.x, y, from.y}, along};
}

void AddRow(Builder& b, vec2 from, vec2 to, const RowStyle& style, unsigned seed) {
    Random random(seed);
    const float length = Length(to - from);
    const vec2 along = (to - from) * (1 / length);
    float x = 0;
    float last = 0;
    while (x < length - 0.5f) {
        float width = random.Range(style.narrowest, style.widest);
        if (length - x - width < style.narrowest)
            width = length - x;
        float height = random.Range(style.lowest, style.highest);
        if (std::abs(height - last) < 0.8f)
            height += height < style.highest - 1 ? 1.0f : -1.0f;
        last = height;
        b.SetPlace(Facing(from + along * x, to));
        AddHouse(b, width, height, style, random);
        x += width;
    }
    b.SetPlace({});
}

void AddPalace(Builder& b, vec2 from, vec2 to, float depth, float height, unsigned seed) {
    Random random(seed);
    b.SetPlace(Facing(from, to));
    const float width = Length(to - from);
    const Box body{{0, width}, {quayHeight, quayHeight + height}, {-depth, -1.2f}};
    AddFacadeBox(b, body, Material::Palace, trim, seed);
    AddHip(b, body, depth * 0.3f, 0.25f, RoofPaint(random));
    const float x0 = width * 0.2f;
    const float x1 = width * 0.8f;
    const float beam = quayHeight + height * 0.62f;
    const int columns = std::max(4, static_cast<int>((x1 - x0) / 0.9f));
    AddBox(b, {{x0, x1}, {quayHeight, quayHeight + 0.25f}, {-1.2f, 0.1f}}, trimmed);
    for (int i = 0; i < columns; ++i)
        AddColumn(
            b,
            {Lerp(x0 + 0.25f, x1 - 0.25f, static_cast<float>(i) / static_cast<float>(columns - 1)),
             -0.25f},
            quayHeight + 0.25f, beam, 0.14f, 6, trim);
    const Box attic{{x0, x1}, {beam, beam + 0.4f}, {-1.2f, 0.05f}};
    AddBox(b, attic, trimmed, true);
    AddGableAlongZ(b, attic, 0.9f, 0.1f, {trim, RoofPaint(random)});
    AddCornice(b, body, body.y1 - 0.15f, 0.18f, 0.2f);
    AddLantern(b, {(x0 + x1) / 2, quayHeight + 1.5f, -0.9f}, 0.12f);
    b.Building();
    b.SetPlace({});
}

void AddBasilica(Builder& b, vec2 at, vec2 along, float s, unsigned seed) {
    b.SetPlace({{at.x, 0, at.y}, along});
    const Paint roof = Plain(Material::Roof);
    const Box nave{{-1.1f * s, 1.1f * s}, {quayHeight, quayHeight + 2.2f * s}, {-6 * s, -0.6f * s}};
    AddFacadeBox(b, nave, Material::Palace, trim, seed);
    AddGableAlongZ(b, nave, 0.9f * s, 0.2f, {Plain(Material::Palace), roof});
    for (const float side : {-1.0f, 1.0f}) {
        const float x0 = std::min(side * 1.1f, side * 2.1f) * s;
        AddFacadeBox(b, {{x0, x0 + s}, {quayHeight, quayHeight + 1.2f * s}, {-6 * s, -0.6f * s}},
                     Material::Palace, roof, seed + 1);
        const float t = side * 1.5f * s;
        const Box bell{{t - 0.5f * s, t + 0.5f * s},
                       {quayHeight, quayHeight + 3.2f * s},
                       {-0.9f * s, 0.1f * s}};
        AddFacadeBox(b, bell, Material::Palace, trim, seed + 2);
        AddTaper(b, Ring({t, -0.4f * s}, 0.6f * s, 8), {t, -0.4f * s}, bell.y1, bell.y1 + 0.8f * s,
                 0.9f, {trim, trim});
        AddTaper(b, Ring({t, -0.4f * s}, 0.58f * s, 8), {t, -0.4f * s}, bell.y1 + 0.8f * s,
                 bell.y1 + 2.0f * s, 0, {roof, roof}, false);
    }
    const vec2 crossing{0, -4.2f * s};
    AddPrism(b, Ring(crossing, 1.6f * s, 12), quayHeight + 2.2f * s, quayHeight + 3.6f * s,
             {Plain(Material::Palace), trim});
    AddDome(b, crossing, 1.7f * s, quayHeight + 3.6f * s, 1.9f * s, 12, 4, roof);
    AddPrism(b, Ring(crossing, 0.35f * s, 8), quayHeight + 5.3f * s, quayHeight + 6.1f * s,
             {trim, trim});
    AddTaper(b, Ring(crossing, 0.42f * s, 8), crossing, quayHeight + 6.1f * s,
             quayHeight + 7.3f * s, 0, {roof, roof}, false);
    AddLantern(b, {0, quayHeight + 1.6f * s, 0.15f}, 0.16f, 2);
    for (const float x : {-1.5f, 0.0f, 1.5f})
        b.Building({x * s, 0});
    b.SetPlace({});
}

} // namespace Art
