#pragma once

#include <string>
#include <vector>

namespace Tools {

/// 8-bit pixels as they come out of a file: top row first, no padding.
struct DecodedPicture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;
};

/// Reads a PNG of any kind as RGB or, with 4 `channels`, as RGBA. Throws std::runtime_error saying
/// what is wrong with `path`.
DecodedPicture DecodePng(const std::string& path, int channels);

/// Reads a JPEG as RGB; likewise.
DecodedPicture DecodeJpeg(const std::string& path);

} // namespace Tools
