#pragma once

#include <iosfwd>

namespace Doctor {

/// Width and height in pixels; both 0: it is none of the pictures that the demo reads.
struct PictureSize {
    int width = 0;
    int height = 0;

    bool operator==(const PictureSize&) const = default;
};

/// Reads how large the PNG or JPEG is from its first bytes, without decoding it.
PictureSize ReadPictureSize(std::istream& in);

} // namespace Doctor
