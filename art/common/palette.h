#pragma once

#include "art/common/math.h"

/// The one time of day of the whole picture: what the sky, the light map and the materials
/// must agree on. All colours are display values 0..1 unless they say linear.
namespace Art {

/// Direction to the light, unit length: the afterglow low over -x -z, 17 degrees high.
vec3 LightDirection();

/// The cloudless sky at a unit direction, linear radiance (1 = display white). Deep blue dusk
/// with a warm band along the horizon, strongest towards the light. Below the horizon it is
/// the water seen from below, see UnderwaterColour().
vec3 SkyRadiance(vec3 direction);

/// Linear irradiance of the low light on a surface that faces it.
vec3 LightIrradiance();

/// The water's colour as the sky's lower half shows it at the horizon, display values. The
/// city's material fades into a brighter one, so that its shapes stand out under the ripple.
vec3 UnderwaterColour();

/// Display value of a linear one and back (plain 2.2 power, per channel, clamped at 0).
vec3 ToDisplay(vec3 linear);
vec3 ToLinear(vec3 display);

} // namespace Art
