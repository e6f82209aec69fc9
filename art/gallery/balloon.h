#pragma once

#include "art/common/meshwriter.h"
#include "art/common/picture.h"

namespace Art {

/// A hot-air balloon with its basket, 2.8 units high and 2 wide, round the origin.
MeshFile BalloonMesh();

/// Its silk of 16 gores, and below it the wicker of the basket; with the dusk's light on both.
Picture BalloonSilk();

} // namespace Art
