#include "art/fish/fish.h"

namespace Art {
namespace {

// Half the greatest thickness, in fish lengths.
constexpr float bulgeDepth = 0.08f;
// Where the body begins to bend.
constexpr float bendFrom = 0.3f;

/// A corner in the side view with the round body's normal there.
struct Corner {
    vec3 position;
    vec3 normal;
};

constexpr Corner nose = {{0, 0, 0}, {-1, 0, 0}};
constexpr Corner back = {{0.38f, 0.17f, 0}, {0, 1, 0}};
constexpr Corner belly = {{0.40f, -0.15f, 0}, {0, -1, 0}};
constexpr Corner flank = {{0.37f, 0.01f, -bulgeDepth}, {0, 0, -1}};
constexpr Corner root = {{0.80f, 0, 0}, {1, 0, 0}};
// The fin itself is flat.
constexpr Corner finRoot = {{0.74f, 0, 0}, {0, 0, -1}};
constexpr Corner finUp = {{1.0f, 0.17f, 0}, {0, 0, -1}};
constexpr Corner finDown = {{0.98f, -0.15f, 0}, {0, 0, -1}};

vec3 Bent(vec3 p, const FishPose& pose) {
    const float along = std::max(p.x - bendFrom, 0.0f) / (1 - bendFrom);
    return {p.x, p.y, p.z * pose.bulge + pose.bend * along * along};
}

void AddTriangle(std::vector<MeshVertex>& out, const FishPose& pose,
                 const std::array<Corner, 3>& corners) {
    for (const Corner& corner : corners)
        out.push_back({Bent(corner.position, pose),
                       {corner.normal.x, corner.normal.y, corner.normal.z * pose.bulge},
                       SkinPlace({corner.position.x, corner.position.y}, pose.shade),
                       {}});
}

} // namespace

const std::array<FishSection, 3>& FishSections() {
    static const std::array<FishSection, 3> sections = {{
        {nose.position.x, nose.position.y, nose.position.y},
        {back.position.x, back.position.y, belly.position.y},
        {root.position.x, root.position.y, root.position.y},
    }};
    return sections;
}

vec2 SkinPlace(vec2 side, int shade) {
    const float v = (side.y - skinLow.y) / (skinHigh.y - skinLow.y);
    return {(side.x - skinLow.x) / (skinHigh.x - skinLow.x),
            (static_cast<float>(shade) + v) / static_cast<float>(skinShades)};
}

std::vector<MeshVertex> OneFish(const FishPose& pose) {
    std::vector<MeshVertex> fish;
    if (pose.detail == FishDetail::Flat) {
        AddTriangle(fish, pose, {nose, root, back});
        AddTriangle(fish, pose, {nose, belly, root});
    } else {
        AddTriangle(fish, pose, {nose, flank, back});
        AddTriangle(fish, pose, {flank, root, back});
        AddTriangle(fish, pose, {nose, belly, flank});
        AddTriangle(fish, pose, {belly, root, flank});
    }
    AddTriangle(fish, pose, {finRoot, finDown, finUp});
    return fish;
}

} // namespace Art
