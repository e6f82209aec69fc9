#include "art/fish/fishskin.h"

#include "art/common/noise.h"
#include "art/fish/fish.h"

namespace Art {
namespace {

// Seen through seven tenths of dark blue, only strong contrasts stay: a back in the light from
// above, a silver flank that turns to gold, a belly in the shade and a tail of orange.
constexpr vec3 backColour = {0.62f, 0.78f, 0.70f};
constexpr vec3 flankColour = {1.00f, 0.90f, 0.62f};
constexpr vec3 bellyColour = {0.42f, 0.36f, 0.40f};
constexpr vec3 bandColour = {0.16f, 0.20f, 0.30f};
constexpr vec3 finColour = {1.00f, 0.52f, 0.20f};
constexpr float darkestShade = 0.42f;

/// The body's outline at x, by the section before and after.
FishSection SectionAt(float x) {
    const auto& sections = FishSections();
    std::size_t next = 1;
    while (next + 1 < sections.size() && sections[next].x < x)
        ++next;
    const FishSection& a = sections[next - 1];
    const FishSection& b = sections[next];
    const float t = Clamp01((x - a.x) / (b.x - a.x));
    return {x, Lerp(a.back, b.back, t), Lerp(a.belly, b.belly, t)};
}

vec3 FinColour(vec2 p) {
    const float rays = 0.5f + 0.5f * std::sin(std::atan2(p.y, p.x - 0.62f) * 34);
    return finColour * (0.78f + 0.22f * rays);
}

vec3 BodyColour(vec2 p, const FishSection& section) {
    const float height = (p.y - section.belly) / std::max(section.back - section.belly, 0.01f);
    vec3 colour = Lerp(bellyColour, flankColour, SmoothStep(0.10f, 0.50f, height));
    colour = Lerp(colour, bandColour, SmoothStep(0.66f, 0.72f, height));
    colour = Lerp(colour, backColour, SmoothStep(0.78f, 0.92f, height));
    const float scales = Cellular2({p.x * 46, p.y * 60}, 811).nearest;
    return colour * (1.06f - 0.16f * scales * SmoothStep(0.15f, 0.25f, p.x));
}

vec3 AddEye(vec2 p, vec3 colour) {
    const float away = Length(p - vec2{0.10f, 0.012f});
    colour = Lerp(colour, vec3{1, 1, 1}, 1 - SmoothStep(0.022f, 0.028f, away));
    return Lerp(colour, vec3{0.02f, 0.03f, 0.08f}, 1 - SmoothStep(0.013f, 0.018f, away));
}

vec3 SkinColour(vec2 p) {
    const FishSection section = SectionAt(p.x);
    const float body = 1 - SmoothStep(0.72f, 0.78f, p.x);
    return AddEye(p, Lerp(FinColour(p), BodyColour(p, section), body));
}

/// How bright a shade of the skin is.
float ShadeLevel(int shade) {
    return Lerp(1.0f, darkestShade, static_cast<float>(shade) / (skinShades - 1));
}

} // namespace

Picture FishSkin(int height) {
    Picture skin(height * 2, height);
    for (int y = 0; y < skin.Height(); ++y)
        for (int x = 0; x < skin.Width(); ++x) {
            const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(skin.Width());
            const float up = 1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(height);
            const int shade = static_cast<int>(up * skinShades);
            const float v = up * skinShades - static_cast<float>(shade);
            const vec3 colour =
                SkinColour({Lerp(skinLow.x, skinHigh.x, u), Lerp(skinLow.y, skinHigh.y, v)}) *
                ShadeLevel(shade);
            skin.At(x, y) = {Clamp01(colour.x), Clamp01(colour.y), Clamp01(colour.z), 1};
        }
    return skin;
}

} // namespace Art
