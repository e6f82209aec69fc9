// What hangs on walls, stands in windows and lies at quays: one texture, a patch for each.
#include "art/textures/fittings.h"

#include "art/common/noise.h"
#include "art/textures/facade.h"
#include "art/textures/textures.h"

#include <algorithm>

namespace Art {

namespace {

constexpr Rgba frameColour{0.20f, 0.15f, 0.12f};
constexpr Rgba leadColour{0.10f, 0.09f, 0.09f};

/// How far inside the rectangle p lies, negative outside.
float Depth(vec2 p, vec2 low, vec2 high) {
    return std::min({p.x - low.x, high.x - p.x, p.y - low.y, high.y - p.y});
}

/// Distance to the nearest of the lines at whole numbers.
float ToLine(float x) {
    return std::abs(x - std::round(x));
}

unsigned Id(int variant, unsigned what) {
    return Hash(static_cast<unsigned>(variant), what, 911);
}

/// What stands in a lit room, as a shade over its light: a plant, shelves, somebody.
float Furniture(vec2 p, int variant) {
    const vec2 head{0.30f, 0.46f};
    switch (variant % 4) {
    case 0: { // a vase with twigs
        const vec2 d{p.x - 0.34f, p.y};
        const float twig = std::abs(ToLine(d.x * 9 / (0.5f + p.y)) / 9);
        return p.y < 0.17f && std::abs(d.x) < 0.05f + 0.05f * std::sin(p.y * 18)      ? 0.2f
               : p.y < 0.46f && std::abs(d.x) < 0.42f * (p.y - 0.1f) && twig < 0.008f ? 0.4f
                                                                                      : 1;
    }
    case 1: // shelves along the back wall
        return p.x > 0.52f &&
                       (ToLine(p.y * 5) < 0.06f || HashUnit(static_cast<unsigned>(p.x * 34),
                                                            static_cast<unsigned>(p.y * 5)) < 0.45f)
                   ? 0.45f
                   : 1;
    case 2: { // somebody looks out
        const vec2 d = p - head;
        const bool face = d.x * d.x / 0.0085f + d.y * d.y / 0.0060f < 1;
        const bool body =
            p.y < 0.42f && std::abs(d.x) < 0.20f - 0.35f * std::max(p.y - 0.26f, 0.0f);
        return face || body ? 0.22f : 1;
    }
    default: // a picture on the wall
        return Depth(p, {0.16f, 0.48f}, {0.44f, 0.70f}) > 0 ? 0.55f : 1;
    }
}

/// Folds of a curtain drawn in from both sides, 0 where there is none.
float Curtain(vec2 p, float drawn) {
    const float edge = std::abs(p.x - 0.5f) - (0.5f - drawn) - 0.05f * (1 - p.y) * (1 - p.y);
    return edge > 0 ? 0.64f + 0.12f * std::sin(p.x * 44 + std::sin(p.y * 3)) : 0;
}

Rgba Room(vec2 p, int variant, float strength, float drawn) {
    constexpr Rgba lights[] = {
        {1.0f, 0.74f, 0.38f}, {1.0f, 0.63f, 0.26f}, {1.0f, 0.82f, 0.52f}, {0.98f, 0.55f, 0.22f}};
    const vec2 lamp{0.3f + 0.4f * HashUnit(Id(variant, 3)), 0.78f};
    const float near = std::exp(-5 * Dot(p - lamp, p - lamp));
    const float curtain = Curtain(p, drawn);
    const float level =
        strength * (0.46f + 0.64f * near) * (curtain > 0 ? curtain : Furniture(p, variant));
    return Shade(lights[Id(variant, 2) % 4], std::min(level, 1.0f));
}

Rgba Sky(vec2 p, int variant) {
    // The dusk stands in the upper panes, the house across in the lower ones.
    const float roofs = 0.42f + 0.16f * HashUnit(static_cast<unsigned>(p.x * 5), Id(variant, 4));
    const float sky = SmoothStep(roofs - 0.02f, roofs + 0.02f, p.y + 0.02f * std::sin(p.x * 31));
    const float wave = 1 + 0.12f * std::sin(p.x * 23 + p.y * 9 + static_cast<float>(variant));
    return Lerp(Rgba{0.07f, 0.075f, 0.10f}, Rgba{0.26f, 0.27f, 0.44f}, sky * (0.4f + 0.6f * p.y)) *
           wave;
}

/// A casement of `across` x `up` panes: frame, glazing bars, their shadow on the glass. Most are
/// seen from where a bar is less than a pixel, so it takes some of the glass's colour.
Rgba Casement(vec2 p, int across, int up, const std::function<Rgba(vec2)>& glass) {
    const float border = Depth(p, {0.07f, 0.055f}, {0.93f, 0.945f});
    if (border < 0)
        return Shade(frameColour, border < -0.03f ? 1.25f : 0.75f);
    const vec2 q{(p.x - 0.07f) / 0.86f, (p.y - 0.055f) / 0.89f};
    const float bar = std::min(
        across > 1 ? ToLine(q.x * static_cast<float>(across)) / static_cast<float>(across) : 1,
        up > 1 ? ToLine(q.y * static_cast<float>(up)) / static_cast<float>(up) : 1);
    if (bar < 0.017f)
        return Lerp(glass(q), Shade(frameColour, 0.85f), 0.6f);
    return Shade(glass(q), bar < 0.032f ? 0.78f : 1.0f);
}

Rgba Leaded(vec2 p, const std::function<Rgba(vec2)>& glass) {
    const float a = ToLine((p.x * 0.8f + p.y) * 5);
    const float c = ToLine((p.x * 0.8f - p.y) * 5);
    const Rgba pane = glass(p);
    if (Depth(p, {0.06f, 0.05f}, {0.94f, 0.95f}) < 0)
        return frameColour;
    return std::min(a, c) < 0.055f
               ? leadColour
               : Shade(pane, 0.9f + 0.2f * HashUnit(static_cast<unsigned>(
                                               std::round((p.x * 0.8f + p.y) * 5) * 17 +
                                               std::round((p.x * 0.8f - p.y) * 5))));
}

Rgba LitPane(vec2 p, int variant) {
    const auto room = [&](vec2 q) {
        return Room(q, variant, 0.92f, 0.10f + 0.12f * HashUnit(Id(variant, 5)));
    };
    return variant == 5 ? Leaded(p, room) : Casement(p, 2, 2 + variant % 2, room);
}

Rgba DimPane(vec2 p, int variant) {
    return Casement(p, 2, 3, [&](vec2 q) { return Room(q, variant + 3, 0.62f, 0.5f); });
}

Rgba DarkPane(vec2 p, int variant) {
    return Casement(p, 2, 2 + variant % 2, [&](vec2 q) {
        const float curtain = Curtain(q, 0.18f);
        return curtain > 0 ? Shade({0.20f, 0.19f, 0.20f}, curtain) : Sky(q, variant);
    });
}

/// Grain along y, in 0..1.
float Grained(vec2 p, unsigned seed) {
    return 0.5f + 0.28f * Noise2({p.x * 46, p.y * 3}, seed) +
           0.16f * Noise2({p.x * 150, p.y * 9}, seed);
}

Rgba Door(vec2 p, int variant) {
    constexpr Rgba paints[] = {{0.22f, 0.30f, 0.27f}, {0.36f, 0.19f, 0.13f}, {0.20f, 0.24f, 0.36f}};
    if (p.y > 0.80f) {
        const float fan = Depth(p, {0.10f, 0.83f}, {0.90f, 0.97f});
        const float spoke = ToLine(std::atan2(p.y - 0.80f, (p.x - 0.5f) * 0.62f) * 7 / pi);
        return fan < 0 || spoke < 0.08f ? frameColour : Rgba{0.98f, 0.66f, 0.30f};
    }
    const float leafX = p.x < 0.5f ? p.x * 2 : p.x * 2 - 1;
    const float wear = 0.75f + 0.35f * Grained(p, 41 + static_cast<unsigned>(variant)) -
                       0.25f * SmoothStep(0.12f, 0.0f, p.y);
    if (std::abs(p.x - 0.5f) < 0.012f || p.y < 0.012f || std::min(p.x, 1 - p.x) < 0.015f)
        return Shade(leadColour, 0.6f);
    const vec2 knob{(p.x - 0.56f) * 0.62f, p.y - 0.40f};
    if (Dot(knob, knob) < 0.0004f)
        return {0.62f, 0.50f, 0.26f};
    for (int panel = 0; panel < 3; ++panel) {
        const float low = 0.06f + 0.25f * static_cast<float>(panel);
        const float in = Depth({leafX, p.y * 2}, {0.18f, 2 * low}, {0.84f, 2 * (low + 0.19f)});
        if (in > -0.03f && in < 0.05f) // bevel: lit above, shaded below
            return Shade(paints[variant % 3], wear * (p.y > low + 0.095f ? 0.55f : 1.35f));
    }
    return Shade(paints[variant % 3], wear);
}

Rgba Shop(vec2 p, int variant) {
    return Casement(p, 3, 1, [&](vec2 q) {
        const float near = std::exp(-3 * (q.y - 0.9f) * (q.y - 0.9f));
        Rgba light = Shade({1.0f, 0.70f, 0.36f}, 0.28f + 0.50f * near);
        const int shelf = static_cast<int>(q.y * 3);
        const float within = q.y * 3 - static_cast<float>(shelf);
        const unsigned item = Hash(static_cast<unsigned>(q.x * 13), static_cast<unsigned>(shelf),
                                   static_cast<unsigned>(variant));
        const float x = std::abs(q.x * 13 - std::floor(q.x * 13) - 0.5f);
        if (within < 0.07f)
            return Shade(frameColour, 0.8f);
        const float tall = 0.25f + 0.5f * HashUnit(item, 1);
        if (shelf < 2 && within < tall && x < 0.16f + 0.26f * HashUnit(item, 2) &&
            HashUnit(item, 3) < 0.85f) {
            constexpr Rgba goods[] = {{0.75f, 0.22f, 0.12f},
                                      {0.28f, 0.42f, 0.20f},
                                      {0.85f, 0.66f, 0.30f},
                                      {0.24f, 0.20f, 0.30f}};
            light = Shade(goods[item % 4], 0.5f + 0.5f * (1 - 2 * x));
        }
        return light;
    });
}

Rgba Planks(vec2 p, int variant) {
    constexpr Rgba paints[] = {{0.50f, 0.24f, 0.16f}, {0.30f, 0.38f, 0.30f}};
    const bool gap = ToLine(p.y * 2) < 0.05f || std::min(p.x, 1 - p.x) < 0.012f;
    return Shade(paints[variant % 2], gap ? 0.35f : 0.7f + 0.5f * Grained({p.y, p.x}, 51));
}

/// Stripes that wind up a pole, chipped; darker where it turns away.
Rgba Pole(vec2 p) {
    const float turn = p.y * 3 + p.x * 0.5f;
    const bool red = turn - std::floor(turn) < 0.5f;
    const float chips = SmoothStep(0.30f, 0.42f, Fbm2({p.x * 5, p.y * 20}, 58, 4));
    const Rgba paint = red ? Rgba{0.56f, 0.13f, 0.11f} : Rgba{0.74f, 0.70f, 0.62f};
    const float tone = 0.8f + 0.3f * Grained({p.x * 0.3f, p.y}, 59);
    return Shade(Lerp(paint, Rgba{0.32f, 0.26f, 0.21f}, chips), tone);
}

Rgba Shutter(vec2 p, int variant) {
    constexpr Rgba paints[] = {{0.17f, 0.29f, 0.26f}, {0.22f, 0.27f, 0.38f}, {0.40f, 0.20f, 0.15f}};
    const Rgba paint = Shade(paints[variant % 3], 0.85f + 0.3f * Grained(p, 61));
    const float in = Depth(p, {0.13f, 0.07f}, {0.87f, 0.93f});
    const bool hinge =
        p.x > 0.72f && (std::abs(p.y - 0.16f) < 0.014f || std::abs(p.y - 0.84f) < 0.014f);
    if (hinge)
        return leadColour;
    if (in < 0 || std::abs(p.y - 0.5f) < 0.035f)
        return Shade(paint, in < -0.05f || p.y > 0.5f ? 1.15f : 1.0f);
    const float slat = p.y * 22 - std::floor(p.y * 22);
    return Shade(paint, in < 0.012f ? 0.6f : 0.62f + 0.36f * slat);
}

Rgba Awning(vec2 p, int variant) {
    constexpr Rgba stripes[2][2] = {{{0.62f, 0.16f, 0.12f}, {0.80f, 0.74f, 0.62f}},
                                    {{0.16f, 0.34f, 0.36f}, {0.80f, 0.74f, 0.62f}}};
    const int stripe = static_cast<int>(p.x * 10) % 2;
    const float sag =
        0.88f + 0.16f * std::sin(p.x * 10 * pi) * (1 - p.y) + 0.1f * Noise2(p * 40, 71);
    return Shade(stripes[variant % 2][stripe], sag * (p.y < 0.05f ? 0.7f : 1.0f));
}

/// Strokes that read as a line of lettering.
bool Lettering(vec2 p, vec2 low, vec2 high, unsigned seed) {
    if (Depth(p, low, high) < 0)
        return false;
    const float x = (p.x - low.x) / (high.x - low.x) * 9;
    const float y = (p.y - low.y) / (high.y - low.y);
    const float in = x - std::floor(x);
    const unsigned glyph = Hash(static_cast<unsigned>(x), seed);
    if (glyph % 7 == 0)
        return false;
    const bool stem = in > 0.12f && in < 0.34f;
    const bool bow =
        in < 0.80f && in > 0.12f &&
        (std::abs(y - 0.12f) < 0.12f || ((glyph & 8) != 0 && std::abs(y - 0.88f) < 0.12f) ||
         ((glyph & 16) != 0 && std::abs(y - 0.5f) < 0.1f));
    return stem || bow || ((glyph & 32) != 0 && in > 0.6f && in < 0.8f);
}

Rgba Sign(vec2 p, int variant) {
    constexpr Rgba boards[] = {{0.14f, 0.20f, 0.22f}, {0.32f, 0.13f, 0.10f}};
    constexpr Rgba gold{0.84f, 0.68f, 0.36f};
    const float in = Depth(p, {0.04f, 0.06f}, {0.96f, 0.94f});
    if (in < 0 || Lettering(p, {0.1f, 0.34f}, {0.9f, 0.70f}, 81 + static_cast<unsigned>(variant)))
        return gold;
    return Shade(boards[variant % 2], 0.8f + 0.4f * Grained({p.y, p.x}, 82));
}

Rgba HangingSign(vec2 p) {
    constexpr Rgba gold{0.88f, 0.70f, 0.34f};
    const vec2 q{(p.x - 0.5f) * 1.25f, p.y - 0.56f};
    const float ring = std::abs(Length(q) - 0.25f);
    const bool star = Length(q) < 0.10f + 0.07f * std::cos(5 * std::atan2(q.y, q.x));
    if (Depth(p, {0.03f, 0.04f}, {0.97f, 0.96f}) < 0 || ring < 0.025f || star ||
        Lettering(p, {0.12f, 0.10f}, {0.88f, 0.22f}, 83))
        return gold;
    return Shade({0.12f, 0.17f, 0.25f}, 0.8f + 0.4f * Grained(p, 84));
}

Rgba Foliage(vec2 p, int variant) {
    constexpr Rgba blossoms[] = {
        {0.86f, 0.20f, 0.22f}, {0.92f, 0.62f, 0.70f}, {0.95f, 0.76f, 0.30f}};
    const Cell leaf = Cellular2(p * 14, 95 + static_cast<unsigned>(variant), 14);
    const float vein = SmoothStep(0.0f, 0.25f, leaf.second - leaf.nearest);
    const float tone = (0.35f + 0.75f * HashUnit(leaf.id)) * (0.45f + 0.55f * vein);
    if (HashUnit(leaf.id, 7) < 0.24f && leaf.nearest < 0.42f)
        return Shade(blossoms[variant % 3], 0.7f + 0.6f * (0.42f - leaf.nearest));
    return Shade({0.24f, 0.38f, 0.16f}, tone);
}

Rgba Cloth(vec2 p, int variant) {
    constexpr Rgba dyes[] = {{0.78f, 0.76f, 0.72f},
                             {0.66f, 0.28f, 0.22f},
                             {0.70f, 0.72f, 0.78f},
                             {0.34f, 0.42f, 0.56f},
                             {0.80f, 0.70f, 0.48f}};
    const float fold = 0.80f + 0.2f * std::sin(p.x * 17 + 2 * std::sin(p.y * 2.3f) +
                                               static_cast<float>(variant) * 2);
    const bool hem = p.y < 0.05f || (variant == 2 && ToLine(p.y * 6) < 0.12f);
    const bool peg = p.y > 0.93f && ToLine(p.x * 2 + 0.5f) < 0.06f;
    return peg ? Rgba{0.45f, 0.32f, 0.20f} : Shade(dyes[variant % 5], fold * (hem ? 0.72f : 1.0f));
}

Rgba Wood(vec2 p) {
    const float y = p.y * 4;
    const int plank = static_cast<int>(y);
    const float gap = y - static_cast<float>(plank);
    const float tone = 0.7f + 0.35f * HashUnit(static_cast<unsigned>(plank), 101);
    return Shade({0.36f, 0.29f, 0.23f},
                 gap < 0.06f ? 0.3f : tone * (0.7f + 0.6f * Grained({p.y * 1.2f, p.x * 3}, 102)));
}

Rgba Stonework(vec2 p, float units, unsigned seed) {
    const vec2 q = p * units;
    const float bump = Fbm2(q * 9, seed, 5) - Fbm2(q * 9 + vec2{0.05f, 0.09f}, seed, 5);
    const float tone = 1 + 0.10f * Fbm2(q * 3, seed + 1, 4) - 0.5f * bump;
    const float soot = 1 - 0.22f * SmoothStep(0.1f, 0.5f, Fbm2(q * 4, seed + 2, 4));
    return Shade({0.68f, 0.65f, 0.61f}, tone * soot);
}

} // namespace

Rgba FittingColour(Fitting fitting, int variant, vec2 p) {
    switch (fitting) {
    case Fitting::LitPane:
        return LitPane(p, variant);
    case Fitting::DimPane:
        return DimPane(p, variant);
    case Fitting::DarkPane:
        return DarkPane(p, variant);
    case Fitting::Door:
        return Door(p, variant);
    case Fitting::Shop:
        return Shop(p, variant);
    case Fitting::Planks:
        return Planks(p, variant);
    case Fitting::Iron:
        return {0.24f, 0.235f, 0.26f};
    case Fitting::Zinc:
        return {0.42f, 0.44f, 0.45f};
    case Fitting::Pole:
        return Pole(p);
    case Fitting::Shutter:
        return Shutter(p, variant);
    case Fitting::Awning:
        return Awning(p, variant);
    case Fitting::Sign:
        return Sign(p, variant);
    case Fitting::Sill:
        return Stonework(p, 0.9f, 111);
    case Fitting::Foliage:
        return Foliage(p, variant);
    case Fitting::Cloth:
        return Cloth(p, variant);
    case Fitting::HangingSign:
        return HangingSign(p);
    case Fitting::Wood:
        return Wood(p);
    case Fitting::Stonework:
        return Stonework(p, 2, 121);
    case Fitting::Count:
        break;
    }
    return {};
}

namespace {

/// Paints one variant at twice the size.
void PaintPatch(Picture& large, Fitting fitting, int variant) {
    const FittingPatch& patch = PatchOf(fitting);
    const int x0 = 2 * (patch.x + variant * patch.width);
    const int y0 = 2 * patch.y;
    for (int y = 0; y < 2 * patch.height; ++y)
        for (int x = 0; x < 2 * patch.width; ++x)
            large.At(x0 + x, y0 + y) = FittingColour(
                fitting, variant,
                {(static_cast<float>(x) + 0.5f) / static_cast<float>(2 * patch.width),
                 1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(2 * patch.height)});
}

} // namespace

Picture PaintFittings() {
    Picture large(2 * fittingsSide, 2 * fittingsSide);
    for (int f = 0; f < static_cast<int>(Fitting::Count); ++f)
        for (int variant = 0; variant < fittingPatches[f].variants; ++variant)
            PaintPatch(large, static_cast<Fitting>(f), variant);
    return Halved(large);
}

} // namespace Art
