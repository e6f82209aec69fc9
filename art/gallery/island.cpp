#include "art/gallery/island.h"

#include "art/common/noise.h"
#include "art/common/palette.h"
#include "art/gallery/shapes.h"

#include <cmath>
#include <iterator>

namespace Art {

namespace {

constexpr float side = 80.0f;
constexpr std::uint32_t seed = 7;

/// Heights over the ground plan: a crescent round a bay, and stones in the shallows.
float Height(float x, float z) {
    const float warpX = x + 5 * Noise2({x * 0.05f, z * 0.05f}, seed);
    const float warpZ = z + 5 * Noise2({x * 0.05f + 40, z * 0.05f}, seed);
    const float distance = std::hypot(warpX, warpZ * 1.2f);
    const float hill = 11.0f * SmoothStep(27.0f, 4.0f, distance);
    const float bay = 9.0f * SmoothStep(13.0f, 2.0f, std::hypot(warpX - 6, warpZ - 11));
    const float stones = 1.6f * SmoothStep(0.2f, 0.6f, Noise2({x * 0.11f, z * 0.11f}, seed + 1));
    const float rough = 1.0f * Fbm2({x * 0.09f, z * 0.09f}, seed + 2, 3);
    return -4.2f + hill - bay + stones + rough;
}

vec3 GroundColour(float height, float slope, float grain) {
    constexpr vec3 sand(0.80f, 0.68f, 0.48f);
    constexpr vec3 grass(0.30f, 0.42f, 0.20f);
    constexpr vec3 rock(0.46f, 0.40f, 0.38f);
    constexpr vec3 deep(0.16f, 0.42f, 0.50f);
    vec3 colour = Lerp(sand, grass, SmoothStep(0.7f, 2.2f, height + grain));
    colour = Lerp(colour, rock, SmoothStep(0.45f, 0.8f, slope + 0.25f * grain));
    return Lerp(colour, deep, 0.85f * SmoothStep(-0.2f, -4.5f, height)) * (1.0f + 0.25f * grain);
}

/// Light from the sky and the low sun on ground of this normal.
vec3 GroundLight(vec3 normal) {
    const float facing = std::max(Dot(normal, LightDirection()), 0.0f);
    return vec3(0.50f, 0.52f, 0.66f) * (0.6f + 0.4f * normal.y) +
           vec3(1.25f, 0.92f, 0.58f) * facing;
}

vec3 NormalAt(float x, float z) {
    constexpr float step = 0.35f;
    return Normalized(vec3(Height(x - step, z) - Height(x + step, z), 2 * step,
                           Height(x, z - step) - Height(x, z + step)));
}

} // namespace

MeshFile IslandMesh() {
    Vertices out;
    AddShape(
        out,
        [](float u, float v) {
            const float x = (u - 0.5f) * side;
            const float z = (0.5f - v) * side;
            return vec3(x, Height(x, z), z);
        },
        40, 40);
    return OneMesh("gallery/data/", "island.png", std::move(out));
}

Picture IslandGround() {
    constexpr int size = 512;
    Picture picture(size, size);
    for (int y = 0; y < size; ++y)
        for (int px = 0; px < size; ++px) {
            const float x = ((static_cast<float>(px) + 0.5f) / size - 0.5f) * side;
            const float z = ((static_cast<float>(y) + 0.5f) / size - 0.5f) * side;
            const vec3 normal = NormalAt(x, z);
            const float grain = Fbm2({x * 0.9f, z * 0.9f}, seed + 3, 4);
            const vec3 c = GroundColour(Height(x, z), 1 - normal.y, grain) * GroundLight(normal);
            picture.At(px, y) = {c.x, c.y, c.z, 1};
        }
    return picture;
}

Picture RockHeights() {
    constexpr int size = 256;
    // Crest of the rock, in units above the foot; the foot lies 10 under water.
    constexpr float crest[] = {8, 15, 21, 24, 34, 41, 33, 36, 27, 16};
    Picture picture(size, size);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const int row = size - 1 - y; // v grows upwards
            // A corner is looked up between two texels, the first one between the last and the
            // first: both are the foot.
            const bool rock = x > 0 && x < size - 1 && row < static_cast<int>(std::size(crest));
            const float value = rock ? 2 * crest[row] / 255 : 0.0f;
            picture.At(x, y) = {value, value, value, 1};
        }
    return picture;
}

Picture Flake() {
    constexpr int size = 64;
    Picture picture(size, size);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const float right = (static_cast<float>(x) + 0.5f) / (size / 2) - 1;
            const float up = (static_cast<float>(y) + 0.5f) / (size / 2) - 1;
            const float distance = std::hypot(right, up);
            const float soft = SmoothStep(1.0f, 0.1f, distance);
            picture.At(x, y) = {1, 1, 1, soft * soft};
        }
    return picture;
}

} // namespace Art
