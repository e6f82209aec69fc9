#include "tools/picture/sheet.h"

#include <gtest/gtest.h>

#include <algorithm>

using Tools::MakeSheet;
using Tools::Picture;

namespace {

constexpr int label = 84; // pixels on the left of a picture
constexpr int gap = 2;    // black rows between two

Picture Plain(int width, int height, unsigned char value) {
    Picture picture(width, height);
    std::fill(picture.bytes.begin(), picture.bytes.end(), value);
    return picture;
}

} // namespace

TEST(Sheet, Puts_pictures_under_each_other_with_their_times_beside) {
    const Picture sheet = MakeSheet({{Plain(40, 20, 50), "1.000"}, {Plain(40, 20, 120), "13.900"}});
    EXPECT_EQ(sheet.width, label + 40);
    EXPECT_EQ(sheet.height, 20 + gap + 20);
    EXPECT_EQ(*sheet.At(label, 0), 50);
    EXPECT_EQ(*sheet.At(label + 39, 19), 50);
    EXPECT_EQ(*sheet.At(label, 20), 0) << "a gap";
    EXPECT_EQ(*sheet.At(label, 20 + gap), 120);
    // "1.000" is drawn in two columns of dots a stroke, ending at the picture: its 1 stands over
    // the fourth and fifth dot of five letters of twelve dots, from row 3 on.
    EXPECT_EQ(*sheet.At(label - 5 * 12 + 4, 3), 200);
    EXPECT_EQ(*sheet.At(label - 5 * 12, 3), 0);
}

TEST(Sheet, Leaves_out_what_is_too_long_for_a_label) {
    const Picture sheet = MakeSheet({{Plain(40, 20, 50), "8118.252"}});
    EXPECT_EQ(sheet.bytes, MakeSheet({{Plain(40, 20, 50), "118.252"}}).bytes);
}

TEST(Sheet, Fills_one_column_after_the_other) {
    const Picture sheet =
        MakeSheet({{Plain(10, 20, 50), ""}, {Plain(10, 20, 120), ""}, {Plain(10, 20, 180), ""}}, 2);
    EXPECT_EQ(sheet.width, 2 * (label + 10));
    EXPECT_EQ(sheet.height, 20 + gap + 20) << "three pictures in two columns: two rows";
    EXPECT_EQ(*sheet.At(label, 0), 50);
    EXPECT_EQ(*sheet.At(label, 20 + gap), 120);
    EXPECT_EQ(*sheet.At(2 * label + 10, 0), 180);
}
