// Stacks pictures of one size into one PNG, first at the top, each with the time in its file's
// name ("frame_0013.900.ppm") written beside it.
//
//   nimbrel_stack OUT.png FRAME.ppm...

#include <png.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int channels = 3;
constexpr int gap = 2;         // black rows between two pictures
constexpr int labelWidth = 84; // room for "118.252" and a margin
constexpr int glyphWidth = 5;
constexpr int glyphHeight = 7;
constexpr int glyphScale = 2;
constexpr unsigned char ink = 200;

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes; // RGB, top row first
};

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

Picture ReadPpm(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string magic;
    int largest = 0;
    Picture picture;
    file >> magic >> picture.width >> picture.height >> largest;
    file.get(); // the one white space before the pixels
    if (!file || magic != "P6" || largest != 255 || picture.width <= 0 || picture.height <= 0)
        throw std::runtime_error(path + ": expected a binary PPM of 8 bits, found \"" + magic +
                                 "\"");
    picture.bytes.resize(size_t(picture.width) * size_t(picture.height) * channels);
    file.read(reinterpret_cast<char*>(picture.bytes.data()), std::streamsize(picture.bytes.size()));
    if (size_t(file.gcount()) != picture.bytes.size())
        throw std::runtime_error(path + ": expected " + std::to_string(picture.bytes.size()) +
                                 " bytes of pixels, found " + std::to_string(file.gcount()));
    return picture;
}

/// "some/frame_0013.900.ppm" -> "13.900"; other names -> nothing.
std::string Label(const std::string& path) {
    const size_t begin = path.rfind("frame_");
    const size_t end = path.rfind(".ppm");
    if (begin == std::string::npos || end == std::string::npos || end < begin + 6)
        return "";
    std::string label = path.substr(begin + 6, end - begin - 6);
    while (label.size() > 1 && label[0] == '0' && label[1] != '.')
        label.erase(0, 1);
    return label;
}

class Sheet {
public:
    Sheet(int pictureWidth, int pictureHeight, int count)
        : pitch(pictureHeight + gap),
          width(labelWidth + pictureWidth),
          height(pitch * count - gap),
          bytes(size_t(width) * size_t(height) * channels) {}

    void Place(const Picture& picture, const std::string& label, int row) {
        const int top = row * pitch;
        for (int y = 0; y < picture.height; ++y)
            std::copy_n(&picture.bytes[size_t(y) * size_t(picture.width) * channels],
                        size_t(picture.width) * channels, At(labelWidth, top + y));
        DrawText(label, top + (picture.height - glyphHeight * glyphScale) / 2);
    }

    void Write(const std::string& path) const {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = png_uint_32(width);
        image.height = png_uint_32(height);
        image.format = PNG_FORMAT_RGB;
        if (!png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr))
            throw std::runtime_error("cannot write " + path + ": " + image.message);
    }

private:
    unsigned char* At(int x, int y) {
        return &bytes[(size_t(y) * size_t(width) + size_t(x)) * channels];
    }

    void DrawText(const std::string& text, int top) {
        const int advance = (glyphWidth + 1) * glyphScale;
        int left = labelWidth - advance * int(text.size());
        for (char letter : text) {
            const size_t glyph = std::string(digitNames).find(letter);
            if (glyph != std::string::npos && left >= 0)
                DrawGlyph(glyphs[glyph], left, top);
            left += advance;
        }
    }

    void DrawGlyph(const Glyph& glyph, int left, int top) {
        for (int y = 0; y < glyphHeight * glyphScale; ++y)
            for (int x = 0; x < glyphWidth * glyphScale; ++x)
                if (top >= 0 && top + y < height && glyph[y / glyphScale][x / glyphScale] == '#')
                    std::fill_n(At(left + x, top + y), channels, ink);
    }

    int pitch;
    int width;
    int height;
    std::vector<unsigned char> bytes;
};

void Stack(const std::string& out, const std::vector<std::string>& frames) {
    const Picture first = ReadPpm(frames.front());
    Sheet sheet(first.width, first.height, int(frames.size()));
    for (size_t i = 0; i < frames.size(); ++i) {
        const Picture picture = ReadPpm(frames[i]);
        if (picture.width != first.width || picture.height != first.height)
            throw std::runtime_error(frames[i] + ": expected " + std::to_string(first.width) +
                                     " x " + std::to_string(first.height) + " pixels, found " +
                                     std::to_string(picture.width) + " x " +
                                     std::to_string(picture.height));
        sheet.Place(picture, Label(frames[i]), int(i));
    }
    sheet.Write(out);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::cerr << "usage: nimbrel_stack OUT.png FRAME.ppm...\n";
        return EXIT_FAILURE;
    }
    try {
        Stack(arguments[1], {arguments + 2, arguments + count});
    } catch (const std::exception& error) {
        std::cerr << "nimbrel_stack: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
