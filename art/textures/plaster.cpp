// The walls that pass near the eye: bands of one unit, each of which repeats along a wall.
#include "art/textures/facade.h"
#include "art/textures/textures.h"

#include "art/common/noise.h"
#include "art/common/plasterbands.h"

#include <algorithm>

namespace Art {

namespace {

constexpr int period = plasterBands; // units after which a band repeats

/// Old brick: courses, mortar, every brick of its own colour.
Rgba Brick(vec2 p) {
    constexpr float course = 0.0625f;
    constexpr float length = 0.2f;
    const int row = static_cast<int>(std::floor(p.y / course));
    const float along = p.x / length + (row % 2 == 0 ? 0.0f : 0.5f);
    const int column = static_cast<int>(std::floor(along)) % static_cast<int>(period / length);
    const float x = (along - std::floor(along)) * length;
    const float y = p.y - static_cast<float>(row) * course;
    const float edge = std::min({x, length - x, y, course - y});
    const unsigned id = Hash(static_cast<unsigned>(row), static_cast<unsigned>(column), 31);
    if (edge < 0.007f)
        return Shade({0.46f, 0.42f, 0.38f}, y > course - 0.008f ? 0.6f : 0.8f);
    const float rough = 1 + 0.16f * Noise2(p * 64, 32, period * 64);
    return Shade({0.43f, 0.26f + 0.05f * HashUnit(id, 1), 0.20f},
                 (0.65f + 0.5f * HashUnit(id)) * rough);
}

/// How far the plaster has come off at p: above 0 it is gone. More of it at the foot.
float Loss(vec2 p, unsigned seed) {
    const float patches = Fbm2(p * 2, seed, 5, period * 2);
    return patches - 0.47f + 0.16f * SmoothStep(0.35f, 0.0f, p.y);
}

/// Hair lines that wander, strongest where the wall works.
float Crack(vec2 p, unsigned seed) {
    const float line = std::abs(Fbm2(p, seed + 3, 5, period));
    const float where = SmoothStep(0.0f, 0.25f, Fbm2(p, seed + 4, 3, period));
    return SmoothStep(0.016f, 0.004f, line) * where;
}

/// Rain that ran down under a sill in the middle of the bay, and soot under the course above.
float Stains(vec2 p, unsigned seed) {
    const float bay = p.x - std::floor(p.x);
    const float streak = 0.5f + 0.5f * Noise2({p.x * 28, p.y * 1.5f}, seed + 5, period * 28);
    // They end where the runs end, each at another length.
    const float length = 0.20f + 0.10f * Noise2({p.x * 14, 0.5f}, seed + 9, period * 14);
    const float run = SmoothStep(0.32f, 0.24f, std::abs(bay - 0.5f)) *
                      SmoothStep(0.2f - length, 0.2f, p.y) * (p.y < 0.2f ? 1.0f : 0.0f);
    const float top = SmoothStep(0.72f, 1.0f, p.y);
    const float foot = SmoothStep(0.16f, 0.0f, p.y);
    return 1 - 0.34f * streak * run - 0.30f * top * (0.5f + 0.5f * streak) - 0.22f * foot;
}

Rgba Plaster(vec2 p, Rgba paint, unsigned seed) {
    constexpr vec2 up{0.0f, 0.010f};
    const float loss = Loss(p, seed);
    const float above = Loss(p + up, seed);
    if (loss > 0) // in the hole's upper edge lies the plaster's shadow
        return Shade(Brick(p), above <= 0 ? 0.45f : 0.95f);
    const float fine = Noise2(p * 40, seed + 6, period * 40);
    const float trowel = Fbm2(p * 4, seed + 7, 5, period * 4);
    const float bump = trowel - Fbm2(p * 4 + up * 2, seed + 7, 5, period * 4);
    const float rim = SmoothStep(-0.035f, 0.0f, loss);
    const float tone =
        1 + 0.05f * fine + 0.16f * trowel - 0.9f * bump + rim * (loss > above ? 0.22f : -0.18f);
    const Rgba old = Lerp(paint, Rgba{0.62f, 0.57f, 0.50f},
                          0.45f * SmoothStep(0.05f, 0.45f, Fbm2(p * 2, seed + 8, 4, period * 2)));
    return Shade(old, tone * Stains(p, seed) * (1 - 0.62f * Crack(p, seed)));
}

/// A quay wall from the water up: weed, the tide's line, dry stone.
Rgba Quay(vec2 p) {
    constexpr float course = 0.24f;
    const int row = static_cast<int>((p.y + 0.04f) / course);
    const float length = row % 2 == 0 ? 0.8f : 0.5f;
    const float along = p.x / length + 0.37f * static_cast<float>(row);
    const int column =
        static_cast<int>(std::floor(along)) % static_cast<int>(period / length + 0.5f);
    const unsigned id = Hash(static_cast<unsigned>(row), static_cast<unsigned>(column), 41);
    const float x = (along - std::floor(along)) * length;
    const float y = p.y + 0.04f - static_cast<float>(row) * course;
    const float wander = 0.008f * Noise2(p * 12, 42, period * 12);
    const float edge = std::min({x, length - x, y, course - y}) + wander;
    const float joint = SmoothStep(0.004f, 0.016f, edge);
    const float lip = edge < 0.03f ? (y > course / 2 ? 0.14f : -0.12f) : 0.0f;
    const float bump =
        Fbm2(p * 6, 43, 5, period * 6) - Fbm2(p * 6 + vec2{0.03f, 0.07f}, 43, 5, period * 6);
    const float tone =
        (0.80f + 0.34f * HashUnit(id)) * (1 - 1.1f * bump + lip) * (0.30f + 0.70f * joint);
    const Rgba dry = Shade({0.52f, 0.50f, 0.48f}, tone);
    const float tide = 0.30f + 0.05f * Fbm2(p * 3, 44, 4, period * 3);
    const float hang = 0.10f * std::max(Noise2({p.x * 26, 0.5f}, 45, period * 26), 0.0f);
    const float wet = SmoothStep(tide + 0.04f, tide - 0.02f - hang, p.y);
    const Rgba weed = Shade({0.17f, 0.24f, 0.13f},
                            (0.55f + 0.55f * Noise2({p.x * 50, p.y * 9}, 46, period * 50)) *
                                (0.5f + 0.5f * joint));
    const float salt = std::exp(-std::pow((p.y - tide - 0.07f) / 0.025f, 2.0f));
    return Lerp(Lerp(dry, Rgba{0.64f, 0.62f, 0.58f}, 0.4f * salt), weed, 0.88f * wet);
}

} // namespace

Picture PaintPlaster() {
    constexpr int side = static_cast<int>(plasterBands * plasterTexels);
    Picture picture(side, side);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const vec2 p =
                vec2{static_cast<float>(x) + 0.5f, static_cast<float>(side - 1 - y) + 0.5f} *
                (1 / plasterTexels);
            const int band = static_cast<int>(p.y);
            const vec2 q{p.x, p.y - static_cast<float>(band)};
            picture.At(x, y) = band == 0 ? Quay(q)
                                         : Plaster(q, plasterPaints[band - 1],
                                                   200 + 20 * static_cast<unsigned>(band));
        }
    return picture;
}

} // namespace Art
