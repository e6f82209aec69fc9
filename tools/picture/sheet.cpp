#include "tools/picture/sheet.h"

#include "tools/picture/font.h"

#include <algorithm>

namespace Tools {

namespace {

constexpr int gap = 2;         // black rows between two pictures
constexpr int labelWidth = 84; // room for "118.252" and a margin
constexpr int dotSize = 2;
constexpr unsigned char ink = 200;

void DrawDot(Picture& sheet, int left, int top) {
    for (int y = std::max(top, 0); y < std::min(top + dotSize, sheet.height); ++y)
        std::fill_n(sheet.At(left, y), dotSize * Picture::channels, ink);
}

/// Ends at `right`; what does not fit into the label's room is left out.
void DrawText(Picture& sheet, const std::string& text, int right, int top) {
    const int left = right - glyphAdvance * dotSize * static_cast<int>(text.size());
    ForEachDot(text, [&](int column, int row) {
        if (const int x = left + column * dotSize; x >= right - labelWidth)
            DrawDot(sheet, x, top + row * dotSize);
    });
}

void Place(Picture& sheet, const SheetEntry& entry, int left, int top) {
    const Picture& picture = entry.picture;
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.At(0, y), static_cast<std::size_t>(picture.width) * Picture::channels,
                    sheet.At(left + labelWidth, top + y));
    DrawText(sheet, entry.label, left + labelWidth,
             top + (picture.height - glyphRows * dotSize) / 2);
}

} // namespace

Picture MakeSheet(const std::vector<SheetEntry>& entries, int columns) {
    const Picture& first = entries.front().picture;
    const int rows = (static_cast<int>(entries.size()) + columns - 1) / columns;
    const int columnWidth = labelWidth + first.width;
    const int pitch = first.height + gap;
    Picture sheet(columnWidth * columns, pitch * rows - gap);
    for (int i = 0; i < static_cast<int>(entries.size()); ++i)
        Place(sheet, entries[static_cast<std::size_t>(i)], (i / rows) * columnWidth,
              (i % rows) * pitch);
    return sheet;
}

} // namespace Tools
