#include "tools/picture/decode.h"

#include "tests/support/scratch.h"

#include <gmock/gmock.h>

#include <stdexcept>

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

namespace {

class Decode : public ::testing::Test {
protected:
    ScratchDir scratch;
};

} // namespace

TEST_F(Decode, A_png_is_read_with_its_alpha_or_without) {
    WritePng("a.png", 2, 1, 4, {1, 2, 3, 255, 4, 5, 6, 255});
    const Tools::DecodedPicture whole = Tools::DecodePng("a.png", 4);
    EXPECT_EQ(whole.width, 2);
    EXPECT_EQ(whole.height, 1);
    EXPECT_THAT(whole.bytes, ElementsAre(1, 2, 3, 255, 4, 5, 6, 255));
    EXPECT_THAT(Tools::DecodePng("a.png", 3).bytes, ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST_F(Decode, A_jpeg_is_read_row_by_row) {
    // Two tiles of one tone each, which a JPEG of 8 x 8 tiles keeps apart.
    std::vector<unsigned char> pixels(8 * 16 * 3, 40);
    std::fill_n(pixels.begin(), 8 * 8 * 3, 200);
    WriteJpeg("a.jpg", 8, 16, pixels);
    const Tools::DecodedPicture picture = Tools::DecodeJpeg("a.jpg");
    ASSERT_EQ(picture.width, 8);
    ASSERT_EQ(picture.height, 16);
    const std::vector<unsigned char> upper(picture.bytes.begin(),
                                           picture.bytes.begin() + 8 * 8 * 3);
    const std::vector<unsigned char> lower(picture.bytes.begin() + 8 * 8 * 3, picture.bytes.end());
    EXPECT_THAT(upper, Each(::testing::AllOf(::testing::Ge(198), ::testing::Le(202))));
    EXPECT_THAT(lower, Each(::testing::AllOf(::testing::Ge(38), ::testing::Le(42))));
}

TEST_F(Decode, What_is_no_picture_is_named) {
    WriteFile("a.png", "no picture");
    WriteFile("a.jpg", "no picture");
    EXPECT_THAT([] { Tools::DecodePng("a.png", 3); },
                ThrowsMessage<std::runtime_error>(HasSubstr("cannot read a.png: ")));
    EXPECT_THAT([] { Tools::DecodeJpeg("a.jpg"); },
                ThrowsMessage<std::runtime_error>("cannot read a.jpg: it is no whole JPEG"));
    EXPECT_THAT([] { Tools::DecodeJpeg("b.jpg"); },
                ThrowsMessage<std::runtime_error>("cannot read b.jpg: there is no such file"));
}
