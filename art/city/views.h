#pragma once

#include "art/city/builder.h"

#include <vector>

namespace Art {

/// What can be seen of a surface, one bit for each kind of picture that the material can tell from
/// the place of the eye. Bits 0 to 5: in plain sight, bits 6 to 9: in the water's mirror.
/// The material holds the same list (`View` in shader.vert).
struct ViewBits {
    unsigned plain;  ///< bit number for what stands before the eye
    unsigned mirror; ///< bit number for what the water shows
};
/// Row f belongs to flight f of Flights().
const std::vector<ViewBits>& BitsOfFlights();

/// For each surface the bits of the pictures that show any of it. The surface of the water bends
/// what it shows; whatever it may show so is counted.
std::vector<unsigned> MeasureViews(const std::vector<Surface>& surfaces);

} // namespace Art
