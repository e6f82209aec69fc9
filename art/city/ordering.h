#pragma once

#include "art/city/builder.h"

#include <vector>

namespace Art {

/// Which surfaces can be seen from outside every solid: those from which at least one of many
/// rays escapes without meeting the inside of a wall first.
std::vector<bool> FindOpenSurfaces(const std::vector<Surface>& surfaces);

/// What the flights see of a surface.
struct Sight {
    float rays = 0;     ///< picture rays that end on it, over all flights
    float distance = 0; ///< their mean distance
    float before = 0;   ///< over all rays that pass it: surfaces it stands before ...
    float behind = 0;   ///< ... and surfaces it stands behind

    /// Where it should be drawn: -1 (first, it hides others) to 1 (last, others hide it).
    float DrawingOrder() const { return (behind - before) / (behind + before + 1); }
    float nearest = 1e9f; ///< least distance of any eye to its middle
};

/// Follows rays through the picture along all flights, mirrored once at the water, through
/// all surfaces that face the eye.
std::vector<Sight> MeasureSights(const std::vector<Surface>& surfaces);

} // namespace Art
