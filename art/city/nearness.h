#pragma once

#include "art/common/math.h"

namespace Art {

/// What lies less deep in the picture is near and has 256 texels a unit: a unit at depth d is about
/// 217 / d pixels wide, so that a painted facade's 64 would be spread over two pixels each.
inline constexpr float nearDepth = 2.0f;

/// The least depth at which a picture of the flights over the risen city shows the point, as if
/// nothing stood before it; a great number when none does.
float LeastDepth(vec3 point);

} // namespace Art
