#include "tools/big/screen.h"

#include <gtest/gtest.h>

using Big::Area;
using Big::Enlarged;

TEST(Enlarged, Picture_is_as_wide_as_the_screen_and_keeps_its_shape) {
    const struct {
        Area screen;
        Area expected;
    } cases[] = {
        // 89 * 1920 / 960 = 178; (1080 - 178) / 2 = 451
        {{0, 0, 1920, 1080}, {0, 451, 1920, 178}},
        // 89 * 1280 / 960 = 118.67, which is 119; (256 - 119) / 2 = 68.5
        {{0, 0, 1280, 256}, {0, 68, 1280, 119}},
        // 89 * 2000 / 960 = 185.42, which is 185; the second screen of two begins at 1280
        {{1280, 100, 2000, 1000}, {1280, 507, 2000, 185}},
    };
    for (const auto& [screen, expected] : cases) {
        const Area area = Enlarged(960, 89, screen);
        EXPECT_EQ(area.x, expected.x);
        EXPECT_EQ(area.y, expected.y);
        EXPECT_EQ(area.width, expected.width);
        EXPECT_EQ(area.height, expected.height);
    }
}

TEST(Enlarged, Picture_keeps_its_size_on_smaller_screens_and_without_any) {
    for (const Area& screen : {Area{0, 0, 640, 480}, Area{}}) {
        const Area area = Enlarged(960, 89, screen);
        EXPECT_EQ(area.width, 960);
        EXPECT_EQ(area.height, 89);
    }
}
