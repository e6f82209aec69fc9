#include "art/gallery/balloon.h"

#include "art/common/palette.h"
#include "art/gallery/shapes.h"

#include <cmath>

namespace Art {

namespace {

constexpr float wicker = 0.125f; // of the picture's height, at its foot
constexpr int gores = 16;

/// From the mouth up, as (radius, height).
std::vector<vec2> Envelope() {
    std::vector<vec2> line = {{0.20f, -0.95f}, {0.40f, -0.70f}, {0.66f, -0.36f}};
    constexpr int arc = 9;
    for (int i = 0; i <= arc; ++i) {
        const float angle = pi * 0.60f * (1.0f - static_cast<float>(i) / arc);
        line.emplace_back(std::sin(angle), 0.4f + std::cos(angle));
    }
    return line;
}

/// The texture coordinates of what was added last go to a part of the picture's height.
void Move(Vertices& out, std::size_t first, float from, float to) {
    for (std::size_t i = first; i < out.size(); ++i)
        out[i].texcoord.y = Lerp(from, to, out[i].texcoord.y);
}

vec3 GoreColour(int gore, float v) {
    constexpr vec3 red(0.80f, 0.16f, 0.13f);
    constexpr vec3 amber(0.96f, 0.66f, 0.22f);
    constexpr vec3 cream(0.97f, 0.92f, 0.80f);
    if (v > 0.42f && v < 0.56f)
        return (gore + static_cast<int>(v * 100) / 7) % 2 == 0 ? amber : cream;
    return gore % 2 == 0 ? red : cream;
}

/// Rounding between the seams, the low light from one side, the burner's from below.
vec3 SilkLight(float u, float v, float acrossGore) {
    const float seam = std::abs(acrossGore * 2 - 1);
    const float height = 1.9f * v - 0.9f;
    const float radius = std::sqrt(std::max(1.0f - height * height, 0.0f));
    const vec3 normal(std::sin(u * 2 * pi) * radius, height, std::cos(u * 2 * pi) * radius);
    const float facing = Dot(normal, LightDirection());
    const float low = SmoothStep(-0.45f, 0.9f, facing);
    const vec3 sky = vec3(0.40f, 0.42f, 0.58f) * (0.75f + 0.25f * height);
    const vec3 burner = vec3(0.55f, 0.26f, 0.08f) * SmoothStep(0.45f, 0.0f, v);
    return (sky + vec3(0.78f, 0.66f, 0.50f) * low + burner) * (1.0f - 0.28f * seam * seam * seam);
}

vec3 Silk(float u, float v) {
    const float gore = u * gores;
    const vec3 colour = GoreColour(static_cast<int>(gore), v);
    return colour * SilkLight(u, v, gore - std::floor(gore));
}

vec3 Wicker(float u, float v) {
    const float weave = std::sin(u * 60 * pi) * std::sin(v * 5 * pi);
    return vec3(0.42f, 0.27f, 0.15f) * (0.75f + 0.25f * weave + (v > 0.85f ? 0.5f : 0.0f));
}

} // namespace

MeshFile BalloonMesh() {
    Vertices out;
    AddTurned(out, Envelope(), gores, {});
    Move(out, 0, wicker, 1.0f);
    std::size_t first = out.size();
    AddTurned(out, {{0.0f, -1.4f}, {0.13f, -1.4f}, {0.16f, -1.17f}, {0.12f, -1.19f}}, 8, {});
    for (const float angle : {0.25f, 0.75f, 1.25f, 1.75f}) { // ropes, a flat strip each
        const vec3 out1(std::sin(angle * pi), 0, std::cos(angle * pi));
        const vec3 side(out1.z, 0, -out1.x);
        AddShape(
            out,
            [&](float u, float v) {
                return out1 * Lerp(0.15f, 0.20f, v) + side * ((u - 0.5f) * 0.016f) +
                       vec3(0, Lerp(-1.19f, -0.93f, v), 0);
            },
            1, 1);
    }
    Move(out, first, 0.0f, wicker * 0.9f);
    return OneMesh("gallery/data/", "balloon.png", std::move(out));
}

Picture BalloonSilk() {
    Picture picture(512, 256);
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x) {
            const float u = (static_cast<float>(x) + 0.5f) / 512;
            const float v = 1.0f - (static_cast<float>(y) + 0.5f) / 256;
            const vec3 c =
                v < wicker ? Wicker(u, v / wicker) : Silk(u, (v - wicker) / (1.0f - wicker));
            picture.At(x, y) = {c.x, c.y, c.z, 1};
        }
    return picture;
}

} // namespace Art
