#include "art/city/fittingparts.h"

namespace Art {

namespace {

constexpr vec3 up{0, 1, 0};
constexpr float inset = 1.5f; // texels, so that filtering stays inside a patch

Finish Even(Fitting fitting) {
    return {EvenPaint(fitting), EvenPaint(fitting)};
}

} // namespace

Paint FittingPaint(Fitting fitting, int variant, vec2 size) {
    const FittingPatch& patch = PatchOf(fitting);
    const float x = static_cast<float>(patch.x + variant % patch.variants * patch.width) + inset;
    const float y = static_cast<float>(fittingsSide - patch.y - patch.height) + inset;
    const float width = static_cast<float>(patch.width) - 2 * inset;
    const float height = static_cast<float>(patch.height) - 2 * inset;
    constexpr float side = fittingsSide;
    return {
        Material::Fittings, {x / side, y / side}, {width / side / size.x, height / side / size.y}};
}

Paint FittingPaint(Fitting fitting, int variant) {
    const FittingPatch& patch = PatchOf(fitting);
    return FittingPaint(fitting, variant,
                        {(static_cast<float>(patch.width) - 2 * inset) / nearDensity,
                         (static_cast<float>(patch.height) - 2 * inset) / nearDensity});
}

Paint EvenPaint(Fitting fitting) {
    const FittingPatch& patch = PatchOf(fitting);
    constexpr float side = fittingsSide;
    return {Material::Fittings,
            {(static_cast<float>(patch.x) + static_cast<float>(patch.width) / 2) / side,
             1 - (static_cast<float>(patch.y) + static_cast<float>(patch.height) / 2) / side},
            {0, 0}};
}

void AddReveal(Builder& b, const Opening& o, float depth, const Paint& lining, const Paint& back) {
    const float width = o.x1 - o.x0;
    const float height = o.y1 - o.y0;
    b.Rect({o.x0, o.y0, o.z}, {0, 0, -1}, up, depth, height, lining);
    b.Rect({o.x1, o.y0, o.z - depth}, {0, 0, 1}, up, depth, height, lining);
    b.Rect({o.x0, o.y0, o.z}, {1, 0, 0}, {0, 0, -1}, width, depth, lining);
    b.Rect({o.x0, o.y1, o.z - depth}, {1, 0, 0}, {0, 0, 1}, width, depth, lining);
    b.Rect({o.x0, o.y0, o.z - depth}, {1, 0, 0}, up, width, height, back);
}

void AddSill(Builder& b, const Opening& o) {
    constexpr float reach = 0.07f;
    const Paint stone = FittingPaint(Fitting::Sill);
    AddBox(b, {{o.x0 - 0.05f, o.x1 + 0.05f}, {o.y0 - 0.06f, o.y0}, {o.z, o.z + reach}},
           {stone, stone}, true);
}

void AddLintel(Builder& b, const Opening& o, float reach) {
    const Paint stone = FittingPaint(Fitting::Sill);
    AddBox(b, {{o.x0 - 0.07f, o.x1 + 0.07f}, {o.y1, o.y1 + 0.07f}, {o.z, o.z + reach}},
           {stone, stone}, true);
}

namespace {

/// A leaf hinged at (x, z), `width` along `direction` (local x and z), painted on both sides. They
/// lie apart, for a ray that meets the one from behind goes on beyond all that is in its place.
void AddLeaf(Builder& b, vec3 hinge, vec2 direction, float width, float height, int variant) {
    const Paint paint = FittingPaint(Fitting::Shutter, variant, {width, height});
    const vec3 along{direction.x, 0, direction.y};
    b.Rect(hinge, along, up, width, height, paint);
    constexpr float thick = 0.01f;
    const vec3 back{direction.y * thick, 0, -direction.x * thick};
    b.Rect(hinge + along * width + back, along * -1.0f, up, width, height, paint);
}

} // namespace

void AddShutters(Builder& b, const Opening& o, int variant, Random& random) {
    const float width = (o.x1 - o.x0) / 2;
    const float height = o.y1 - o.y0;
    for (const float side : {-1.0f, 1.0f}) {
        const float angle = random.Range(0.10f, 0.75f); // off the wall
        const vec2 direction{side * std::cos(angle), std::sin(angle)};
        const float x = side < 0 ? o.x0 - 0.01f : o.x1 + 0.01f;
        AddLeaf(b, {x, o.y0, o.z + 0.015f}, direction, width, height, variant);
    }
}

void AddFlowerBox(Builder& b, const Opening& o, int variant, Random& random) {
    constexpr float height = 0.11f;
    constexpr float front = 0.21f;
    const Paint planks = FittingPaint(Fitting::Planks, variant);
    const Paint leaves = FittingPaint(Fitting::Foliage, variant);
    const float x0 = o.x0 - 0.01f;
    const float x1 = o.x1 + 0.01f;
    const float z0 = o.z + 0.06f;
    const float z1 = o.z + front;
    AddBox(b, {{x0, x1}, {o.y0, o.y0 + height}, {z0, z1}}, {planks, leaves}, true);
    // Bushes that lean out over the front, and what trails down from them.
    const int bushes = 4;
    const float step = (x1 - x0) / bushes;
    for (int i = 0; i < bushes; ++i) {
        const float a = x0 + step * (static_cast<float>(i) - 0.15f);
        const float c = a + step * 1.3f;
        const float m = (a + c) / 2 + random.Range(-0.03f, 0.03f);
        const float y = o.y0 + height;
        const float tall = random.Range(0.09f, 0.17f);
        b.Facet({{a, y - 0.02f, z1 + 0.01f},
                 {c, y - 0.02f, z1 + 0.01f},
                 {m + 0.04f, y + tall * 0.8f, z1 - 0.05f},
                 {m - 0.04f, y + tall, z1 - 0.05f}},
                leaves);
        b.Facet({{m - 0.02f, y - random.Range(0.05f, 0.13f), z1 + 0.015f},
                 {c, y, z1 + 0.015f},
                 {a, y, z1 + 0.015f}},
                leaves);
    }
}

void AddAwning(Builder& b, const Opening& o, int variant) {
    constexpr float reach = 0.32f;
    constexpr float drop = 0.13f;
    const float x0 = o.x0 - 0.06f;
    const float x1 = o.x1 + 0.06f;
    const float y = o.y1 + 0.10f;
    const Paint cloth = FittingPaint(Fitting::Awning, variant, {x1 - x0, 0.36f});
    const Paint valance = FittingPaint(Fitting::Awning, variant, {x1 - x0, 0.32f});
    b.Facet({{x0, y - drop, o.z + reach}, {x1, y - drop, o.z + reach}, {x1, y, o.z}, {x0, y, o.z}},
            cloth);
    b.Rect({x0, y - drop - 0.07f, o.z + reach}, {1, 0, 0}, up, x1 - x0, 0.07f, valance);
    for (const float x : {x0, x1}) // both sides of either end, for it is open beneath
        for (const float side : {-1.0f, 1.0f}) {
            const vec3 wall{x, y, o.z};
            const vec3 foot{x, y - drop, o.z};
            const vec3 edge{x, y - drop, o.z + reach};
            b.Facet(side > 0 ? std::vector<vec3>{edge, foot, wall}
                             : std::vector<vec3>{foot, edge, wall},
                    EvenPaint(Fitting::Zinc));
        }
}

void AddSignBoard(Builder& b, const Opening& o, int variant) {
    const float middle = (o.x0 + o.x1) / 2;
    constexpr float half = 0.21f;
    AddBox(b, {{middle - half, middle + half}, {o.y1 + 0.11f, o.y1 + 0.27f}, {o.z, o.z + 0.03f}},
           {FittingPaint(Fitting::Sign, variant, {2 * half, 0.16f}), EvenPaint(Fitting::Iron)},
           true);
}

void AddHangingSign(Builder& b, float x, float y, float z) {
    constexpr float width = 0.36f;
    constexpr float height = 0.29f;
    const Paint board = FittingPaint(Fitting::HangingSign, 0, {width, height});
    AddBox(b, {{x - 0.012f, x + 0.012f}, {y, y + 0.025f}, {z, z + width + 0.1f}},
           Even(Fitting::Iron), true);
    const float top = y - 0.05f;
    b.Rect({x + 0.01f, top - height, z + width + 0.06f}, {0, 0, -1}, up, width, height, board);
    b.Rect({x - 0.01f, top - height, z + 0.06f}, {0, 0, 1}, up, width, height, board);
    for (const float at : {0.10f, width})
        AddBox(b, {{x - 0.008f, x + 0.008f}, {top, y}, {z + at, z + at + 0.016f}},
               Even(Fitting::Iron));
}

void AddDrainPipe(Builder& b, float x, float y0, float y1, float z) {
    constexpr float radius = 0.045f;
    const vec2 at{x, z + radius + 0.02f};
    AddTaper(b, Ring(at, radius, 4), at, y0, y1, 1, Even(Fitting::Zinc), false);
    for (float y = y0 + 0.45f; y < y1; y += 1.0f)
        AddBox(b, {{x - 0.065f, x + 0.065f}, {y, y + 0.035f}, {z, z + 2 * radius + 0.03f}},
               Even(Fitting::Iron), true);
}

void AddWashingLine(Builder& b, float x0, float x1, float y, float z, Random& random) {
    constexpr float reach = 0.30f;
    const Finish iron = Even(Fitting::Iron);
    for (const float x : {x0, x1})
        AddBox(b, {{x - 0.012f, x + 0.012f}, {y - 0.01f, y + 0.015f}, {z, z + reach + 0.02f}}, iron,
               true);
    b.Rect({x0, y, z + reach}, {1, 0, 0}, up, x1 - x0, 0.012f, EvenPaint(Fitting::Zinc));
    float x = x0 + random.Range(0.04f, 0.12f);
    while (true) {
        const float width = random.Range(0.20f, 0.36f);
        const float height = random.Range(0.24f, 0.46f);
        if (x + width > x1 - 0.03f)
            return;
        const float sway = random.Range(-0.03f, 0.05f);
        b.Facet({{x + 0.01f, y - height, z + reach + sway},
                 {x + width - 0.01f, y - height, z + reach + sway},
                 {x + width, y, z + reach},
                 {x, y, z + reach}},
                FittingPaint(Fitting::Cloth, random.Int(0, 4), {0.36f, 0.48f}));
        x += width + random.Range(0.02f, 0.10f);
    }
}

void AddWallLantern(Builder& b, vec3 at, float reach, float power) {
    constexpr float size = 0.085f;
    AddBox(b,
           {{at.x - 0.012f, at.x + 0.012f},
            {at.y + 1.6f * size, at.y + 1.6f * size + 0.025f},
            {at.z, at.z + reach + 0.03f}},
           Even(Fitting::Iron), true);
    AddLantern(b, {at.x, at.y, at.z + reach}, size, power);
}

void AddMooringPole(Builder& b, vec2 at, float height, bool lit) {
    constexpr float radius = 0.07f;
    constexpr int sides = 5;
    const Paint stripes = FittingPaint(Fitting::Pole);
    const std::vector<vec2> ring = Ring(at, radius, sides);
    AddTaper(b, ring, at, -3, Builder::splitLow, 1, {stripes, stripes}, false);
    float y = Builder::splitHigh;
    while (y < height) { // a piece is no longer than the patch
        const float end = std::min(y + 0.7f, height);
        AddTaper(b, ring, at, y, end, 1, {stripes, stripes}, false);
        y = end;
    }
    if (lit)
        AddLantern(b, {at.x, height + 0.09f, at.y}, 0.095f, 1.3f);
    else
        AddTaper(b, Ring(at, radius * 1.2f, sides), at, height, height + 0.15f, 0,
                 Even(Fitting::Zinc), false);
}

} // namespace Art
