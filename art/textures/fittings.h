#pragma once

#include "art/common/fittings.h"
#include "art/common/picture.h"

namespace Art {

/// The colour of a variant of a fitting at p, 0..1 across and up its patch.
Rgba FittingColour(Fitting fitting, int variant, vec2 p);

} // namespace Art
