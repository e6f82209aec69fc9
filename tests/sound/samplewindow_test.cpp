#include "sound/samplewindow.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::Sound::SampleWindow;

namespace {

/// Frames `first` up to `end`: n on the left, -n on the right.
std::vector<std::int16_t> Numbers(int first, int end) {
    std::vector<std::int16_t> samples;
    for (int n = first; n < end; ++n) {
        samples.push_back(static_cast<std::int16_t>(n));
        samples.push_back(static_cast<std::int16_t>(-n));
    }
    return samples;
}

std::vector<std::int16_t> Copied(const SampleWindow& window, int first, std::size_t count) {
    std::vector<std::int16_t> samples(2 * count);
    window.Copy(first, samples);
    return samples;
}

TEST(SampleWindow, Holds_nothing_at_first) {
    const SampleWindow window(10);
    EXPECT_EQ(window.Begin(), 0);
    EXPECT_EQ(window.End(), 0);
    EXPECT_FALSE(window.Holds(0, 1));
}

TEST(SampleWindow, Lets_the_oldest_frames_go) {
    SampleWindow window(10);
    window.Append(Numbers(0, 7));
    EXPECT_TRUE(window.Holds(0, 7));
    EXPECT_FALSE(window.Holds(0, 8));
    window.Append(Numbers(7, 14)); // four more than there is room for
    EXPECT_EQ(window.Begin(), 4);
    EXPECT_EQ(window.End(), 14);
    EXPECT_TRUE(window.Holds(4, 10));
    EXPECT_FALSE(window.Holds(3, 1));
    EXPECT_EQ(Copied(window, 4, 10), Numbers(4, 14)) << "across the ring's end";
    EXPECT_THAT(Copied(window, 9, 2), ElementsAre(9, -9, 10, -10));
}

TEST(SampleWindow, Begins_anew) {
    SampleWindow window(10);
    window.Append(Numbers(0, 7));
    window.Restart();
    EXPECT_FALSE(window.Holds(0, 1));
    window.Append(Numbers(100, 105));
    EXPECT_FALSE(window.Holds(0, 6));
    EXPECT_EQ(Copied(window, 0, 5), Numbers(100, 105));
}

} // namespace
