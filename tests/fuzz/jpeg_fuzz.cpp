// JPEG pictures: an image is whole, to its last pixel, or empty.

#include "tests/fuzz/picture_attempt.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    TryPicture(bytes, size, &Vell::Image::LoadJPG);
    return 0;
}
