#pragma once

#include "tools/passes/passes.h"
#include "tools/picture/picture.h"

#include <string>
#include <vector>

namespace Explain {

using Tools::Picture;

/// The picture that a PNG inside of a page shows: "data:image/png;base64,...".
std::string DataUri(const Picture& picture);

/// RGBA, bottom row first, as OpenGL hands it over; alpha is left out.
Picture FromPixels(const std::vector<unsigned char>& pixels, int width, int height);

/// The picture at 1 / `factor` of its width and height, each pixel the mean of those it stands for;
/// `factor` is 1 or more. What is left over at the right and below goes into the last ones.
Picture Shrunk(const Picture& picture, int factor);

/// The picture with each channel rounded to 64 levels, which makes a much smaller PNG.
Picture Rounded(const Picture& picture);

/// The smallest factor that brings both sides down to `mostWidth` and `mostHeight`.
int FactorFor(int width, int height, int mostWidth, int mostHeight);

/// How far what a pass drew is from the eye, in world units along the view.
struct DepthRange {
    double nearest = 0.0; ///< both 0 when nothing was drawn
    double farthest = 0.0;
    double untouched = 1.0; ///< share of the pixels without anything, 0 to 1
};

/// Of a pass whose view is a perspective.
DepthRange RangeOf(const Passes::Pass& pass);

/// White at the range's near end, nearly black at its far one, by the logarithm of the distance;
/// dark blue where there is nothing.
Picture DepthPicture(const Passes::Pass& pass, const DepthRange& range);

/// Level 0 of a texture of the current context, as it lies: (0, 0) is the lower left corner.
Picture ReadTexturePicture(GLuint texture);

} // namespace Explain
