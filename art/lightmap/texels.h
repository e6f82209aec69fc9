#pragma once

#include "art/common/meshwriter.h"

#include <cstdint>
#include <vector>

namespace Art {

/// One texel of the light map and the piece of surface under it.
struct Texel {
    int x = 0;
    int y = 0; ///< from the bottom: y = 0 is v = 0
    int triangle = -1;
    vec3 position; ///< on the surface, pulled to the triangle's edge where the texel's
                   ///< middle lies just outside
    vec3 normal;
};

/// All texels whose middle lies on a triangle of the mesh or within one texel of it, once
/// each, in rows. A texel on several triangles belongs to the one that covers its middle.
std::vector<Texel> FindTexels(const MeshFile& mesh, int size);

/// Fills texels that are not `known` with the mean of their known neighbours, ring by ring,
/// until all of the map is filled. `values` and `known` are size x size.
void Dilate(std::vector<vec3>& values, std::vector<std::uint8_t>& known, int size);

} // namespace Art
