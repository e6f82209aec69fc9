// The pictures of a page, in memory.

#include "tools/explain/picture.h"

#include <gtest/gtest.h>

using Tools::Picture;

namespace {

using Explain::DepthRange;
using Passes::Pass;

/// A pass of one row, with planes at 1 and 100, that saw things at these distances; 0 is nothing.
Pass SeenAt(const std::vector<double>& distances) {
    Pass pass;
    pass.width = static_cast<int>(distances.size());
    pass.height = 1;
    pass.nearPlane = 1.0;
    pass.farPlane = 100.0;
    for (const double d : distances) // as a perspective does: 0 at the near plane, 1 at the far one
        pass.depth.push_back(d > 0.0 ? static_cast<float>(100.0 * (d - 1.0) / (99.0 * d)) : 1.0f);
    return pass;
}

int GreyAt(const Picture& picture, int x) {
    return picture.At(x, 0)[0];
}

} // namespace

TEST(PagePicture, Turns_the_rows_of_OpenGL_around_and_leaves_alpha_out) {
    const std::vector<unsigned char> lowerThenUpper = {1, 2, 3, 99, 4, 5, 6, 99};
    const Picture picture = Explain::FromPixels(lowerThenUpper, 1, 2);
    EXPECT_EQ(picture.bytes, (std::vector<unsigned char>{4, 5, 6, 1, 2, 3}));
}

TEST(PagePicture, Shrinks_to_means_and_lets_the_last_ones_take_the_rest) {
    Picture picture(5, 1);
    for (int x = 0; x < 5; ++x)
        *picture.At(x, 0) = static_cast<unsigned char>(10 * x);
    const Picture shrunk = Explain::Shrunk(picture, 2);
    ASSERT_EQ(shrunk.width, 2);
    ASSERT_EQ(shrunk.height, 1);
    EXPECT_EQ(GreyAt(shrunk, 0), 5);  // of 0 and 10
    EXPECT_EQ(GreyAt(shrunk, 1), 30); // of 20, 30 and 40
}

TEST(PagePicture, Finds_the_factor_that_fits) {
    EXPECT_EQ(Explain::FactorFor(960, 89, 480, 172), 2);
    EXPECT_EQ(Explain::FactorFor(512, 512, 480, 172), 3);
    EXPECT_EQ(Explain::FactorFor(128, 128, 480, 172), 1);
    EXPECT_EQ(Explain::FactorFor(961, 1, 480, 172), 3);
}

TEST(PagePicture, Rounds_to_64_levels_that_reach_from_black_to_white) {
    Picture picture(2, 1);
    picture.bytes = {0, 1, 3, 128, 254, 255};
    // Levels lie 255 / 63 = 4.05 apart: 3 is nearer to the first than to none, 128 is 31.6 of them.
    EXPECT_EQ(Explain::Rounded(picture).bytes,
              (std::vector<unsigned char>{0, 0, 4, 130, 255, 255}));
}

TEST(PagePicture, Knows_how_far_things_are) {
    const DepthRange range = Explain::RangeOf(SeenAt({2.0, 0.0, 50.0, 10.0}));
    EXPECT_NEAR(range.nearest, 2.0, 1e-4);
    EXPECT_NEAR(range.farthest, 50.0, 1e-2);
    EXPECT_EQ(range.untouched, 0.25);
    EXPECT_EQ(Explain::RangeOf(SeenAt({0.0, 0.0})).farthest, 0.0);
}

TEST(PagePicture, Shows_depth_by_the_logarithm_of_the_distance) {
    const Pass pass = SeenAt({2.0, 8.0, 32.0, 0.0});
    const Picture picture = Explain::DepthPicture(pass, Explain::RangeOf(pass));
    EXPECT_EQ(GreyAt(picture, 0), 255);
    EXPECT_NEAR(GreyAt(picture, 1), (255 + 30) / 2.0, 1); // 8 is half of the way from 2 to 32
    EXPECT_EQ(GreyAt(picture, 2), 30);
    EXPECT_GT(picture.At(3, 0)[2], picture.At(3, 0)[0]); // blue
}

TEST(PagePicture, Is_a_PNG_in_base_64) {
    const std::string uri = Explain::DataUri(Picture(1, 1));
    // The eight bytes that every PNG begins with, and the first of its head's length.
    EXPECT_TRUE(uri.starts_with("data:image/png;base64,iVBORw0KGgoA")) << uri;
    EXPECT_EQ((uri.size() - std::string("data:image/png;base64,").size()) % 4, 0u);
}
