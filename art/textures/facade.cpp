#include "art/textures/facade.h"

#include "art/common/noise.h"

namespace Art {

Picture PaintCells(int across, int up, int cellPixels,
                   const std::function<Rgba(int, int, vec2)>& cell) {
    const int side = 2 * cellPixels;
    Picture large(across * side, up * side);
    for (int y = 0; y < large.Height(); ++y) {
        for (int x = 0; x < large.Width(); ++x) {
            const int row = up - 1 - y / side;
            const vec2 p{(static_cast<float>(x % side) + 0.5f) / static_cast<float>(side),
                         1 - (static_cast<float>(y % side) + 0.5f) / static_cast<float>(side)};
            large.At(x, y) = cell(x / side, row, p);
        }
    }
    return Halved(large);
}

namespace {

Rgba LitGlass(vec2 p, unsigned id) {
    constexpr Rgba lampColours[] = {
        {1.0f, 0.72f, 0.34f}, {1.0f, 0.62f, 0.24f}, {1.0f, 0.80f, 0.48f}, {0.98f, 0.52f, 0.20f}};
    const Rgba light = lampColours[Hash(id, 1) % 4];
    const float strength = 0.55f + 0.35f * HashUnit(id, 2);
    // A lamp hangs somewhere in the room; the sill and the curtains stay darker.
    const vec2 lamp{0.25f + 0.5f * HashUnit(id, 3), 0.55f + 0.35f * HashUnit(id, 4)};
    const float near = std::exp(-4 * Dot(p - lamp, p - lamp));
    const float drawn = 0.12f + 0.2f * HashUnit(id, 5);
    const bool curtain = std::abs(p.x - 0.5f) > 0.5f - drawn && HashUnit(id, 6) < 0.6f;
    // One alpha all over: how much shines of a pixel is then what the window covers of it.
    Rgba colour = Shade(light, (0.66f + 0.4f * near) * (curtain ? 0.72f : 1.0f));
    colour.a = 1 - strength * 0.95f;
    return colour;
}

Rgba DarkGlass(vec2 p, unsigned id) {
    const float sky = 0.62f + 0.38f * p.y;
    const float tint = 0.85f + 0.3f * HashUnit(id, 8);
    return {0.215f * sky * tint, 0.24f * sky * tint, 0.30f * sky * tint, 1};
}

} // namespace

Rgba Glass(vec2 p, unsigned id, float share) {
    return HashUnit(id, 9) < share ? LitGlass(p, id) : DarkGlass(p, id);
}

float Grain(vec2 cells, int across, int up, unsigned seed) {
    // Both counts are powers of two here, so the smaller one is a period of both.
    const int period = std::min(across, up);
    const float broad = Fbm2(cells, seed, 4, period);
    const float fine = Noise2(cells * 32, seed + 50, period * 32);
    return 1 + 0.09f * broad + 0.035f * fine;
}

} // namespace Art
