#pragma once

#include <cstdio>
#include <vector>

namespace Tools {

/// 8-bit pixels in memory, which this does not own: top row first, no padding.
struct Pixels {
    int width = 0;
    int height = 0;
    int channels = 3; ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGBA
    const unsigned char* bytes = nullptr;
};

/// How a PNG file is made.
struct PngStyle {
    int level = 6; ///< of compression, 1 to 9; 0: rows are stored as they are, unfiltered, which
                   ///< makes a large file that is read in a sixth of the time
    bool marked = true; ///< whether it says that its colours are sRGB
};

/// The bytes of a PNG file; throws std::runtime_error saying what libpng refuses.
std::vector<unsigned char> PngOf(const Pixels& pixels, const PngStyle& style = {});

/// Writes a JPEG of 1 or 3 channels without chroma subsampling; `quality` 1..100. The file stays
/// open. False when libjpeg refuses: a side of more than 65500 pixels, or what cannot be written.
bool WriteJpeg(FILE* file, const Pixels& pixels, int quality);

} // namespace Tools
