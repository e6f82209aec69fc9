#pragma once

#include "art/common/meshwriter.h"

namespace Art {

/// A ring of ten columns on three steps round a tall stone, on wide ground at y = 0; 30 units
/// across without the ground. All of it in one mesh at its place in the world.
MeshFile TempleMesh();

/// A tube that is knotted once, 2.6 units across, round the origin.
MeshFile KnotMesh();

} // namespace Art
