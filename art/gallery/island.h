#pragma once

#include "art/common/meshwriter.h"
#include "art/common/picture.h"

namespace Art {

/// An island and the shallows round it, 80 x 80 units round the origin; the water stands at y = 0.
MeshFile IslandMesh();

/// Its ground, with the dusk's light on it.
Picture IslandGround();

/// For a terrain: a rock that rises from the sea, in the few texels that the engine draws of a
/// height map 256 wide.
Picture RockHeights();

/// A soft flake of snow, with alpha.
Picture Flake();

} // namespace Art
