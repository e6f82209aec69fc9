#include "art/wisp/wisp.h"

#include "art/common/noise.h"

namespace Art {
namespace {

/// Brightness of a layer at a point of its cell; (0, 0) is the middle, 1 the visible rim.
using Shape = float (*)(vec2 p);

/// One billboard layer: its light and how large it stands in the scene.
struct Layer {
    Shape shape;
    float white;  ///< how far the middle burns towards white, 0..1
    float radius; ///< half the quad's side in world units, for a wisp of size 1
    float side;   ///< of the origin on which it lies: +1 rotates to the left, -1 to the right
};

// Beyond this share of a quad's half side the light is black, since the shader's pulse makes
// quads grow by up to a tenth and their corners swing round.
constexpr float rimShare = 0.86f;

/// Fades every light to nothing at the rim.
float Inside(vec2 p) {
    return 1 - SmoothStep(0.55f, 1.0f, Length(p));
}

float Halo(vec2 p) {
    const float r = Length(p);
    return Inside(p) * (0.42f * std::exp(-r * r * 7.5f) + 0.20f * std::exp(-r * 3.2f));
}

float Rays(vec2 p) {
    const float r = Length(p);
    const float angle = std::atan2(p.y, p.x);
    // Long and short rays in turn; noise on the circle makes no two alike.
    const float uneven = Fbm2({2.2f * std::cos(angle) + 5, 2.2f * std::sin(angle)}, 433, 3);
    const float comb = 0.5f + 0.5f * std::cos(angle * 7 + 3.0f * uneven);
    const float reach = 0.10f + 0.30f * Clamp01(0.5f + uneven);
    return Inside(p) * 0.95f * std::pow(comb, 4.0f) * std::exp(-r / reach) *
           SmoothStep(0, 0.08f, r);
}

float Sparks(vec2 p) {
    const float r = Length(p);
    const float angle = std::atan2(p.y, p.x) / (2 * pi) * 14;
    const Cell cell = Cellular2({angle, r * 4.5f}, 467, 14);
    const float spark = std::exp(-cell.nearest * cell.nearest * 90) * HashUnit(cell.id, 3);
    const float ring = SmoothStep(0.18f, 0.45f, r) * (1 - SmoothStep(0.55f, 0.95f, r));
    return Inside(p) * ring * spark * 1.6f;
}

float Core(vec2 p) {
    const float r = Length(p);
    return Inside(p) * (1.0f * std::exp(-r * r * 22) + 0.55f * std::exp(-r * r * 5));
}

// In the order of the cells, from the lower left.
constexpr std::array<Layer, 4> layers = {{
    {.shape = Halo, .white = 0.0f, .radius = 2.6f, .side = 1},
    {.shape = Rays, .white = 0.35f, .radius = 2.5f, .side = -1},
    {.shape = Sparks, .white = 0.45f, .radius = 1.5f, .side = 1},
    {.shape = Core, .white = 1.0f, .radius = 0.80f, .side = -1},
}};

vec3 LightColour(const WispKind& kind, const Layer& layer, float light) {
    const vec3 hot =
        Lerp(kind.colour, vec3{1, 1, 1}, layer.white * SmoothStep(0.35f, 1.05f, light));
    return hot * light;
}

void PaintCell(const WispKind& kind, int index, int cell, Picture& picture) {
    const int left = index % 2 * cell;
    const int bottom = index / 2 * cell;
    for (int y = 0; y < cell; ++y)
        for (int x = 0; x < cell; ++x) {
            const float half = static_cast<float>(cell) / 2;
            const vec2 p = {(static_cast<float>(x) + 0.5f - half) / half,
                            (static_cast<float>(y) + 0.5f - half) / half};
            const Layer& layer = layers[index];
            const vec3 light = LightColour(kind, layer, layer.shape(p * (1 / rimShare)));
            const int fromTop = picture.Height() - 1 - (bottom + y);
            picture.At(left + x, fromTop) = {Clamp01(light.x), Clamp01(light.y), Clamp01(light.z),
                                             1};
        }
}

MeshVertex Corner(int index, float radius, vec2 side) {
    const int column = index % 2;
    const int row = index / 2;
    const vec2 cell = {static_cast<float>(column), static_cast<float>(row)};
    const vec2 at = {(cell.x + 0.5f + 0.5f * side.x) / 2, (cell.y + 0.5f + 0.5f * side.y) / 2};
    const float depth = layers[index].side * radius;
    return {{side.x * radius, side.y * radius, depth}, {0, 0, 1}, at, {}};
}

} // namespace

const std::array<WispKind, 3>& WispKinds() {
    static const std::array<WispKind, 3> kinds = {{
        {"green", {0.10f, 1.00f, 0.36f}, 1.00f},
        {"red", {1.00f, 0.17f, 0.10f}, 1.06f},
        {"blue", {0.16f, 0.42f, 1.00f}, 0.95f},
    }};
    return kinds;
}

Picture WispLight(const WispKind& kind, int cell) {
    Picture picture(2 * cell, 2 * cell);
    for (int i = 0; i < static_cast<int>(layers.size()); ++i)
        PaintCell(kind, i, cell, picture);
    return picture;
}

MeshFile WispMesh(const WispKind& kind) {
    constexpr vec2 corners[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}};
    SubMesh quads{{kind.name + ".png", "", ""}, {}};
    for (int i = 0; i < static_cast<int>(layers.size()); ++i)
        for (const vec2& side : corners)
            quads.vertices.push_back(Corner(i, layers[i].radius * kind.size, side));
    return {"Data/Gfx/Wisp/", false, {quads}};
}

} // namespace Art
