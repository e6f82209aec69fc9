#include "art/music/loudness.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

namespace {

/// A stereo sine of 1 kHz whose level changes: pairs of dBFS and seconds.
Music::Stereo Levels(const std::vector<std::pair<double, double>>& parts) {
    Music::Stereo signal;
    for (const auto& [db, seconds] : parts) {
        const auto part = Signal::Sine(1000, std::pow(10.0, db / 20.0), seconds);
        signal.left.insert(signal.left.end(), part.begin(), part.end());
    }
    signal.right = signal.left;
    return signal;
}

} // namespace

// The signals and figures are those of EBU Tech 3341 and 3342.
TEST(Loudness, Reads_minus_23_for_a_stereo_kilohertz_at_minus_23) {
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-23, 20}})).integrated, -23.0, 0.1);
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-33, 20}})).integrated, -33.0, 0.1);
}

TEST(Loudness, Reads_3_less_where_one_side_is_silent) {
    // Half of the power: 10 log10(1/2) = -3.01.
    Music::Stereo left = Levels({{-20, 20}});
    Music::Stereo right = left;
    std::fill(left.right.begin(), left.right.end(), 0.0F);
    std::fill(right.left.begin(), right.left.end(), 0.0F);
    EXPECT_NEAR(Music::MeasureLoudness(left).integrated, -23.0, 0.1);
    EXPECT_NEAR(Music::MeasureLoudness(right).integrated, -23.0, 0.1);
    EXPECT_NEAR(Music::MeasureLoudness(right).truePeak, -20.0, 0.2) << "of the louder side";
}

TEST(Loudness, Gates_quiet_passages_out) {
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-36, 10}, {-23, 60}, {-36, 10}})).integrated, -23.0,
                0.1);
    EXPECT_NEAR(
        Music::MeasureLoudness(Levels({{-72, 10}, {-36, 10}, {-23, 60}, {-36, 10}, {-72, 10}}))
            .integrated,
        -23.0, 0.1);
}

TEST(Loudness, Finds_the_range_between_two_levels) {
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-20, 20}, {-30, 20}})).range, 10.0, 1.0);
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-40, 20}, {-20, 20}})).range, 20.0, 1.0);
}

TEST(Loudness, Knows_the_true_peak) {
    EXPECT_NEAR(Music::MeasureLoudness(Levels({{-6, 2}})).truePeak, -6.0, 0.2);
}

TEST(Loudness, Sees_the_peak_between_two_samples) {
    // A quarter of the rate, 45 degrees off: every sample is +-0.7071, the wave reaches 1.
    const auto wave = Signal::Sine(Signal::rate / 4, 1.0, 1.0, 0.125);
    EXPECT_NEAR(Music::MeasureLoudness(Signal::Both(wave)).truePeak, 0.0, 0.2);
}

TEST(Loudness, Of_silence_and_of_nothing_at_all_is_the_least_there_is) {
    for (const std::size_t frames : {44100U, 0U}) {
        const Music::Loudness loudness = Music::MeasureLoudness(Music::Stereo(frames));
        EXPECT_EQ(loudness.integrated, -70.0);
        EXPECT_EQ(loudness.range, 0.0);
        EXPECT_EQ(loudness.truePeak, -200.0);
    }
}
