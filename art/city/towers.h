#pragma once

#include "art/city/parts.h"

namespace Art {

/// How a tower rises and ends.
enum class Crown {
    Setbacks, ///< square, stepping back, with a lantern storey and a mast
    Spire,    ///< square shaft, octagonal belfry, steep spire
    Rotunda,  ///< round shaft with galleries and a dome
    Slab,     ///< a broad slab with terraces and fins
    Campanile ///< slender brick shaft, open belfry, pyramid
};

/// One tower of the skyline, in ground coordinates.
struct Tower {
    vec2 at;      ///< middle of its foot
    float width;  ///< across the foot
    float height; ///< of its highest point over the water
    Crown crown;
    float rotation = 0; ///< radians about y
};

void AddTower(Builder& b, const Tower& tower, unsigned seed);

} // namespace Art
