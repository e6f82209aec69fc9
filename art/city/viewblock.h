#pragma once

#include "art/city/flights.h"

#include <optional>
#include <span>
#include <string>

namespace Art {

/// Where the eyes of a flight are in the city's coordinates, by which the material knows it.
struct EyeBox {
    vec3 low;
    vec3 high;
    /// Whether the water's mirrored eyes are the plain ones turned over at y = 0, as they are when
    /// the city has risen: the box then holds places whose y is taken without its sign. Otherwise
    /// it holds both kinds as they are.
    bool folded;
};

/// The box around all eyes of a flight, those of a frame that overshoots its end and those mirrored
/// at the water included, a margin wider on every side and rounded outwards to tenths.
EyeBox BoxOf(const Show::Flight& flight);

/// The material's functions `View` and `Exposure` for these flights, as GLSL: the boxes of the
/// flights with the bits and exposures of flightViews, in order. At most as many as there are
/// flights in the show.
std::string ViewFunctions(std::span<const Show::Flight> flights);

/// A vertex shader whose block of generated lines is replaced by these functions; nothing when it
/// has no such block, or not just one.
std::optional<std::string> WithViewFunctions(const std::string& shader,
                                             const std::string& functions);

} // namespace Art
