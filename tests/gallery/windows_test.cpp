// The engine asks no library for its context: the same scene, drawn in whatever is current, gives
// the same picture.

#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

namespace {

constexpr int width = 320;
constexpr int height = 180;
constexpr double patience = 60.0; // seconds

std::string Program(const std::string& name) {
    return NIMBREL_BINARY_DIR "/gallery/windows/windows_" + name;
}

struct Window {
    const char* program;
    const char* package;
};

class Windows : public ::testing::TestWithParam<Window> {
protected:
    /// The program's picture; empty, with a failed test, when it writes none.
    std::string PictureOf(const std::string& name, const Tools::Environment& around,
                          const std::vector<std::string>& removed = {}) {
        const Tools::Ending end = Tools::Run(
            {.arguments = {Program(name), name + ".ppm"}, .added = around, .removed = removed},
            patience);
        EXPECT_TRUE(end.InOrder()) << end.InWords();
        return end.InOrder() ? ReadFile(name + ".ppm") : "";
    }

    static std::array<int, 3> PixelOf(const std::string& picture, int x, int y) {
        const std::size_t head = picture.size() - 3u * width * height;
        const std::size_t place = head + 3u * static_cast<std::size_t>(y * width + x);
        std::array<int, 3> colour{};
        for (std::size_t i = 0; i < colour.size(); ++i)
            colour[i] = static_cast<unsigned char>(picture[place + i]);
        return colour;
    }

    ScratchDir scratch;
    Tools::VirtualDisplay display;
};

} // namespace

TEST_P(Windows, Show_the_picture_of_the_first_one) {
    if (!std::filesystem::exists(Program(GetParam().program)))
        GTEST_SKIP() << "needs " << GetParam().package << ", to be there when CMake configures";
    const std::string expected = PictureOf("sdl1", {{"DISPLAY", display.Name()}});
    EXPECT_TRUE(PictureOf(GetParam().program, {{"DISPLAY", display.Name()}}) == expected);
}

INSTANTIATE_TEST_SUITE_P(Gallery, Windows,
                         ::testing::Values(Window{"sdl2", "libsdl2-dev"},
                                           Window{"glfw", "libglfw3-dev"},
                                           Window{"headless", "libegl-dev"}),
                         [](const auto& tested) { return std::string(tested.param.program); });

using NoWindow = Windows;

TEST_F(NoWindow, Needs_no_x_server) {
    if (!std::filesystem::exists(Program("headless")))
        GTEST_SKIP() << "needs libegl-dev, to be there when CMake configures";
    EXPECT_NE(PictureOf("headless", {}, {"DISPLAY", "WAYLAND_DISPLAY"}), "");
}

TEST_F(NoWindow, Shows_sky_pyramid_and_its_mirror_image_and_no_stripe_of_shadow) {
    const std::string picture = PictureOf("sdl1", {{"DISPLAY", display.Name()}});
    ASSERT_EQ(picture.size(), std::string("P6 320 180 255\n").size() + 3u * width * height);
    // 255 * (0.3, 0.5, 0.7) = (76.5, 127.5, 178.5), rounded either way. The lower left corner is
    // water that mirrors the same sky; the stripe would halve it.
    for (const auto& [x, y] : {std::array{5, 5}, std::array{5, height - 5}}) {
        const auto sky = PixelOf(picture, x, y);
        EXPECT_NEAR(sky[0], 76.5, 1.0);
        EXPECT_NEAR(sky[1], 127.5, 1.0);
        EXPECT_NEAR(sky[2], 178.5, 1.0);
    }
    // The pyramid is redder than blue, and so is what the water takes over of it; the sky is bluer.
    const auto pyramid = PixelOf(picture, width / 2, 80);
    EXPECT_GT(pyramid[0], pyramid[2] + 50);
    const auto mirrored = PixelOf(picture, 165, 125);
    EXPECT_GT(mirrored[0], mirrored[2]);
}
