#pragma once

#include "art/common/math.h"
#include "art/common/picture.h"

#include <vector>

namespace Art {

/// Slopes of a square, tiling patch of sea: x along the texture's s, y along its t.
struct SlopeMap {
    int size = 0;
    std::vector<vec2> slopes; ///< size * size, rows in the order of growing t
    std::vector<float> wind;  ///< likewise: how strongly it blows, 0..1

    const vec2& At(int s, int t) const { return slopes[static_cast<std::size_t>(t) * size + s]; }
    float Wind(int s, int t) const { return wind[static_cast<std::size_t>(t) * size + s]; }
};

/// An evening sea of waves from a third of a tile down to less than a hundredth of one. The waves
/// of every length repeat only with the tile; gusts roughen it in patches. The mean slope is 0.
SlopeMap MakeWaves(int size);

/// The map as a normal map, 0 stored as 0.5: (-slope.x, -slope.y) and a third part, not of unit
/// length, that is small where the wind blows: there the water throws back a picture in pieces
/// even from far, where the slopes of single waves are lost. Rows from the top (t = 1) down.
Picture NormalPicture(const SlopeMap& map);

} // namespace Art
