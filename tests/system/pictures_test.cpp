// What a viewer would hold against the picture, measured on the real production with its real data.

#include "tools/picture/picture.h"

#include "tests/system/nimbrel_test.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

namespace {

using Tools::Picture;

constexpr double pace = 0.25; // seconds a frame between the pictures
constexpr double oneFrame = 1 / 60.0;
constexpr int logoGone = 11;       // seconds; the logo is drawn until 10
constexpr double patience = 240.0; // for some six hundred frames on a busy machine

std::size_t PixelCount(const Picture& picture) {
    return picture.bytes.size() / Picture::channels;
}

int Channel(const Picture& picture, std::size_t pixel, std::size_t channel) {
    return picture.bytes[pixel * Picture::channels + channel];
}

/// Share of the picture that its commonest colour has, at sixteen levels a channel.
double CommonestShare(const Picture& frame) {
    std::vector<std::size_t> counts(16 * 16 * 16);
    for (std::size_t i = 0; i < PixelCount(frame); ++i) {
        const int colour = Channel(frame, i, 0) / 16 * 256 + Channel(frame, i, 1) / 16 * 16 +
                           Channel(frame, i, 2) / 16;
        ++counts[static_cast<std::size_t>(colour)];
    }
    return static_cast<double>(*std::max_element(counts.begin(), counts.end())) /
           static_cast<double>(PixelCount(frame));
}

/// Share of the pixels that jump in the second of three frames and are back in the third, as
/// surfaces that fight for one depth do.
double FlickerShare(const Picture& a, const Picture& b, const Picture& c) {
    constexpr int jump = 48; // of 255
    constexpr int back = 12;
    std::size_t flickering = 0;
    for (std::size_t i = 0; i < PixelCount(a); ++i) {
        bool jumps = false;
        bool returns = true;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const int before = Channel(a, i, channel);
            const int between = Channel(b, i, channel);
            const int after = Channel(c, i, channel);
            jumps |= std::abs(between - before) > jump && std::abs(between - after) > jump;
            returns &= std::abs(after - before) < back;
        }
        flickering += jumps && returns;
    }
    return static_cast<double>(flickering) / static_cast<double>(PixelCount(a));
}

std::string Text(double time) {
    char text[16];
    std::snprintf(text, sizeof text, "%.3f", time);
    return text;
}

std::string List(const std::set<double>& times) {
    std::string list;
    for (const double time : times) {
        if (!list.empty())
            list += ',';
        list += Text(time);
    }
    return list;
}

class Pictures : public NimbrelTest {
protected:
    /// Plays the whole show with frames at a steady pace and at `times`, and pictures at `times`.
    /// Without the music, which stepped time does not move: what follows it stands at its peak.
    void Play(const std::set<double>& times) {
        std::filesystem::create_directory("Data");
        std::filesystem::create_directory_symlink(RealData() / "Gfx", "Data/Gfx");
        std::set<double> frames = times;
        for (int i = 0; i * pace < runningTime; ++i)
            frames.insert(i * pace);
        Start({{"NIMBREL_PROBE_TIMES", List(frames)},
               {"NIMBREL_PROBE_SHOTS", List(times)},
               {"NIMBREL_PROBE_SHOT_DIR", "."}});
        WaitForOrderlyEnd(patience);
    }

    static Picture At(double time) {
        char name[32];
        std::snprintf(name, sizeof name, "frame_%08.3f.ppm", time);
        return Tools::ReadPpm(name);
    }
};

Picture Plain(unsigned char value) {
    Picture picture(10, 10);
    std::fill(picture.bytes.begin(), picture.bytes.end(), value);
    return picture;
}

} // namespace

TEST(PictureMeasures, See_one_flat_colour) {
    Picture frame = Plain(100);
    EXPECT_EQ(CommonestShare(frame), 1.0);
    std::fill_n(frame.bytes.begin(), 30 * 3, static_cast<unsigned char>(20)); // 30 of 100 pixels
    EXPECT_EQ(CommonestShare(frame), 0.7);
}

TEST(PictureMeasures, See_pixels_that_jump_and_come_back_but_none_that_moves_on) {
    const Picture dark = Plain(10);
    Picture flash = dark;
    std::fill_n(flash.bytes.begin(), 5 * 3, static_cast<unsigned char>(100)); // 5 of 100 pixels
    EXPECT_EQ(FlickerShare(dark, flash, dark), 0.05);
    EXPECT_EQ(FlickerShare(dark, flash, flash), 0.0);
    EXPECT_EQ(FlickerShare(dark, dark, flash), 0.0);
}

TEST_F(Pictures, Are_never_mostly_one_colour_once_the_logo_has_gone) {
    if (sanitized)
        GTEST_SKIP() << "measures Data/, which the release build plays just the same";
    std::set<double> times;
    for (int second = logoGone; second < runningTime; ++second)
        times.insert(second);
    Play(times);
    for (const double time : times)
        EXPECT_LE(CommonestShare(At(time)), 0.6) << time << " s";
}

TEST_F(Pictures, Do_not_flicker_from_frame_to_frame) {
    if (sanitized)
        GTEST_SKIP() << "measures Data/, which the release build plays just the same";
    // In every flight, away from the cuts.
    constexpr double moments[] = {12.0, 22.0, 33.0, 48.0,  60.0,  66.0,  72.0,
                                  80.0, 88.0, 95.0, 102.0, 107.0, 112.0, 117.0};
    std::set<double> times;
    for (const double moment : moments)
        for (int frame = 0; frame < 3; ++frame)
            times.insert(moment + frame * oneFrame);
    Play(times);
    // Windows in the distance are narrower than a pixel, and nothing smooths edges.
    constexpr double twinkling = 0.003;
    for (const double moment : moments)
        EXPECT_LE(FlickerShare(At(moment), At(moment + oneFrame), At(moment + 2 * oneFrame)),
                  twinkling)
            << moment << " s";
}
