#include "tools/picture/tiles.h"

#include <gtest/gtest.h>

#include <stdexcept>

using Tools::Picture;

namespace {

/// Of one colour.
Picture Plain(unsigned char value) {
    Picture picture(20, 10);
    picture.bytes.assign(picture.bytes.size(), value);
    return picture;
}

} // namespace

TEST(Tiles, Stand_in_rows_and_are_found_again) {
    const Picture sheet = Tools::MakeTiles({{Plain(10), "A"}, {Plain(20), ""}, {Plain(30), ""}}, 2);
    EXPECT_EQ(sheet.width, 2 * 20 + 4);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Tools::TileOf(sheet, 2, i, 20, 10),
                  Plain(static_cast<unsigned char>(10 * (i + 1))));
    EXPECT_THROW(Tools::TileOf(sheet, 2, 4, 20, 10), std::out_of_range);
}

TEST(Tiles, Have_their_label_below_them_and_no_wider_than_they_are) {
    const Picture named = Tools::MakeTiles({{Plain(0), "WIDE LABEL"}, {Plain(0), ""}}, 2);
    const Picture bare = Tools::MakeTiles({{Plain(0), ""}, {Plain(0), ""}}, 2);
    EXPECT_NE(named, bare);
    for (int y = 0; y < named.height; ++y)
        for (int x = 0; x < named.width; ++x)
            if (y < 10 || x >= 20) {
                EXPECT_EQ(*named.At(x, y), 0) << x << ',' << y;
            }
}

TEST(Halved, Takes_the_mean_of_two_by_two) {
    Picture picture(3, 3);
    const unsigned char red[] = {0, 4, 100, 8, 12, 50, 200, 100, 7};
    for (int i = 0; i < 9; ++i)
        picture.At(i % 3, i / 3)[0] = red[i];
    const Picture half = Tools::Halved(picture);
    ASSERT_EQ(half.width, 2);
    ASSERT_EQ(half.height, 2);
    EXPECT_EQ(half.At(0, 0)[0], 6);   // (0 + 4 + 8 + 12) / 4
    EXPECT_EQ(half.At(1, 0)[0], 75);  // the edge counts twice: (100 + 50) / 2
    EXPECT_EQ(half.At(0, 1)[0], 150); // (200 + 100) / 2
    EXPECT_EQ(half.At(1, 1)[0], 7);
}
