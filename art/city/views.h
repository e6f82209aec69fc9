#pragma once

#include "art/city/builder.h"
#include "demo/show.h"

#include <array>
#include <vector>

namespace Art {

/// How the material shows the pictures of one flight. It tells them apart by the place of the eye,
/// and keeps for each surface a mark of one bit for each kind of picture: bits 0 to 5 for what
/// stands in plain sight, bits 6 to 9 for what the water mirrors.
struct FlightView {
    unsigned plain;  ///< bit number for what stands before the eye
    unsigned mirror; ///< bit number for what the water shows
    float exposure;  ///< how far the camera's iris is open: 1 shows the light map's light as it is
};
/// Of each flight of Show::flights. Flights that share a bit have the same exposure.
extern const std::array<FlightView, Show::flightCount> flightViews;

/// Stands beside those bits when some picture shows more of a surface than a few pixels.
inline constexpr unsigned shownLarge = 1u << 16;

/// For each surface the bits of the pictures that show any of it, and shownLarge. The surface of
/// the water bends what it shows; whatever it may show so is counted.
std::vector<unsigned> MeasureViews(const std::vector<Surface>& surfaces);

} // namespace Art
