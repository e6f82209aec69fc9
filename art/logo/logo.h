#pragma once

#include "art/common/picture.h"

#include "demo/show.h"

namespace Art {

inline constexpr int logoWidth = Show::width;
inline constexpr int logoHeight = Show::height;

/// The title as the viewer sees it on the screen, rows from the top: both names stand on the
/// horizon of the opening shot and are mirrored in its sea. The ground is the very sky that the
/// opening shot shows, darkened, so that only the lettering seems to leave as the picture fades.
Picture TitlePicture();

/// How much of the pixel (x, y), from the top left, is ink of the lettering or the ornament above
/// the waterline, 0..1.
float InkAt(int x, int y);

} // namespace Art
