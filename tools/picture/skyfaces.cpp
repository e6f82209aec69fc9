// Draws the six faces of a sky box with their names, unfolded as an eye inside the box sees them.
#include "tools/options/commandline.h"
#include "tools/picture/font.h"
#include "tools/picture/picture.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace {

constexpr int side = 160; // pixels of a face
constexpr int columns = 4;
constexpr int rows = 3;

struct Colour {
    unsigned char red, green, blue;
};

constexpr Colour paper{24, 26, 32};
constexpr Colour ink{255, 255, 255};
constexpr Colour shade{0, 0, 0};

struct Face {
    const char* name;
    const char* direction; ///< that the eye looks along
    const char* up;        ///< where the upper edge lies
    int column, row;       ///< in the cross
    Colour colour;
};

constexpr Face faces[] = {
    {"XPOS", "ALONG X", "UP IS Y", 0, 1, {176, 72, 64}},
    {"ZPOS", "ALONG Z", "UP IS Y", 1, 1, {64, 104, 176}},
    {"XNEG", "ALONG -X", "UP IS Y", 2, 1, {176, 120, 56}},
    {"ZNEG", "ALONG -Z", "UP IS Y", 3, 1, {72, 136, 160}},
    {"YPOS", "ALONG Y", "UP IS -Z", 1, 0, {120, 88, 168}},
    {"YNEG", "ALONG -Y", "UP IS Z", 1, 2, {80, 136, 80}},
};

void Fill(Tools::Picture& picture, int x, int y, int width, int height, Colour colour) {
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column) {
            unsigned char* pixel = picture.At(column, row);
            pixel[0] = colour.red;
            pixel[1] = colour.green;
            pixel[2] = colour.blue;
        }
}

/// Around `middle`, in dots of `scale` pixels.
void Write(Tools::Picture& picture, int middle, int y, const std::string& text, int scale) {
    const int left = middle - static_cast<int>(text.size()) * Tools::glyphAdvance * scale / 2;
    Tools::ForEachDot(text, [&](int column, int row) {
        Fill(picture, left + column * scale, y + row * scale, scale, scale, ink);
    });
}

void Draw(Tools::Picture& picture, const Face& face) {
    const int x = face.column * side;
    const int y = face.row * side;
    Fill(picture, x, y, side, side, face.colour);
    Write(picture, x + side / 2, y + 48, face.name, 4);
    Write(picture, x + side / 2, y + 92, face.direction, 2);
    Write(picture, x + side / 2, y + 112, face.up, 1);
}

/// Two marks across an edge that two faces share, a light one at its first quarter and a dark one
/// at its third.
void MarkEdge(Tools::Picture& picture, int x, int y, bool upright) {
    constexpr int reach = 24; // into either face
    constexpr int half = 6;
    for (const auto& [part, colour] : {std::pair(1, ink), std::pair(3, shade)}) {
        const int along = part * side / 4 - half;
        if (upright)
            Fill(picture, x - reach, y + along, 2 * reach, 2 * half, colour);
        else
            Fill(picture, x + along, y - reach, 2 * half, 2 * reach, colour);
    }
}

Tools::Picture Cross() {
    Tools::Picture picture(columns * side, rows * side);
    Fill(picture, 0, 0, picture.width, picture.height, paper);
    for (const Face& face : faces)
        Draw(picture, face);
    for (int column = 1; column < columns; ++column)
        MarkEdge(picture, column * side, side, true);
    for (int row = 1; row < rows; ++row)
        MarkEdge(picture, side, row * side, false);
    return picture;
}

int DrawCross(const Tools::Arguments& arguments) {
    Tools::WritePng(Cross(), arguments.operands[0]);
    return EXIT_SUCCESS;
}

const Tools::Program program = {.name = "nimbrel_skyfaces",
                                .purpose = "Draws the faces of a sky box unfolded.",
                                .modes = {{.operands = {{"OUT.png", Tools::FileToWrite({".png"})}},
                                           .example = "sky.png",
                                           .run = DrawCross}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
