// PNG pictures: an image is whole, to its last pixel, or empty.

#include "engine/render/image.h"
#include "tests/fuzz/memoryfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file(bytes, size);
    Vell::Image image;
    const Vell::ivec2 before = image.GetSize();
    const bool loaded = image.LoadPNG(file.Path());
    const Vell::ivec2 pixels = image.GetSize();
    if (loaded != (image.GetData() != nullptr) || loaded == (pixels == before))
        std::abort();
    if (!loaded)
        return 0;
    constexpr std::size_t leastPixelBytes = 3;
    const std::size_t last =
        static_cast<std::size_t>(pixels.x) * static_cast<std::size_t>(pixels.y) * leastPixelBytes -
        1;
    volatile unsigned char read = image.GetData()[last];
    return static_cast<void>(read), 0;
}
