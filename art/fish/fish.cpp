#include "art/fish/fish.h"

#include <array>

namespace Art {
namespace {

constexpr int kSides = 6; // of a cross-section: at ten pixels more would not show

MeshVertex Corner(Vec3 position) {
    const Vec2 skin = {(position.x - kSkinLow.x) / (kSkinHigh.x - kSkinLow.x),
                       (position.y - kSkinLow.y) / (kSkinHigh.y - kSkinLow.y)};
    return {position, {0, 0, 1}, skin, {}};
}

void AddTriangle(Vec3 a, Vec3 b, Vec3 c, std::vector<MeshVertex>& out) {
    const Vec3 normal = Normalize(Cross(b - a, c - a));
    for (const Vec3& position : {a, b, c}) {
        out.push_back(Corner(position));
        out.back().normal = normal;
    }
}

/// A point of a cross-section: corner 0 is the back's ridge, kSides / 2 the keel.
Vec3 RingPoint(const FishSection& section, int corner) {
    const float angle = 2 * kPi * static_cast<float>(corner) / kSides;
    const float middle = (section.back + section.belly) / 2;
    const float height = (section.back - section.belly) / 2;
    return {section.x, middle + height * std::cos(angle), section.half * std::sin(angle)};
}

void AddBody(std::vector<MeshVertex>& out) {
    const std::vector<FishSection>& sections = FishSections();
    const Vec3 nose = {sections[0].x, sections[0].back, 0};
    for (int i = 0; i < kSides; ++i)
        AddTriangle(nose, RingPoint(sections[1], i + 1), RingPoint(sections[1], i), out);
    for (size_t s = 1; s + 1 < sections.size(); ++s)
        for (int i = 0; i < kSides; ++i) {
            const Vec3 a = RingPoint(sections[s], i);
            const Vec3 b = RingPoint(sections[s], i + 1);
            const Vec3 c = RingPoint(sections[s + 1], i);
            const Vec3 d = RingPoint(sections[s + 1], i + 1);
            AddTriangle(a, b, c, out);
            AddTriangle(b, d, c, out);
        }
}

/// One triangle of a fin, in the side view or, for the breast fins, out to the side.
struct FinPart {
    Vec3 a;
    Vec3 b;
    Vec3 c;
};

// A forked tail of two lobes, a long back fin, belly and vent fins, and a pair of breast fins.
constexpr std::array<FinPart, 14> kFins = {{
    {{0.95f, 0.05f, 0}, {0.95f, 0, 0}, {1.26f, 0.33f, 0}},
    {{0.95f, 0, 0}, {1.12f, 0.02f, 0}, {1.26f, 0.33f, 0}},
    {{0.95f, -0.05f, 0}, {0.95f, 0, 0}, {1.26f, -0.33f, 0}},
    {{0.95f, 0, 0}, {1.12f, -0.02f, 0}, {1.26f, -0.33f, 0}},
    {{0.95f, 0, 0}, {1.12f, 0.02f, 0}, {1.12f, -0.02f, 0}},
    {{0.32f, 0.23f, 0}, {0.60f, 0.18f, 0}, {0.52f, 0.39f, 0}},
    {{0.60f, 0.18f, 0}, {0.67f, 0.27f, 0}, {0.52f, 0.39f, 0}},
    {{0.60f, 0.18f, 0}, {0.82f, 0.10f, 0}, {0.67f, 0.27f, 0}},
    {{0.60f, -0.16f, 0}, {0.82f, -0.09f, 0}, {0.76f, -0.29f, 0}},
    {{0.38f, -0.23f, 0}, {0.54f, -0.19f, 0}, {0.57f, -0.38f, 0}},
    {{0.28f, -0.05f, 0.09f}, {0.32f, -0.10f, 0.09f}, {0.48f, -0.16f, 0.17f}},
    {{0.28f, -0.05f, 0.09f}, {0.48f, -0.16f, 0.17f}, {0.44f, -0.06f, 0.16f}},
    {{0.28f, -0.05f, -0.09f}, {0.32f, -0.10f, -0.09f}, {0.48f, -0.16f, -0.17f}},
    {{0.28f, -0.05f, -0.09f}, {0.48f, -0.16f, -0.17f}, {0.44f, -0.06f, -0.16f}},
}};

/// Where one fish of a cell swims. Offsets and lengths in world units, angles in degrees.
struct Swimmer {
    Vec3 offset;
    float length;
    float yaw;   ///< turn about +y; 0 swims straight towards -x
    float pitch; ///< nose up
};

// The scene sets cells on a grid of 4 x 3, two units apart and five on one spot. The five fish of a
// spot are therefore spread here: the sixty cells make one long train of sixty fish, none of which
// touches its neighbour two units on. All lie below the cell, whose top row floats just above the
// surface.
constexpr std::array<Swimmer, 5> kSwimmers = {{
    {{-4.2f, -3.1f, -4.0f}, 1.36f, 9, 5},
    {{2.2f, -4.3f, 2.6f}, 1.22f, -8, -6},
    {{8.0f, -2.9f, -1.8f}, 1.48f, 6, 8},
    {{14.9f, -4.7f, -5.5f}, 1.26f, -11, -4},
    {{20.6f, -3.5f, 1.5f}, 1.34f, 7, 3},
}};
constexpr float kMeshUnits = 10; // mesh units in a world unit: the scene scales by 0.1

Vec3 Turned(Vec3 p, const Swimmer& swimmer) {
    const float yaw = swimmer.yaw * kPi / 180;
    const float pitch = -swimmer.pitch * kPi / 180;
    const Vec3 tipped = {p.x * std::cos(pitch) - p.y * std::sin(pitch),
                         p.x * std::sin(pitch) + p.y * std::cos(pitch), p.z};
    return {tipped.x * std::cos(yaw) + tipped.z * std::sin(yaw), tipped.y,
            tipped.z * std::cos(yaw) - tipped.x * std::sin(yaw)};
}

} // namespace

const std::vector<FishSection>& FishSections() {
    static const std::vector<FishSection> sections = {
        {0.00f, -0.02f, -0.02f, 0.0f},    {0.14f, 0.155f, -0.155f, 0.075f},
        {0.40f, 0.255f, -0.255f, 0.115f}, {0.68f, 0.165f, -0.150f, 0.075f},
        {0.97f, 0.050f, -0.050f, 0.018f},
    };
    return sections;
}

std::vector<MeshVertex> OneFish() {
    std::vector<MeshVertex> fish;
    AddBody(fish);
    for (const FinPart& part : kFins)
        AddTriangle(part.a, part.b, part.c, fish);
    return fish;
}

MeshFile FishMesh() {
    const std::vector<MeshVertex> fish = OneFish();
    SubMesh school{{"fish.png", "", ""}, {}};
    for (const Swimmer& swimmer : kSwimmers)
        for (MeshVertex vertex : fish) {
            const Vec3 middled = vertex.position - Vec3{0.5f, 0, 0};
            vertex.position =
                (Turned(middled * swimmer.length, swimmer) + swimmer.offset) * kMeshUnits;
            vertex.normal = Turned(vertex.normal, swimmer);
            school.vertices.push_back(vertex);
        }
    return {"Data/Gfx/Fish/", false, {school}};
}

} // namespace Art
