#include "art/music/lettering.h"

#include "tools/picture/font.h"

#include <algorithm>

namespace Music {

void FillBox(Art::Picture& picture, int x, int y, int width, int height, Art::Rgba colour) {
    for (int row = std::max(y, 0); row < std::min(y + height, picture.Height()); ++row)
        for (int column = std::max(x, 0); column < std::min(x + width, picture.Width()); ++column)
            picture.At(column, row) = colour;
}

void WriteText(Art::Picture& picture, int x, int y, const std::string& text, Art::Rgba colour,
               int scale) {
    Tools::ForEachDot(text, [&](int column, int row) {
        FillBox(picture, x + column * scale, y + row * scale, scale, scale, colour);
    });
}

} // namespace Music
