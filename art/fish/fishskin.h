#pragma once

#include "art/common/picture.h"

namespace Art {

/// The skin that covers a fish from both sides, in skinShades shades over each other: light and
/// markings are painted in, since nothing lights the school. `height` pixels high, twice as wide;
/// opaque everywhere.
Picture FishSkin(int height);

} // namespace Art
