#include "art/fish/fish.h"

#include <array>

namespace Art {
namespace {

MeshVertex Corner(vec3 position) {
    const vec2 skin = {(position.x - skinLow.x) / (skinHigh.x - skinLow.x),
                       (position.y - skinLow.y) / (skinHigh.y - skinLow.y)};
    return {position, {0, 0, 1}, skin, {}};
}

void AddTriangle(vec3 a, vec3 b, vec3 c, std::vector<MeshVertex>& out) {
    const vec3 normal = Normalized(Cross(b - a, c - a));
    for (const vec3& position : {a, b, c}) {
        out.push_back(Corner(position));
        out.back().normal = normal;
    }
}

/// The body is as flat as the fins: the school shows its side, and what is round is painted. The
/// scene draws sixty cells in each of three passes, so every corner counts.
void AddBody(std::vector<MeshVertex>& out) {
    const std::vector<FishSection>& sections = FishSections();
    const auto back = [&](std::size_t s) { return vec3{sections[s].x, sections[s].back, 0}; };
    const auto belly = [&](std::size_t s) { return vec3{sections[s].x, sections[s].belly, 0}; };
    AddTriangle(back(0), belly(1), back(1), out);
    for (std::size_t s = 1; s + 1 < sections.size(); ++s) {
        AddTriangle(back(s), belly(s), back(s + 1), out);
        AddTriangle(belly(s), belly(s + 1), back(s + 1), out);
    }
}

/// One triangle of a fin, in the side view.
struct FinPart {
    vec3 a;
    vec3 b;
    vec3 c;
};

// A forked tail of two lobes, a long back fin and a belly fin.
constexpr std::array<FinPart, 4> fins = {{
    {{0.93f, 0.055f, 0}, {1.10f, -0.02f, 0}, {1.26f, 0.33f, 0}},
    {{0.93f, -0.055f, 0}, {1.10f, 0.02f, 0}, {1.26f, -0.33f, 0}},
    {{0.26f, 0.19f, 0}, {0.82f, 0.10f, 0}, {0.58f, 0.39f, 0}},
    {{0.44f, -0.21f, 0}, {0.70f, -0.13f, 0}, {0.66f, -0.37f, 0}},
}};

/// Where one fish of a cell swims. Offsets and lengths in world units, angles in degrees.
struct Swimmer {
    vec3 offset;
    float length;
    float yaw;   ///< turn about +y; 0 swims straight towards -x
    float pitch; ///< nose up
};

// The scene sets cells on a grid of 4 x 3, two units apart and five on one spot, and lets them
// drift by two units a second to the right of a camera that comes nearer and looks straight ahead.
// Where the mesh's own middle swims is out of its sight after half of the flight. So the mesh holds
// four shoals side by side, of which each crosses the picture at its own time and the last stays on
// the left. Every swimmer appears twelve times on such a grid; what hides its regularity is that
// the swimmers of a shoal are far apart in depth, so that perspective gives every grid another mesh
// and another speed, and stand aside by as much as keeps the shoal together when it is seen best.
// All lie below the cell, whose top row floats just above the surface.
constexpr std::array<Swimmer, 14> swimmers = {{
    {.offset = {30.6f, -3.1f, -7.0f}, .length = 1.36f, .yaw = 9, .pitch = 5},
    {.offset = {22.6f, -4.4f, 0.5f}, .length = 1.24f, .yaw = -8, .pitch = -6},
    {.offset = {16.2f, -2.7f, 8.0f}, .length = 1.48f, .yaw = 7, .pitch = 6},
    {.offset = {60.9f, -4.3f, -7.0f}, .length = 1.34f, .yaw = 7, .pitch = 3},
    {.offset = {62.1f, -2.8f, -2.0f}, .length = 1.26f, .yaw = -7, .pitch = 6},
    {.offset = {57.4f, -3.7f, 3.1f}, .length = 1.46f, .yaw = 10, .pitch = -5},
    {.offset = {59.3f, -3.2f, 8.2f}, .length = 1.40f, .yaw = -9, .pitch = 4},
    {.offset = {75.4f, -3.4f, -3.0f}, .length = 1.32f, .yaw = 8, .pitch = -5},
    {.offset = {72.6f, -4.5f, 0.8f}, .length = 1.46f, .yaw = -9, .pitch = 4},
    {.offset = {76.2f, -2.9f, 4.6f}, .length = 1.28f, .yaw = 5, .pitch = 7},
    {.offset = {71.0f, -4.0f, 9.4f}, .length = 1.52f, .yaw = -6, .pitch = -3},
    {.offset = {89.6f, -3.9f, -7.0f}, .length = 1.30f, .yaw = 9, .pitch = 4},
    {.offset = {100.5f, -2.8f, 0.6f}, .length = 1.44f, .yaw = -8, .pitch = -6},
    {.offset = {107.2f, -4.4f, 8.2f}, .length = 1.48f, .yaw = 7, .pitch = 5},
}};
constexpr float meshUnitsPerWorldUnit = 10; // mesh units in a world unit: the scene scales by 0.1

vec3 Turned(vec3 p, const Swimmer& swimmer) {
    const float yaw = swimmer.yaw * pi / 180;
    const float pitch = -swimmer.pitch * pi / 180;
    const vec3 tipped = {p.x * std::cos(pitch) - p.y * std::sin(pitch),
                         p.x * std::sin(pitch) + p.y * std::cos(pitch), p.z};
    return {tipped.x * std::cos(yaw) + tipped.z * std::sin(yaw), tipped.y,
            tipped.z * std::cos(yaw) - tipped.x * std::sin(yaw)};
}

} // namespace

const std::vector<FishSection>& FishSections() {
    static const std::vector<FishSection> sections = {
        {0.00f, -0.02f, -0.02f},
        {0.19f, 0.195f, -0.190f},
        {0.52f, 0.240f, -0.235f},
        {0.97f, 0.050f, -0.050f},
    };
    return sections;
}

std::vector<MeshVertex> OneFish() {
    std::vector<MeshVertex> fish;
    AddBody(fish);
    for (const FinPart& part : fins)
        AddTriangle(part.a, part.b, part.c, fish);
    return fish;
}

MeshFile FishMesh() {
    const std::vector<MeshVertex> fish = OneFish();
    SubMesh school{{"fish.png", "", ""}, {}};
    for (const Swimmer& swimmer : swimmers)
        for (MeshVertex vertex : fish) {
            const vec3 middled = vertex.position - vec3{0.5f, 0, 0};
            vertex.position = (Turned(middled * swimmer.length, swimmer) + swimmer.offset) *
                              meshUnitsPerWorldUnit;
            vertex.normal = Turned(vertex.normal, swimmer);
            school.vertices.push_back(vertex);
        }
    return {"Data/Gfx/Fish/", false, {school}};
}

} // namespace Art
