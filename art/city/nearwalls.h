#pragma once

#include "art/city/parts.h"
#include "art/common/plasterbands.h"

namespace Art {

/// A house's front that the flights pass: an upright wall from (0, y0, z) along local +x, looking
/// along +z. Whole bays of about one unit and storeys of one unit from its foot.
struct Front {
    float width;
    float y0, y1;
    float z;
    Material material; ///< whose colour its plaster has
    Paint far;         ///< of the parts that no flight comes near, from the wall's foot
    unsigned seed;
    bool street;            ///< its lowest storey has doors and shops
    bool sheltered = false; ///< stands under an arcade: nothing reaches out far
    bool narrow = false;    ///< a bay that stands out: nothing reaches beyond its sides
};

/// The wall with its windows: storeys that pass near the eye have their own texels and their own
/// relief, the others are painted as ever.
void AddFront(Builder& b, const Front& front);

/// The masonry of a quay between two ground points, which faces to the right of the way from one to
/// the other (z down), from the water up to `y1`, and where it passes near a coping on it.
void AddQuayWall(Builder& b, vec2 from, vec2 to, float y1);

} // namespace Art
