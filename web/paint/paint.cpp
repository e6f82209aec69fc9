// The facades, painted in the page by the program that painted those in Data/: what took 2.7 MB to
// send takes 30 KB. The page corrects them to the byte by what web/page/assemble found to differ.

#include "art/textures/textures.h"

#include <emscripten.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

/// Rows from the top, four channels, dithered: as the file's pixels.
std::vector<std::uint8_t> Pixels(const Art::Picture& picture) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(std::size_t{4} * picture.Width() * picture.Height());
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x) {
            const Art::Rgba& p = picture.At(x, y);
            int channel = 0;
            for (const float value : {p.r, p.g, p.b, p.a})
                pixels.push_back(Art::Dithered(value, x, y, channel++));
        }
    return pixels;
}

std::vector<std::uint8_t> painted;

} // namespace

extern "C" {

/// The name of the file of that number, from 0; null behind the last.
EMSCRIPTEN_KEEPALIVE const char* web_facade(int number) {
    const auto files = Art::FacadeFiles();
    return number < static_cast<int>(files.size()) ? files[number].name : nullptr;
}

/// Paints the picture that fills the file of this name: how many bytes it has, 0 for a name that is
/// none of a facade.
EMSCRIPTEN_KEEPALIVE int web_paint(const char* name) {
    const auto files = Art::FacadeFiles();
    const auto file = std::find_if(files.begin(), files.end(), [name](const Art::FacadeFile& f) {
        return std::string_view(f.name) == name;
    });
    painted = file == files.end() ? std::vector<std::uint8_t>() : Pixels(file->paint());
    return static_cast<int>(painted.size());
}

/// The bytes of the picture painted last.
EMSCRIPTEN_KEEPALIVE const std::uint8_t* web_painted() {
    return painted.data();
}
}
