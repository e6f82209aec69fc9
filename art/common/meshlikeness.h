#pragma once

#include "art/common/meshwriter.h"

namespace Art {

/// The share of their triangles, 0 to 1, that two meshes have in common: of the same texture, with
/// the same positions, normals and texture coordinates, wherever they stand in the meshes.
/// Light-map coordinates and the order do not count. Two empty meshes are alike.
double Likeness(const MeshFile& a, const MeshFile& b);

} // namespace Art
