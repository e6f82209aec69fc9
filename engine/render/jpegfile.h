#pragma once

#include "engine/render/decodedpicture.h"

namespace Vell {

/// Decodes the JPEG of three components that stands in the file from here on, to RGB, its pixels in
/// reverse order, which turns the picture by 180 degrees. Refused: grey, CMYK, damaged, more than
/// 100 scans, and more pixels than the file could hold where these take more than `takenOnTrust`
/// bytes. One that breaks off behind its header is decoded as far as it goes. Prints nothing.
DecodeOutcome DecodeJpeg(FILE* file, FitsCheck fits, DecodedPicture& picture);

} // namespace Vell
