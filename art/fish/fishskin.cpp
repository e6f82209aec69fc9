#include "art/fish/fishskin.h"

#include "art/common/noise.h"
#include "art/fish/fish.h"

namespace Art {
namespace {

// Seen through seven tenths of dark blue, only strong contrasts stay: a white belly, a golden
// flank, a dark back and fins of orange.
constexpr vec3 backColour = {0.10f, 0.22f, 0.42f};
constexpr vec3 flankColour = {1.00f, 0.78f, 0.30f};
constexpr vec3 bellyColour = {1.00f, 0.98f, 0.92f};
constexpr vec3 finColour = {1.00f, 0.48f, 0.16f};
constexpr vec3 finEdgeColour = {1.00f, 0.80f, 0.45f};

/// The body's outline at x, by the section before and after.
FishSection SectionAt(float x) {
    const std::vector<FishSection>& sections = FishSections();
    std::size_t next = 1;
    while (next + 1 < sections.size() && sections[next].x < x)
        ++next;
    const FishSection& a = sections[next - 1];
    const FishSection& b = sections[next];
    const float t = Clamp01((x - a.x) / (b.x - a.x));
    return {x, Lerp(a.back, b.back, t), Lerp(a.belly, b.belly, t)};
}

vec3 FinColour(vec2 p) {
    // Rays fan out from the body; the rims are lighter where the light shines through.
    const float rays = 0.5f + 0.5f * std::sin(std::atan2(p.y, p.x - 0.62f) * 34);
    const float out = Clamp01((std::abs(p.y) - 0.15f) * 4);
    return Lerp(finColour * (0.78f + 0.22f * rays), finEdgeColour, 0.55f * out);
}

vec3 BodyColour(vec2 p, const FishSection& section) {
    const float height = (p.y - section.belly) / std::max(section.back - section.belly, 0.01f);
    vec3 colour = Lerp(bellyColour, flankColour, SmoothStep(0.22f, 0.58f, height));
    colour = Lerp(colour, backColour, SmoothStep(0.66f, 0.84f, height));
    const float scales = Cellular2({p.x * 46, p.y * 60}, 811).nearest;
    colour *= 1.06f - 0.16f * scales * SmoothStep(0.2f, 0.3f, p.x);
    const float band = SmoothStep(0.030f, 0.016f, std::abs(p.x - 0.295f + 0.10f * p.y * p.y));
    return Lerp(colour, backColour, 0.85f * band * SmoothStep(0.2f, 0.4f, height));
}

vec3 AddEye(vec2 p, vec3 colour) {
    const float away = Length(p - vec2{0.115f, 0.035f});
    colour = Lerp(colour, vec3{1, 1, 1}, 1 - SmoothStep(0.034f, 0.042f, away));
    colour = Lerp(colour, vec3{0.02f, 0.03f, 0.08f}, 1 - SmoothStep(0.021f, 0.028f, away));
    const float glint = Length(p - vec2{0.108f, 0.045f});
    return Lerp(colour, vec3{1, 1, 1}, 1 - SmoothStep(0.006f, 0.010f, glint));
}

vec3 SkinColour(vec2 p) {
    const FishSection section = SectionAt(p.x);
    const float inside = std::min(section.back - p.y, p.y - section.belly);
    const float body = SmoothStep(-0.012f, 0.006f, inside) * (1 - SmoothStep(0.91f, 0.98f, p.x));
    return AddEye(p, Lerp(FinColour(p), BodyColour(p, section), body));
}

} // namespace

Picture FishSkin(int height) {
    Picture skin(height * 2, height);
    for (int y = 0; y < skin.Height(); ++y)
        for (int x = 0; x < skin.Width(); ++x) {
            const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(skin.Width());
            const float v = 1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(height);
            const vec3 colour =
                SkinColour({Lerp(skinLow.x, skinHigh.x, u), Lerp(skinLow.y, skinHigh.y, v)});
            skin.At(x, y) = {Clamp01(colour.x), Clamp01(colour.y), Clamp01(colour.z), 1};
        }
    return skin;
}

} // namespace Art
