#pragma once

#include "art/common/math.h"
#include "art/common/meshwriter.h"

#include <array>
#include <vector>

namespace Art {

/// The outline of a fish in its own side view: nose at x = 0, tips of the tail at x = 1, lengths
/// in fish lengths, +y up. Shared by the mesh and the skin.
struct FishSection {
    float x;     ///< along the body
    float back;  ///< height of the back's ridge
    float belly; ///< height of the belly's keel
};

/// The sections from the nose over the greatest height to the root of the tail.
const std::array<FishSection, 3>& FishSections();

/// The part of the side view that the skin covers.
inline constexpr vec2 skinLow = {-0.02f, -0.24f};
inline constexpr vec2 skinHigh = {1.02f, 0.24f};

/// How often the skin stands one over the other in its picture, each darker than the one below:
/// nothing lights the fish, so each wears the light that falls on its side.
inline constexpr int skinShades = 4;

/// Where a point of the side view is in the picture of the skin; `shade` from 0, the brightest.
vec2 SkinPlace(vec2 side, int shade);

/// How much of a fish is drawn.
enum class FishDetail {
    Flat, ///< two flanks and a tail: for what is small but where it leaves the picture
    Round ///< four flanks that bulge to the eye
};

/// The number of vertices of a fish.
constexpr std::size_t VerticesOf(FishDetail detail) {
    return detail == FishDetail::Flat ? 9 : 15;
}

/// What makes a fish another than its neighbour.
struct FishPose {
    FishDetail detail = FishDetail::Round;
    float bend = 0;  ///< how far the tip of the tail stands aside, in fish lengths; + to +z
    float bulge = 1; ///< which side bulges: 1 the one at -z, -1 the one at +z
    int shade = 0;   ///< of the skin
};

/// Triangles of one fish of length 1 that swims towards -x, with skin coordinates and the normals
/// of a round body.
std::vector<MeshVertex> OneFish(const FishPose& pose);

} // namespace Art
