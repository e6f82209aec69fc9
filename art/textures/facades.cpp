// The three kinds of facade; surfaces without windows are in surfaces.cpp.
#include "art/textures/facade.h"
#include "art/textures/textures.h"

#include "art/common/noise.h"

namespace Art {

namespace {

constexpr int bayPixels = 64;

/// A pane inside a frame: maps p to the pane and adds mullions.
Rgba FramedPane(vec2 p, float x0, float x1, float y0, float y1, Rgba frame, unsigned id,
                float share, int across, int up) {
    const vec2 q{(p.x - x0) / (x1 - x0), (p.y - y0) / (y1 - y0)};
    const float border = 0.035f / (x1 - x0);
    if (q.x < border || q.x > 1 - border || q.y < border || q.y > 1 - border)
        return frame;
    const float cx = q.x * static_cast<float>(across);
    const float cy = q.y * static_cast<float>(up);
    const float thick = 0.06f * static_cast<float>(across);
    const bool onBar = (std::abs(cx - std::round(cx)) < thick / 2 && cx > 0.5f &&
                        cx < static_cast<float>(across) - 0.5f) ||
                       (std::abs(cy - std::round(cy)) < thick / 2 && cy > 0.5f &&
                        cy < static_cast<float>(up) - 0.5f);
    const Rgba glass = Glass(q, id, share);
    if (!onBar)
        return glass;
    // No flight sees bars a pixel wide, only how they come and go: they stay near to the glass.
    // Before a light they keep its alpha: the window then shines by what it is wide.
    Rgba bar = glass.a < 1 ? Shade(glass, 0.72f) : Lerp(glass, frame, 0.28f);
    bar.a = glass.a;
    return bar;
}

/// Rain and soot under a sill at height y.
float Stain(vec2 p, float x0, float x1, float y, unsigned id) {
    if (p.y > y || p.x < x0 || p.x > x1)
        return 1;
    const float streak = 0.5f + 0.5f * Noise2({p.x * 24, 0.5f}, id);
    return 1 - 0.16f * streak * SmoothStep(y - 0.22f, y, p.y);
}

Rgba HouseWindow(vec2 p, Rgba wall, unsigned id) {
    const Rgba frame = Lerp(wall, {0.82f, 0.79f, 0.74f}, 0.4f);
    if (Inside(p, 0.25f, 0.75f, 0.18f, 0.23f))
        return frame;
    if (Inside(p, 0.27f, 0.73f, 0.80f, 0.85f))
        return Shade(wall, 1.08f);
    const bool shutters = Hash(id, 20) % 3 == 0;
    if (shutters &&
        (Inside(p, 0.13f, 0.28f, 0.23f, 0.79f) || Inside(p, 0.72f, 0.87f, 0.23f, 0.79f))) {
        const float slat = std::abs(std::sin(p.y * 60));
        return Shade({0.36f, 0.37f, 0.38f}, 0.9f + 0.14f * slat);
    }
    if (Inside(p, 0.29f, 0.71f, 0.23f, 0.79f))
        return FramedPane(p, 0.29f, 0.71f, 0.23f, 0.79f, frame, id, 0.36f, 2, 3);
    return Shade(wall, Stain(p, 0.25f, 0.75f, 0.18f, id));
}

Rgba HouseGround(vec2 p, Rgba wall, unsigned id) {
    constexpr Rgba stone{0.60f, 0.58f, 0.56f};
    if (p.y > 0.93f)
        return Shade(stone, 1.1f);
    if (p.y < 0.10f)
        return Shade(stone, 0.94f);
    if (Hash(id, 30) % 3 == 0) {
        const float arch =
            0.62f + 0.2f * std::sqrt(std::max(0.0f, 1 - std::pow((p.x - 0.5f) / 0.22f, 2.0f)));
        if (std::abs(p.x - 0.5f) < 0.22f && p.y < arch && p.y > 0.60f)
            return Glass({(p.x - 0.28f) / 0.44f, (p.y - 0.6f) / 0.25f}, id, 0.7f);
        if (std::abs(p.x - 0.5f) < 0.22f && p.y <= 0.60f)
            return Shade({0.31f, 0.24f, 0.20f}, 0.9f + 0.12f * std::abs(std::sin(p.x * 70)));
        if (std::abs(p.x - 0.5f) < 0.28f && p.y < arch + 0.06f)
            return stone;
        return wall;
    }
    if (Inside(p, 0.16f, 0.84f, 0.22f, 0.78f))
        return FramedPane(p, 0.16f, 0.84f, 0.22f, 0.78f, {0.42f, 0.36f, 0.31f}, id, 0.62f, 3, 2);
    if (Inside(p, 0.12f, 0.88f, 0.16f, 0.22f) || Inside(p, 0.12f, 0.88f, 0.78f, 0.84f))
        return stone;
    return wall;
}

} // namespace

Picture PaintHouse(Rgba plaster, unsigned seed) {
    constexpr int baysAcross = 8;
    constexpr int storeys = 16;
    return PaintCells(baysAcross, storeys, bayPixels, [&](int column, int row, vec2 p) {
        const vec2 place{static_cast<float>(column) + p.x, static_cast<float>(row) + p.y};
        const Rgba wall = Shade(plaster, Grain(place, baysAcross, storeys, seed));
        const unsigned id = Hash(static_cast<unsigned>(column), static_cast<unsigned>(row), seed);
        return row == 0 ? HouseGround(p, wall, id) : HouseWindow(p, wall, id);
    });
}

namespace {

Rgba PalaceBay(vec2 p, Rgba wall, unsigned id, float share) {
    constexpr float halfOpening = 0.25f;
    constexpr float springHeight = 0.58f;
    const float dx = p.x - 0.5f;
    const float round = std::sqrt(std::max(0.0f, halfOpening * halfOpening - dx * dx));
    const float outer = std::sqrt(std::max(0.0f, 0.32f * 0.32f - dx * dx));
    if (p.x < 0.07f || p.x > 0.93f)
        return Shade(wall, 1.10f - 0.08f * std::abs(std::sin(p.x * 2 * pi * 7)));
    if (p.y > 0.955f || p.y < 0.04f)
        return Shade(wall, p.y > 0.5f ? 1.12f : 0.9f);
    if (std::abs(dx) < halfOpening && p.y > 0.12f && p.y < springHeight + round) {
        const bool bar = std::abs(dx) < 0.018f || std::abs(p.y - springHeight) < 0.018f;
        const Rgba glass = Glass({dx / (2 * halfOpening) + 0.5f, (p.y - 0.12f) / 0.72f}, id, share);
        if (!bar)
            return glass;
        return glass.a < 1 ? Shade(glass, 0.72f) : Lerp(glass, wall, 0.3f);
    }
    if (std::abs(dx) < 0.32f && p.y > 0.09f && p.y < springHeight + outer)
        return Shade(wall, 1.1f);
    return Shade(wall, Stain(p, 0.2f, 0.8f, 0.1f, id));
}

} // namespace

Picture PaintPalace() {
    constexpr int baysAcross = 8;
    constexpr int storeys = 16;
    return PaintCells(baysAcross, storeys, bayPixels, [&](int column, int row, vec2 p) {
        const vec2 place{static_cast<float>(column) + p.x, static_cast<float>(row) + p.y};
        const Rgba wall = Shade({0.66f, 0.62f, 0.57f}, Grain(place, baysAcross, storeys, 77));
        const unsigned id = Hash(static_cast<unsigned>(column), static_cast<unsigned>(row), 78);
        return PalaceBay(p, wall, id, row == 0 ? 0.7f : 0.42f);
    });
}

std::span<const FacadeFile> FacadeFiles() {
    static constexpr FacadeFile files[] = {
        {"tower.png", PaintTower},
        {"town.png", PaintTown},
        {"house_warm.png",
         [] {
             return PaintHouse({0.68f, 0.53f, 0.42f}, 41);
         }},
        {"house_cool.png",
         [] {
             return PaintHouse({0.60f, 0.58f, 0.58f}, 42);
         }},
        {"palace.png", PaintPalace},
    };
    return files;
}

} // namespace Art
