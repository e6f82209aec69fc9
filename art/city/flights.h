#pragma once

#include "art/common/vec.h"

#include <vector>

namespace Art {

/// One of the eight camera flights: straight lines of the eye, what it looks at, and how high
/// the city stands meanwhile. The plan, the order of the triangles and the light map's density
/// follow from these.
struct Flight {
    Vec3 from, to; ///< eye, world units
    float seconds;
    bool aimed; ///< looks at `aim`; otherwise along its own way
    Vec3 aim;
    float cityFrom, cityTo; ///< height of the city at start and end (it eases between them)
};

const std::vector<Flight>& Flights();

/// One eye on a flight, in the city's own coordinates (the city's height taken off).
struct Eye {
    Vec3 position;
    Vec3 forward;      ///< unit length
    float waterHeight; ///< of the world's water, over the city's own zero
};

/// The eye at 0 <= t <= 1 of a flight.
Eye EyeAt(const Flight& flight, float t);

/// Half the picture's width and height at distance 1.
inline constexpr float kHalfWidth = 2.2169f;
inline constexpr float kHalfHeight = 0.22169f;

/// Direction through the picture at -1..1 across and up.
Vec3 RayThrough(const Eye& eye, float x, float y);

} // namespace Art
