#include "tools/picture/sheet.h"

#include <algorithm>
#include <array>

namespace Tools {

namespace {

constexpr int gap = 2;         // black rows between two pictures
constexpr int labelWidth = 84; // room for "118.252" and a margin
constexpr int glyphWidth = 5;
constexpr int glyphHeight = 7;
constexpr int glyphScale = 2;
constexpr unsigned char ink = 200;

using Glyph = std::array<const char*, glyphHeight>;

// clang-format off: drawn as they look
constexpr const char* digitNames = "0123456789.";
const Glyph glyphs[] = {
    {" ### ", "#   #", "#  ##", "# # #", "##  #", "#   #", " ### "},
    {"  #  ", " ##  ", "  #  ", "  #  ", "  #  ", "  #  ", " ### "},
    {" ### ", "#   #", "    #", "   # ", "  #  ", " #   ", "#####"},
    {" ### ", "#   #", "    #", "  ## ", "    #", "#   #", " ### "},
    {"   # ", "  ## ", " # # ", "#  # ", "#####", "   # ", "   # "},
    {"#####", "#    ", "#### ", "    #", "    #", "#   #", " ### "},
    {" ### ", "#    ", "#    ", "#### ", "#   #", "#   #", " ### "},
    {"#####", "    #", "   # ", "  #  ", "  #  ", "  #  ", "  #  "},
    {" ### ", "#   #", "#   #", " ### ", "#   #", "#   #", " ### "},
    {" ### ", "#   #", "#   #", " ####", "    #", "    #", " ### "},
    {"     ", "     ", "     ", "     ", "     ", " ##  ", " ##  "},
};
// clang-format on

void DrawGlyph(Picture& sheet, const Glyph& glyph, int left, int top) {
    for (int y = 0; y < glyphHeight * glyphScale; ++y)
        for (int x = 0; x < glyphWidth * glyphScale; ++x)
            if (top >= 0 && top + y < sheet.height && glyph[y / glyphScale][x / glyphScale] == '#')
                std::fill_n(sheet.At(left + x, top + y), Picture::channels, ink);
}

/// Ends at `right`; what does not fit into the label's room is left out.
void DrawText(Picture& sheet, const std::string& text, int right, int top) {
    const int advance = (glyphWidth + 1) * glyphScale;
    int left = right - advance * static_cast<int>(text.size());
    for (char letter : text) {
        const std::size_t glyph = std::string(digitNames).find(letter);
        if (glyph != std::string::npos && left >= right - labelWidth)
            DrawGlyph(sheet, glyphs[glyph], left, top);
        left += advance;
    }
}

void Place(Picture& sheet, const SheetEntry& entry, int left, int top) {
    const Picture& picture = entry.picture;
    for (int y = 0; y < picture.height; ++y)
        std::copy_n(picture.At(0, y), static_cast<std::size_t>(picture.width) * Picture::channels,
                    sheet.At(left + labelWidth, top + y));
    DrawText(sheet, entry.label, left + labelWidth,
             top + (picture.height - glyphHeight * glyphScale) / 2);
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
