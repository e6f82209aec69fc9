#pragma once

#include "engine/render/image.h"
#include "tests/fuzz/memoryfile.h"

/// Loads the bytes as a picture and ends the program unless the image is then whole, to its last
/// pixel, or empty.
inline void TryPicture(const std::uint8_t* bytes, std::size_t size,
                       bool (Vell::Image::*load)(const std::string&)) {
    const MemoryFile file(bytes, size);
    Vell::Image image;
    const Vell::ivec2 before = image.GetSize();
    const bool loaded = (image.*load)(file.Path());
    const Vell::ivec2 pixels = image.GetSize();
    if (loaded != (image.GetData() != nullptr) || loaded == (pixels == before))
        std::abort();
    if (!loaded)
        return;
    constexpr std::size_t leastPixelBytes = 3;
    const std::size_t last =
        static_cast<std::size_t>(pixels.x) * static_cast<std::size_t>(pixels.y) * leastPixelBytes -
        1;
    volatile unsigned char read = image.GetData()[last];
    static_cast<void>(read);
}
