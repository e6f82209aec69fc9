#pragma once

#include "art/common/math.h"
#include "demo/show.h"

namespace Art {

/// One eye on a flight, in the city's own coordinates (the city's height taken off).
struct Eye {
    vec3 position;
    vec3 forward;      ///< unit length
    float waterHeight; ///< of the world's water, over the city's own zero
};

/// The eye at 0 <= t <= 1 of a flight, or a little later: it then flies on past the flight's end,
/// as in the frame that overshoots a cut, while the city stays where it stood at the end. The
/// plan, the order of the triangles, what each of them is shown in and the light map's density
/// follow from these eyes.
Eye EyeAt(const Show::Flight& flight, float t);

/// Half the picture's width and height at distance 1.
inline constexpr float pictureHalfWidth = 2.2169f;
inline constexpr float pictureHalfHeight = 0.22169f;

/// Direction through the picture at -1..1 across and up.
vec3 RayThrough(const Eye& eye, float x, float y);

} // namespace Art
