#include "tools/picture/font.h"

#include <array>
#include <cctype>
#include <cstring>

namespace Tools {

namespace {

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

/// Null for what the font lacks.
const Glyph* GlyphOf(char letter) {
    const int capital = std::toupper(static_cast<unsigned char>(letter));
    const char* const found = capital == 0 ? nullptr : std::strchr(letters, capital);
    return found ? &glyphs.at(static_cast<std::size_t>(found - letters)) : nullptr;
}

bool HasDot(const Glyph& glyph, int column, int row) {
    const int bit = glyphColumns - 1 - column;
    return (glyph.at(static_cast<std::size_t>(row)) >> bit & 1) != 0;
}

} // namespace

void ForEachDot(const std::string& text, const std::function<void(int, int)>& dot) {
    int left = 0;
    for (const char letter : text) {
        if (const Glyph* const glyph = GlyphOf(letter))
            for (int row = 0; row < glyphRows; ++row)
                for (int column = 0; column < glyphColumns; ++column)
                    if (HasDot(*glyph, column, row))
                        dot(left + column, row);
        left += glyphAdvance;
    }
}

} // namespace Tools
