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

/// What the engine loads: powers of two, for which drivers make mip-maps many times as fast.
inline constexpr int logoTextureWidth = 1024;
inline constexpr int logoTextureHeight = 128;

/// The title in the lower left corner of such a picture. A sprite shows a picture pixel for pixel
/// from the window's lower left corner, so that the rest lies outside the window; it goes on with
/// the title's edges, which keeps them clean in a JPEG.
Picture TitleTexture();

/// How much of the pixel (x, y), from the top left, is ink of the lettering or the ornament above
/// the waterline, 0..1.
float InkAt(int x, int y);

} // namespace Art
