#pragma once

#include "engine/render/decodedpicture.h"

namespace Vell {

/// Reads the signature that every PNG opens with; false when something else stands there.
bool HasPngSignature(FILE* file);

/// Decodes the PNG behind whose signature the file stands, to RGB or RGBA, bottom row first.
/// Refused: grey, damaged, and more pixels than the file could hold where these take more than
/// `takenOnTrust` bytes. Chunks that do not bear on the pixels are stepped over. Prints nothing.
DecodeOutcome DecodePng(FILE* file, FitsCheck fits, DecodedPicture& picture);

} // namespace Vell
