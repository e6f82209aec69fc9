#pragma once

#include "art/common/math.h"

namespace Art {

/// The whole painted surrounding in display values 0..1, as a function of the unit direction
/// alone, so that neighbouring faces of the sky box agree by construction: gradient, stars, moon,
/// clouds and far isles above the horizon, the water seen from within below it.
vec3 DuskColour(vec3 direction);

} // namespace Art
