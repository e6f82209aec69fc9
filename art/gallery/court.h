#pragma once

#include "art/common/meshwriter.h"
#include "art/common/picture.h"

#include <string>

namespace Art {

/// A paved court with a colonnade on two sides and a stone in its middle, 14 x 14 units, with
/// light-map coordinates.
MeshFile CourtMesh();

/// What light falls into that mesh late on an afternoon, ready to be written as its light map.
/// `textures`: where the surfaces of the city lie, which it is built of.
Picture CourtLight(const MeshFile& court, const std::string& textures);

} // namespace Art
