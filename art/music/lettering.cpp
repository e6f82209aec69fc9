#include "art/music/lettering.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace Music {

namespace {

constexpr int glyphRows = 7;
constexpr int glyphColumns = 5;
constexpr int advance = 6;

using Glyph = std::array<unsigned char, glyphRows>; // five bits a row, the leftmost is 16

const char* const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789,.-";
constexpr std::array<Glyph, 39> glyphs{{
    {14, 17, 17, 31, 17, 17, 17}, {30, 17, 17, 30, 17, 17, 30}, {14, 17, 16, 16, 16, 17, 14},
    {30, 17, 17, 17, 17, 17, 30}, {31, 16, 16, 30, 16, 16, 31}, {31, 16, 16, 30, 16, 16, 16},
    {14, 17, 16, 23, 17, 17, 15}, {17, 17, 17, 31, 17, 17, 17}, {14, 4, 4, 4, 4, 4, 14},
    {7, 2, 2, 2, 2, 18, 12},      {17, 18, 20, 24, 20, 18, 17}, {16, 16, 16, 16, 16, 16, 31},
    {17, 27, 21, 21, 17, 17, 17}, {17, 25, 21, 19, 17, 17, 17}, {14, 17, 17, 17, 17, 17, 14},
    {30, 17, 17, 30, 16, 16, 16}, {14, 17, 17, 17, 21, 18, 13}, {30, 17, 17, 30, 20, 18, 17},
    {15, 16, 16, 14, 1, 1, 30},   {31, 4, 4, 4, 4, 4, 4},       {17, 17, 17, 17, 17, 17, 14},
    {17, 17, 17, 17, 17, 10, 4},  {17, 17, 17, 21, 21, 27, 17}, {17, 17, 10, 4, 10, 17, 17},
    {17, 17, 10, 4, 4, 4, 4},     {31, 1, 2, 4, 8, 16, 31},     {14, 17, 19, 21, 25, 17, 14},
    {4, 12, 4, 4, 4, 4, 14},      {14, 17, 1, 6, 8, 16, 31},    {31, 2, 4, 2, 1, 17, 14},
    {2, 6, 10, 18, 31, 2, 2},     {31, 16, 30, 1, 1, 17, 14},   {6, 8, 16, 30, 17, 17, 14},
    {31, 1, 2, 4, 8, 8, 8},       {14, 17, 17, 14, 17, 17, 14}, {14, 17, 17, 15, 1, 2, 12},
    {0, 0, 0, 0, 12, 4, 8},       {0, 0, 0, 0, 0, 12, 12},      {0, 0, 0, 31, 0, 0, 0},
}};

} // namespace

void FillBox(Art::Picture& picture, int x, int y, int width, int height, Art::Rgba colour) {
    for (int row = std::max(y, 0); row < std::min(y + height, picture.Height()); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + width, picture.Width()); ++column) {
            picture.At(column, row) = colour;
        }
    }
}

void WriteText(Art::Picture& picture, int x, int y, const std::string& text, Art::Rgba colour,
               int scale) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int letter = std::toupper(static_cast<unsigned char>(text[i]));
        const char* found = letter == 0 ? nullptr : std::strchr(letters, letter);
        if (found == nullptr) {
            continue;
        }
        const Glyph& glyph = glyphs.at(static_cast<std::size_t>(found - letters));
        const int left = x + static_cast<int>(i) * advance * scale;
        for (int row = 0; row < glyphRows; ++row) {
            for (int column = 0; column < glyphColumns; ++column) {
                if ((glyph.at(static_cast<std::size_t>(row)) >> (glyphColumns - 1 - column) & 1) !=
                    0) {
                    FillBox(picture, left + column * scale, y + row * scale, scale, scale, colour);
                }
            }
        }
    }
}

} // namespace Music
