#pragma once

#include "art/common/math.h"
#include "art/common/picture.h"

#include <vector>

namespace Art {

/// Slopes of a square, tiling patch of sea: x along the texture's s, y along its t.
struct SlopeMap {
    int size = 0;
    std::vector<vec2> slopes; ///< size * size, rows in the order of growing t

    const vec2& At(int s, int t) const { return slopes[static_cast<std::size_t>(t) * size + s]; }
};

/// A calm evening sea of waves from half a tile down to a ninetieth of one. The waves of
/// every length repeat only with the tile; gusts roughen it in patches. The mean slope is 0.
SlopeMap MakeWaves(int size);

/// The map as a normal map: (-slope.x, -slope.y, 1) made unit length, 0 stored as 0.5. Rows from
/// the top (t = 1) down.
Picture NormalPicture(const SlopeMap& map);

} // namespace Art
