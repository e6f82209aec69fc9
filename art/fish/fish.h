#pragma once

#include "art/common/math.h"
#include "art/common/meshwriter.h"

#include <vector>

namespace Art {

/// The outline of a fish in its own side view: nose at x = 0, root of the tail at x = 1, lengths
/// in body lengths, +y up. Shared by the mesh and the skin.
struct FishSection {
    float x;     ///< along the body
    float back;  ///< height of the back's ridge
    float belly; ///< height of the belly's keel
};

/// The sections from the nose to the root of the tail.
const std::vector<FishSection>& FishSections();

/// The part of the side view that the skin covers; the fins reach beyond the body.
inline constexpr vec2 skinLow = {-0.02f, -0.41f};
inline constexpr vec2 skinHigh = {1.29f, 0.41f};

/// Triangles of one fish of body length 1, swimming towards -x, with skin coordinates.
std::vector<MeshVertex> OneFish();

/// The mesh of one cell of the school: fourteen fish of different sizes in four shoals, side by
/// side, in tenths of a world unit as the scene scales it.
MeshFile FishMesh();

} // namespace Art
