#pragma once

#include "art/common/picture.h"

namespace Art {

/// `plaster.jpg` holds four bands of one unit's height and four units' length, which repeat along
/// a wall: from below a quay's masonry, then plaster of three colours.
inline constexpr int plasterBands = 4;
inline constexpr float plasterTexels = 256; ///< a unit, across and up

enum class Band { Quay, Warm, Cool, Pale };

/// Of Band::Warm and those after it; the same as on the walls that are never seen closely.
inline constexpr Rgba plasterPaints[] = {
    {0.68f, 0.53f, 0.42f}, {0.60f, 0.58f, 0.58f}, {0.66f, 0.62f, 0.57f}};

} // namespace Art
