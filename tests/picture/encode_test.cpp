#include "tools/picture/encode.h"

#include "tests/support/scratch.h"
#include "tools/picture/picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using ::testing::HasSubstr;

namespace {

class Encode : public ::testing::Test {
protected:
    static bool WriteJpeg(const std::string& path, int width) {
        const std::vector<unsigned char> row(static_cast<std::size_t>(width) * 3, 200);
        FILE* file = std::fopen(path.c_str(), "wb");
        const bool written = Tools::WriteJpeg(file, {width, 1, 3, row.data()}, 90);
        std::fclose(file);
        return written;
    }

    ScratchDir scratch;
};

Tools::Picture TwoPixels() {
    Tools::Picture picture(2, 1);
    picture.bytes = {1, 2, 3, 253, 254, 255};
    return picture;
}

} // namespace

TEST_F(Encode, A_png_holds_every_pixel_as_it_was) {
    Tools::WritePng(TwoPixels(), "a.png");
    EXPECT_EQ(Tools::ReadPng("a.png"), TwoPixels());
}

TEST_F(Encode, A_png_in_memory_is_what_lies_in_the_file) {
    Tools::WritePng(TwoPixels(), "a.png");
    const std::vector<unsigned char> bytes = Tools::PngOf(TwoPixels());
    EXPECT_EQ(ReadFile("a.png"), std::string(bytes.begin(), bytes.end()));
}

TEST_F(Encode, A_png_says_that_it_is_srgb_unless_told_otherwise) {
    const unsigned char pixel[] = {1, 2, 3, 4};
    const auto isMarked = [](const std::vector<unsigned char>& png) {
        return std::string(png.begin(), png.end()).find("sRGB") != std::string::npos;
    };
    EXPECT_TRUE(isMarked(Tools::PngOf({1, 1, 4, pixel})));
    EXPECT_FALSE(isMarked(Tools::PngOf({1, 1, 4, pixel}, {.level = 9, .marked = false})));
}

TEST_F(Encode, A_png_is_as_small_as_it_is_told_to_be) {
    const std::vector<unsigned char> grey(10000, 100);
    const Tools::Pixels pixels{100, 100, 1, grey.data()};
    EXPECT_GT(Tools::PngOf(pixels, {.level = 0}).size(), 10000U);
    EXPECT_LT(Tools::PngOf(pixels, {.level = 9}).size(), 1000U);
}

TEST_F(Encode, A_png_of_nothing_is_refused_with_the_reason) {
    EXPECT_THAT([] { Tools::PngOf(Tools::Picture()); },
                ::testing::ThrowsMessage<std::runtime_error>(HasSubstr("cannot make a PNG: ")));
}

TEST_F(Encode, A_png_that_cannot_be_written_is_named) {
    EXPECT_THAT([] { Tools::WritePng(TwoPixels(), "missing/a.png"); },
                ::testing::ThrowsMessage<std::runtime_error>("cannot write missing/a.png"));
}

TEST_F(Encode, A_jpeg_wider_than_the_format_allows_is_refused) {
    EXPECT_TRUE(WriteJpeg("a.jpg", 65500));
    EXPECT_FALSE(WriteJpeg("b.jpg", 65501));
}

TEST_F(Encode, A_jpeg_that_the_disk_does_not_take_is_refused) {
    EXPECT_FALSE(WriteJpeg("/dev/full", 100));
}
