#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec2.h"

#include <cstddef>
#include <cstdio>
#include <memory>

namespace Vell {

/// What a decoder makes of a picture's file.
///
/// While it decodes it takes at most three times the bytes of the pixels, the pixels among them,
/// and 32 MiB, whatever the file says.
struct DecodedPicture {
    /// Bytes of a pixel.
    static constexpr int rgbBytes = 3;
    static constexpr int rgbaBytes = 4;

    ivec2 size;                              ///< pixels
    GLenum format = GL_RGB;                  ///< or GL_RGBA
    std::unique_ptr<unsigned char[]> pixels; ///< rows without gaps, in the decoder's order

    /// Takes the memory for the pixels, of rgbBytes or rgbaBytes each; false when there is none.
    bool MakeRoom(unsigned width, unsigned height, int pixelBytes);
};

enum class DecodeOutcome { Decoded, Refused, TooLarge };

/// Whether there may be a picture of so many pixels at all. Asked once a picture, behind its header
/// and before its pixels are given memory; what does not fit is TooLarge.
using FitsCheck = bool (*)(unsigned width, unsigned height);

/// Whether a picture of so many bytes may stand in the file, which would need so many for it at
/// least. Asked before memory is taken.
bool IsCredible(FILE* file, std::size_t pictureBytes, std::size_t least);

} // namespace Vell
