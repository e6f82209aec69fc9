#pragma once

#include "art/common/picture.h"

#include <string>

namespace Music {

/// Writes capitals, digits and ",.-" (small letters become capitals, all else a blank) with the
/// top left corner at (x, y), six pixels a letter and seven high, `scale` times as large.
/// What lies outside the picture is not drawn.
void WriteText(Art::Picture& picture, int x, int y, const std::string& text, Art::Rgba colour,
               int scale = 1);

/// Fills a rectangle, as far as it lies inside the picture.
void FillBox(Art::Picture& picture, int x, int y, int width, int height, Art::Rgba colour);

} // namespace Music
