#include "art/textures/facade.h"
#include "art/textures/textures.h"

#include "art/common/noise.h"

#include <algorithm>

namespace Art {

namespace {

/// A picture of side x side pixels from a colour over the plane, in units of the texture.
template <typename Colour>
Picture PaintPlane(int side, float units, Colour colour) {
    Picture large(2 * side, 2 * side);
    for (int y = 0; y < 2 * side; ++y)
        for (int x = 0; x < 2 * side; ++x)
            large.At(x, y) = colour(
                vec2{(static_cast<float>(x) + 0.5f), static_cast<float>(2 * side - 1 - y) + 0.5f} *
                (units / static_cast<float>(2 * side)));
    return Halved(large);
}

} // namespace

Picture PaintStone() {
    return PaintPlane(1024, 4, [](vec2 p) {
        constexpr int period = 4;
        constexpr float courseHeight = 0.5f;
        const int row = static_cast<int>(p.y / courseHeight);
        const float shift = 0.5f * HashUnit(static_cast<unsigned>(row), 5);
        const float length = row % 2 == 0 ? 1.0f : 0.8f;
        const int count = static_cast<int>(period / length);
        const float along = (p.x + shift) / length;
        const int column = static_cast<int>(std::floor(along)) % count;
        const unsigned id = Hash(static_cast<unsigned>(row), static_cast<unsigned>(column), 6);
        const float fx = (along - std::floor(along)) * length;
        const float fy = p.y - static_cast<float>(row) * courseHeight;
        const float chipped = 0.010f * Noise2(p * 16, 7, period * 16);
        const float edge =
            std::min(std::min(fx, length - fx), std::min(fy, courseHeight - fy)) + chipped;
        // Seen from near: tooled faces, and joints that lie deep under a lit lower lip.
        const float dent = Fbm2(p * 8, 8, 5, period * 8, 0.6f);
        const float bump = dent - Fbm2(p * 8 + vec2{0.04f, 0.09f}, 8, 5, period * 8, 0.6f);
        const float lip = edge < 0.045f ? (fy > courseHeight / 2 ? 0.10f : -0.10f) : 0.0f;
        const float grain = 1 + 0.12f * Fbm2(p, 3, 5, period) +
                            0.05f * Noise2(p * 24, 4, period * 24) - 0.5f * bump + lip;
        const float tone = (0.84f + 0.3f * HashUnit(id)) * grain *
                           (0.68f + 0.32f * SmoothStep(0.004f, 0.026f, edge));
        const float warm = HashUnit(id, 2) * 0.05f;
        return Rgba{(0.50f + warm) * tone, 0.485f * tone, (0.475f - warm * 0.5f) * tone, 1};
    });
}

Picture PaintTrim() {
    return PaintPlane(1024, 4, [](vec2 p) {
        const float tone = 1 + 0.06f * Fbm2(p * 2, 13, 5, 4) + 0.03f * Noise2(p * 64, 14, 128);
        const float worn = Fbm2(p * 16, 15, 3, 32) - Fbm2(p * 16 + vec2{0.1f, 0.2f}, 15, 3, 32);
        return Shade({0.70f, 0.675f, 0.64f}, tone - 0.25f * worn);
    });
}

Picture PaintRoof() {
    return PaintPlane(512, 6, [](vec2 p) {
        constexpr int rowCount = 24;
        constexpr int columnCount = 20;
        const float y = p.y / 6 * rowCount;
        const int row = static_cast<int>(y);
        const float x = p.x / 6 * columnCount + (row % 2 == 0 ? 0.0f : 0.5f);
        const int column = static_cast<int>(x) % columnCount;
        const unsigned id = Hash(static_cast<unsigned>(row), static_cast<unsigned>(column), 21);
        const float fx = x - std::floor(x);
        const float fy = y - static_cast<float>(row);
        const float lower = 0.22f * (1 - std::sqrt(std::max(0.0f, 1 - std::pow(2 * fx - 1, 2.0f))));
        const float gap = fy < lower + 0.07f || fx < 0.04f ? 0.66f : 1.0f;
        // The lower edge of a slate catches the light; its face is split into layers.
        const float rim = 0.12f * (1 - SmoothStep(0.07f, 0.20f, fy - lower));
        const float layers = 0.10f * Fbm2({p.x * 8, p.y * 2}, 24, 3, 12);
        const float tone = gap * (0.76f + 0.34f * HashUnit(id)) *
                           (1 + 0.16f * Fbm2(p, 22, 4, 6) + layers + rim) *
                           (0.88f + 0.2f * (1 - fy));
        const float warm = 0.05f * HashUnit(id, 3);
        // Moss keeps to the joints, lichen to slates of its own.
        const float damp = SmoothStep(0.02f, 0.35f, Fbm2(p, 25, 4, 6) + 0.25f * (0.4f - fy));
        const float lichen = HashUnit(id, 4) < 0.12f ? 0.5f : 0.0f;
        const Rgba slate{(0.41f + warm) * tone, 0.375f * tone, 0.385f * tone, 1};
        const Rgba mossy = Lerp(slate, Shade({0.33f, 0.36f, 0.22f, 1}, tone), 0.55f * damp);
        return Lerp(mossy, Shade({0.52f, 0.50f, 0.40f, 1}, tone), lichen * (1 - damp));
    });
}

Picture PaintSeaBed() {
    return PaintPlane(512, 12, [](vec2 p) {
        const float bend = 0.6f * Noise2(p * 0.5f, 31, 6);
        const float ripple = std::sin((p.y + bend) * 2 * pi * 1.5f + Noise2(p, 32, 12) * 2.0f);
        const Cell stones = Cellular2(p, 33, 12);
        const bool stone = HashUnit(stones.id, 4) < 0.35f &&
                           stones.nearest < 0.22f + 0.2f * HashUnit(stones.id, 5);
        const float grain = 1 + 0.12f * Fbm2(p, 34, 5, 12) + 0.06f * Noise2(p * 12, 35, 144);
        if (stone)
            return Shade({0.42f, 0.44f, 0.44f},
                         grain * (0.8f + 0.4f * HashUnit(stones.id, 6)) * (1.15f - stones.nearest));
        return Shade({0.72f, 0.68f, 0.58f}, grain * (1 + 0.10f * ripple));
    });
}

Picture PaintLamp() {
    constexpr int side = 64;
    return PaintPlane(side, 1, [](vec2 p) {
        const float edge = std::min({p.x, 1 - p.x, p.y, 1 - p.y});
        if (edge < 0.06f)
            return Rgba{0.16f, 0.13f, 0.12f, 1};
        const vec2 flame = p - vec2{0.5f, 0.45f};
        const float level = 0.62f + 0.38f * std::exp(-9 * Dot(flame, flame));
        return Rgba{level, 0.86f * level * level, 0.60f * level * level * level, 1 - level};
    });
}

bool WriteTextures(FolderToFill& folder) {
    constexpr int jpegQuality = 92;
    const auto writeFacade = [&folder](const FacadeFile& file) {
        return WriteEnginePng(folder.File(file.name), file.paint(), 4);
    };
    return std::ranges::all_of(FacadeFiles(), writeFacade) &&
           WriteEnginePng(folder.File("lamp.png"), PaintLamp(), 4, Depth::Rounded) &&
           WriteEngineJpeg(folder.File("plaster.jpg"), PaintPlaster(), jpegQuality) &&
           WriteEngineJpeg(folder.File("fittings.jpg"), PaintFittings(), jpegQuality) &&
           WriteEngineJpeg(folder.File("stone.jpg"), PaintStone(), jpegQuality) &&
           WriteEngineJpeg(folder.File("trim.jpg"), PaintTrim(), jpegQuality) &&
           WriteEngineJpeg(folder.File("roof.jpg"), PaintRoof(), jpegQuality) &&
           WriteEngineJpeg(folder.File("seabed.jpg"), PaintSeaBed(), jpegQuality);
}

} // namespace Art
