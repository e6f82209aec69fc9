#include "tools/doctor/picturesize.h"

#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

using Doctor::PictureSize;
using Doctor::ReadPictureSize;

namespace {

class PictureSizes : public ::testing::Test {
protected:
    static PictureSize SizeOf(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return ReadPictureSize(in);
    }

    ScratchDir scratch;
};

PictureSize SizeOfBytes(const std::string& bytes) {
    std::istringstream in(bytes);
    return ReadPictureSize(in);
}

} // namespace

TEST_F(PictureSizes, Of_a_png) {
    WritePng("a.png", 300, 7, 4, std::vector<unsigned char>(300 * 7 * 4));
    EXPECT_EQ(SizeOf("a.png"), (PictureSize{300, 7}));
}

TEST_F(PictureSizes, Of_a_jpeg) {
    WriteJpeg("a.jpg", 9, 270, std::vector<unsigned char>(9 * 270 * 3));
    EXPECT_EQ(SizeOf("a.jpg"), (PictureSize{9, 270}));
}

TEST_F(PictureSizes, Of_a_progressive_jpeg_behind_a_comment) {
    // Start, a comment of four bytes, a frame header (C2) of 8 bits, 2 x 3 pixels.
    const std::string bytes("\xFF\xD8\xFF\xFE\x00\x06"
                            "text"
                            "\xFF\xC2\x00\x0B\x08\x00\x03\x00\x02",
                            19);
    EXPECT_EQ(SizeOfBytes(bytes), (PictureSize{2, 3}));
}

TEST_F(PictureSizes, Of_anything_else_are_zero) {
    const std::string png = "\x89PNG\r\n\x1A\n";
    const std::vector<std::string> files = {
        "",
        "no picture at all",
        png,
        png + std::string("\0\0\0\rIHDR\0\0\0\1\0\0\0", 15),     // ends within the height
        png + std::string("\0\0\0\rIHDR\xFF\0\0\1\0\0\0\1", 16), // more than any picture has
        "\xFF\xD8",
        std::string("\xFF\xD8\xFF\xC0\0\x0B\x08\0", 8),    // ends within the height
        std::string("\xFF\xD8\xFF\xE0\0\0\xFF\xC0", 8),    // a segment shorter than its length
        std::string("\xFF\xD8\xFF\xDB\0\x04\0\0hello", 13) // no marker where one belongs
    };
    for (const std::string& bytes : files)
        EXPECT_EQ(SizeOfBytes(bytes), PictureSize()) << ::testing::PrintToString(bytes);
}
