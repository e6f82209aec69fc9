#include "art/logo/logo.h"

#include "art/common/noise.h"
#include "art/common/parallel.h"
#include "art/logo/letters.h"
#include "art/sky/dusk.h"

#include <array>

namespace Art {
namespace {

constexpr float waterline = logoHeight / 2.0f; // the horizon of a level camera
constexpr float capHeight = 29;
constexpr int samplesPerSide = 6; // per side of a pixel

// ---- What is drawn, in pixels with y up from the waterline -------------------------------------

/// A tower of the ornament: an upright wedge with a pointed top.
struct Tower {
    float x;
    float half;   ///< half its width at the foot
    float height; ///< of its point above the water
};

constexpr std::array<Tower, 7> towers = {{
    {.x = 480, .half = 3.6f, .height = 37},
    {.x = 469.5f, .half = 2.9f, .height = 27},
    {.x = 490.5f, .half = 2.9f, .height = 27},
    {.x = 460, .half = 2.4f, .height = 19.5f},
    {.x = 500, .half = 2.4f, .height = 19.5f},
    {.x = 451.5f, .half = 2.0f, .height = 13},
    {.x = 508.5f, .half = 2.0f, .height = 13},
}};

bool InTower(const Tower& tower, vec2 p) {
    const float up = p.y / tower.height;
    if (up < 0 || up > 1)
        return false;
    const float body = 1 - 0.22f * up;
    const float spire = std::min(1.0f, (1 - up) / 0.30f);
    return std::abs(p.x - tower.x) <= tower.half * body * spire;
}

const std::vector<PlacedLetter>& Letters() {
    static const std::vector<PlacedLetter> letters = [] {
        std::vector<PlacedLetter> both = SetWord("HALVORN", 62, 408, 1.5f, capHeight);
        const std::vector<PlacedLetter> second = SetWord("NIMBREL", 552, 898, 1.5f, capHeight);
        both.insert(both.end(), second.begin(), second.end());
        return both;
    }();
    return letters;
}

bool IsInk(vec2 p) {
    const auto holds = [&](const auto& part) { return part.Contains(p); };
    return std::any_of(Letters().begin(), Letters().end(), holds) ||
           std::any_of(towers.begin(), towers.end(),
                       [&](const Tower& tower) { return InTower(tower, p); });
}

/// Share of a pixel-sized square with its upper left corner at `p` that is ink.
float Coverage(vec2 p) {
    int inside = 0;
    for (int row = 0; row < samplesPerSide; ++row)
        for (int column = 0; column < samplesPerSide; ++column) {
            const float right = (static_cast<float>(column) + 0.5f) / samplesPerSide;
            const float down = (static_cast<float>(row) + 0.5f) / samplesPerSide;
            inside += IsInk({p.x + right, p.y - down}) ? 1 : 0;
        }
    return static_cast<float>(inside) / (samplesPerSide * samplesPerSide);
}

// ---- Layers: one value a pixel
// -------------------------------------------------------------------

using Layer = std::vector<float>;

std::size_t Place(int x, int y) {
    return static_cast<std::size_t>(y) * logoWidth + x;
}

Layer Filled(const std::function<float(int, int)>& value) {
    Layer layer(static_cast<std::size_t>(logoWidth) * logoHeight);
    ForEachIndex(logoHeight, 0, [&](int y) {
        for (int x = 0; x < logoWidth; ++x)
            layer[Place(x, y)] = value(x, y);
    });
    return layer;
}

/// The ink upside down under the waterline, bent sideways by ripples and fading with depth.
float MirroredInk(int x, int y) {
    const float depth = static_cast<float>(y) + 0.5f - waterline;
    if (depth <= 0)
        return 0;
    const float ripple = Noise2({static_cast<float>(x) * 0.035f, depth * 0.42f}, 21);
    const float shift = ripple * (0.8f + 0.14f * depth);
    const float fade = std::exp(-depth / 17);
    const float gleam = 0.62f + 0.38f * Noise2({static_cast<float>(x) * 0.02f, depth * 0.8f}, 22);
    return fade * gleam * Coverage({static_cast<float>(x) + shift, depth * 1.06f + 0.5f});
}

/// One horizontal or vertical run of a box blur; three of them each way are close to a Gaussian.
Layer Blurred(const Layer& layer, int reach, bool sideways) {
    return Filled([&](int x, int y) {
        float sum = 0;
        for (int i = -reach; i <= reach; ++i) {
            const int sx = std::clamp(sideways ? x + i : x, 0, logoWidth - 1);
            const int sy = std::clamp(sideways ? y : y + i, 0, logoHeight - 1);
            sum += layer[Place(sx, sy)];
        }
        return sum / static_cast<float>(2 * reach + 1);
    });
}

Layer Glow(Layer layer, int reach) {
    for (int i = 0; i < 3; ++i)
        layer = Blurred(Blurred(layer, reach, true), reach, false);
    return layer;
}

// ---- Colours ---------------------------------------------------------------------------------

/// What the opening shot's camera sees at a pixel: it stands just above the sea and looks along -z.
vec3 OpeningShot(int x, int y) {
    const float high = std::tan(12.5f * pi / 180); // half the vertical field of view of 25 degrees
    const float wide = high * 10;
    const float right = (2 * (static_cast<float>(x) + 0.5f) / logoWidth - 1) * wide;
    const float up = std::abs(1 - 2 * (static_cast<float>(y) + 0.5f) / logoHeight) * high;
    return DuskColour(Normalized(vec3{right, up, -1}));
}

vec3 Ground(int x, int y) {
    const float depth = std::abs(static_cast<float>(y) + 0.5f - waterline) / waterline;
    const float water = static_cast<float>(y) + 0.5f > waterline ? 0.82f : 1.0f;
    const vec3 shot = OpeningShot(x, y);
    const vec3 night = {0.030f, 0.045f, 0.105f};
    return Lerp(shot, night, 0.46f + 0.22f * depth) * water;
}

/// The lettering takes the light of the sky behind it: warm on the left, cool on the right.
vec3 GlowColour(int x) {
    const float across = static_cast<float>(x) / logoWidth;
    return Lerp(vec3{1.0f, 0.58f, 0.26f}, vec3{0.42f, 0.60f, 1.0f},
                SmoothStep(0.25f, 0.85f, across));
}

vec3 InkColour(int x, int y) {
    const float up = Clamp01((waterline - static_cast<float>(y)) / (capHeight + 2));
    const vec3 pale = Lerp(vec3{1.0f, 0.97f, 0.90f}, vec3{0.93f, 0.96f, 1.0f},
                           SmoothStep(0.3f, 0.9f, static_cast<float>(x) / logoWidth));
    return Lerp(Lerp(pale, GlowColour(x), 0.38f), pale, SmoothStep(0.0f, 0.75f, up));
}

/// The line on which both names stand; it thins out towards the edges of the picture.
float Waterline(int x, int y) {
    const float away = std::abs(static_cast<float>(y) + 0.5f - waterline);
    const float across =
        std::abs(static_cast<float>(x) + 0.5f - logoWidth / 2.0f) / (logoWidth / 2.0f);
    return std::exp(-away * away * 1.6f) * (1 - SmoothStep(0.55f, 0.98f, across));
}

/// The three lights that will circle the basin, over the ornament, and fainter in the water.
vec3 Wisps(int x, int y) {
    struct Light {
        vec2 at;
        vec3 colour;
    };
    constexpr Light lights[] = {{{437.5f, 25}, {1.0f, 0.20f, 0.12f}},
                                {{480.5f, 41}, {0.16f, 1.0f, 0.42f}},
                                {{522.5f, 25}, {0.22f, 0.48f, 1.0f}}};
    const float up = waterline - (static_cast<float>(y) + 0.5f);
    const vec2 p = {static_cast<float>(x) + 0.5f, std::abs(up)};
    vec3 sum;
    for (const Light& light : lights) {
        const float away = Length(p - light.at);
        sum += light.colour * (0.75f * std::exp(-away * away / 14) + 0.30f * std::exp(-away / 5)) +
               vec3{1, 1, 1} * (0.9f * std::exp(-away * away / 1.6f));
    }
    return sum * (up > 0 ? 1.0f : 0.30f);
}

} // namespace

float InkAt(int x, int y) {
    return Coverage({static_cast<float>(x), waterline - static_cast<float>(y)});
}

Picture TitlePicture() {
    const Layer ink = Filled(InkAt);
    const Layer mirrored = Filled(MirroredInk);
    const Layer near = Glow(ink, 2);
    const Layer wide = Glow(ink, 6);
    Picture picture(logoWidth, logoHeight);
    for (int y = 0; y < logoHeight; ++y)
        for (int x = 0; x < logoWidth; ++x) {
            vec3 colour = Ground(x, y);
            colour += GlowColour(x) * (0.30f * near[Place(x, y)] + 0.38f * wide[Place(x, y)]);
            colour += Lerp(GlowColour(x), vec3{1, 1, 1}, 0.35f) * (0.62f * mirrored[Place(x, y)]);
            colour += GlowColour(x) * (0.55f * Waterline(x, y));
            colour = Lerp(colour, InkColour(x, y), ink[Place(x, y)]);
            colour += Wisps(x, y);
            picture.At(x, y) = {Clamp01(colour.x), Clamp01(colour.y), Clamp01(colour.z), 1};
        }
    return picture;
}

Picture TitleTexture() {
    const Picture title = TitlePicture();
    Picture texture(logoTextureWidth, logoTextureHeight);
    constexpr int above = logoTextureHeight - logoHeight;
    for (int y = 0; y < logoTextureHeight; ++y)
        for (int x = 0; x < logoTextureWidth; ++x)
            texture.At(x, y) = title.At(std::min(x, logoWidth - 1), std::max(y - above, 0));
    return texture;
}

} // namespace Art
