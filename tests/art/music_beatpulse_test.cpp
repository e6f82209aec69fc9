#include "art/music/beatpulse.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

using Music::BeatPulse;

namespace {

BeatPulse Eight() {
    BeatPulse pulse;
    pulse.firstBeat = 1.0;
    pulse.beats = 8;
    pulse.secondsPerBeat = 0.5;
    pulse.sceneBeats = {4};
    return pulse;
}

/// Loud music of the awkward kind: a deep sine, a chord and noise, all swinging through zero.
Music::Stereo Music6s() {
    Music::Random random(5);
    std::vector<float> sum = Signal::Sine(45, 0.3, 6.0);
    for (double frequency : {220.0, 277.0, 330.0}) {
        const auto tone = Signal::Sine(frequency, 0.07, 6.0);
        for (std::size_t i = 0; i < sum.size(); ++i)
            sum[i] += tone[i];
    }
    for (float& sample : sum)
        sample += 0.05F * random.Bipolar();
    return Signal::Both(sum);
}

float ReadingAt(const Music::Stereo& signal, double seconds) {
    return Music::LowestBand(signal.left, Music::FrameAt(seconds));
}

} // namespace

TEST(LowestBand, Reads_a_constant_as_it_is_and_hides_the_zeros_of_its_window) {
    EXPECT_NEAR(Music::LowestBand(std::vector<float>(200, -0.4F), 10), 0.4F, 1e-5F);
    // The triangle of 128 samples is two boxes of 64: it is blind to 44100 / 64 Hz.
    EXPECT_LT(Music::LowestBand(Signal::Sine(44100.0 / 64, 1.0, 0.1), 777), 0.01F);
    EXPECT_EQ(Music::LowestBand({}, 0), 0.0F);
}

TEST(LowestBand, Agrees_with_the_running_mean) {
    const auto samples = Signal::Sine(60, 0.5, 0.2);
    const auto means = Music::LowestBandMean(samples);
    for (std::size_t i = 1000; i < 5000; i += 37)
        EXPECT_NEAR(std::fabs(means[i + 63]), Music::LowestBand(samples, i), 0.003) << i;
}

TEST(BeatPulse, Silences_the_low_end_before_every_beat) {
    const BeatPulse pulse = Eight();
    Music::Stereo signal = Music6s();
    pulse.OpenGaps(signal);
    for (int beat : {0, 1, 2, 3, 5, 6, 7}) {
        // The 3 ms that the band looks at must lie in the gap of -34..-3 ms.
        for (double before = 0.032; before >= 0.0085; before -= 0.0005) {
            EXPECT_LT(ReadingAt(signal, pulse.TimeOf(beat) - before), 0.015F)
                << "beat " << beat << ", " << before << " s before";
        }
    }
}

TEST(BeatPulse, Silences_the_low_end_behind_a_beat_that_opens_a_scene) {
    const BeatPulse pulse = Eight();
    Music::Stereo signal = Music6s();
    pulse.OpenGaps(signal);
    for (double at = -0.008; at <= 0.0125; at += 0.0005)
        EXPECT_LT(ReadingAt(signal, pulse.TimeOf(4) + at), 0.015F) << at;
}

TEST(BeatPulse, Leaves_the_high_end_and_the_time_between_beats_untouched_by_the_gaps) {
    const BeatPulse pulse = Eight();
    Music::Stereo high = Signal::Both(Signal::Sine(4000, 0.5, 6.0));
    pulse.OpenGaps(high);
    const std::size_t gap = Music::FrameAt(pulse.TimeOf(2) - 0.025);
    EXPECT_NEAR(Signal::Rms(high.left, gap, gap + 800), 0.5 / std::sqrt(2.0), 0.005);
    const Music::Stereo before = Music6s();
    Music::Stereo after = before;
    pulse.OpenGaps(after);
    for (std::size_t i = Music::FrameAt(1.02); i < Music::FrameAt(1.46); ++i)
        ASSERT_EQ(after.left[i], before.left[i]);
}

TEST(BeatPulse, Holds_the_low_end_on_one_side_between_beats_and_changes_it_at_each) {
    const BeatPulse pulse = Eight();
    Music::Stereo signal = Music6s();
    pulse.OpenGaps(signal);
    pulse.AddCarrier(signal);
    const auto means = Music::LowestBandMean(signal.left);
    for (int beat = 0; beat < pulse.beats; ++beat) {
        const float side = beat % 2 == 0 ? 1.0F : -1.0F;
        for (double after = 0.056; after < 0.444; after += 0.0007) {
            const float mean = means[Music::FrameAt(pulse.TimeOf(beat) + after)];
            ASSERT_GT(side * mean, 0.05F) << "beat " << beat << " + " << after;
        }
    }
}

TEST(BeatPulse, Adds_the_same_slow_carrier_to_both_channels) {
    const BeatPulse pulse = Eight();
    const Music::Stereo before = Music6s();
    Music::Stereo after = before;
    pulse.AddCarrier(after);
    double steepest = 0;
    for (std::size_t i = 1; i < after.Frames(); ++i) {
        const float left = after.left[i] - before.left[i];
        ASSERT_NEAR(left, after.right[i] - before.right[i], 1e-6);
        steepest =
            std::max<double>(steepest, std::fabs(left - (after.left[i - 1] - before.left[i - 1])));
    }
    EXPECT_GT(steepest, 0.0);
    EXPECT_LT(steepest, 0.003); // 0.5 takes 4 ms and more: no click
    EXPECT_EQ(after.left[Music::FrameAt(0.9)], before.left[Music::FrameAt(0.9)]);
}

TEST(BeatPulse, Turns_the_polarity_of_a_track_with_the_side) {
    const BeatPulse pulse = Eight();
    Music::Stereo signal = Signal::Both(std::vector<float>(6 * 44100, 1.0F));
    pulse.FollowPolarity(signal);
    EXPECT_EQ(signal.left[Music::FrameAt(0.5)], 1.0F);
    EXPECT_EQ(signal.left[Music::FrameAt(1.25)], 1.0F);
    EXPECT_EQ(signal.left[Music::FrameAt(1.75)], -1.0F);
    EXPECT_EQ(signal.right[Music::FrameAt(4.75)], -1.0F);
    EXPECT_EQ(signal.left[Music::FrameAt(5.25)], 1.0F);
}

TEST(BeatPulse, Does_nothing_without_beats) {
    const Music::Stereo before = Music6s();
    Music::Stereo after = before;
    BeatPulse none;
    none.AddCarrier(after);
    none.FollowPolarity(after);
    EXPECT_EQ(after.left, before.left);
}
