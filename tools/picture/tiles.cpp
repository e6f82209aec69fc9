#include "tools/picture/tiles.h"

#include "tools/picture/font.h"

#include <algorithm>
#include <stdexcept>

namespace Tools {

namespace {

constexpr int gap = 4;          // black columns between two pictures
constexpr int labelHeight = 26; // rows under a picture, room for the letters and a margin
constexpr int labelTop = 6;     // of the letters, under the picture
constexpr int labelLeft = 4;
constexpr int dotSize = 2;
constexpr unsigned char ink = 190;

struct Corner {
    int x;
    int y;
};

Corner CornerOf(int index, int columns, int width, int height) {
    return {(index % columns) * (width + gap), (index / columns) * (height + labelHeight)};
}

void Place(Picture& sheet, const Picture& picture, Corner corner) {
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.At(0, y), static_cast<std::size_t>(picture.width) * Picture::channels,
                    sheet.At(corner.x, corner.y + y));
}

void Write(Picture& sheet, const std::string& label, Corner corner, int width) {
    ForEachDot(label, [&](int column, int row) {
        const int x = labelLeft + column * dotSize;
        for (int y = 0; y < dotSize && x + dotSize <= width; ++y)
            std::fill_n(sheet.At(corner.x + x, corner.y + labelTop + row * dotSize + y),
                        dotSize * Picture::channels, ink);
    });
}

} // namespace

Picture Halved(const Picture& picture) {
    Picture half((picture.width + 1) / 2, (picture.height + 1) / 2);
    for (int y = 0; y < half.height; ++y)
        for (int x = 0; x < half.width; ++x)
            for (int colour = 0; colour < Picture::channels; ++colour) {
                const int right = std::min(2 * x + 1, picture.width - 1);
                const int below = std::min(2 * y + 1, picture.height - 1);
                const int sum = picture.At(2 * x, 2 * y)[colour] +
                                picture.At(right, 2 * y)[colour] +
                                picture.At(2 * x, below)[colour] + picture.At(right, below)[colour];
                half.At(x, y)[colour] = static_cast<unsigned char>((sum + 2) / 4);
            }
    return half;
}

Picture MakeTiles(const std::vector<Tile>& tiles, int columns) {
    const int width = tiles.front().picture.width;
    const int height = tiles.front().picture.height;
    const int count = static_cast<int>(tiles.size());
    const int rows = (count + columns - 1) / columns;
    Picture sheet(columns * (width + gap) - gap, rows * (height + labelHeight));
    for (int i = 0; i < count; ++i) {
        const Corner corner = CornerOf(i, columns, width, height);
        const Tile& tile = tiles[static_cast<std::size_t>(i)];
        Place(sheet, tile.picture, corner);
        Write(sheet, tile.label, {corner.x, corner.y + height}, width);
    }
    return sheet;
}

Picture TileOf(const Picture& sheet, int columns, int index, int width, int height) {
    const Corner corner = CornerOf(index, columns, width, height);
    if (corner.x + width > sheet.width || corner.y + height > sheet.height)
        throw std::out_of_range("the sheet has no picture " + std::to_string(index));
    Picture tile(width, height);
    for (int y = 0; y < height; ++y)
        std::copy_n(sheet.At(corner.x, corner.y + y),
                    static_cast<std::size_t>(width) * Picture::channels, tile.At(0, y));
    return tile;
}

} // namespace Tools
