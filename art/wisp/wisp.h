#pragma once

#include "art/common/meshwriter.h"
#include "art/common/picture.h"

#include <array>
#include <string>

namespace Art {

/// One of the three lights that circle the basin.
struct WispKind {
    std::string name; ///< of its mesh and its texture
    vec3 colour;      ///< of the outer glow, display values
    float size;       ///< of all its layers, 1 = usual; also keeps the three from pulsing alike
};

const std::array<WispKind, 3>& WispKinds();

/// The picture of a wisp's light: four square cells of `cell` pixels, from the lower left: wide
/// halo, long rays, ring of sparks, hot core. Black where no light is, in a wide margin too, so
/// that turning cells never show a corner.
Picture WispLight(const WispKind& kind, int cell);

/// Four quads, one per cell. Each reaches +-r in x and y and lies at z = +r or -r, so that the
/// bounding box holds the light from every side; the shader builds the billboard around the
/// origin from x and y, and turns it to the left for +r, to the right for -r.
MeshFile WispMesh(const WispKind& kind);

} // namespace Art
