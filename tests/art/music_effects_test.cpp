#include "art/music/dynamics.h"
#include "art/music/effects.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

using Music::Stereo;

namespace {

Stereo Click(double seconds) {
    Stereo signal(Music::FrameAt(seconds));
    signal.left[0] = signal.right[0] = 1.0F;
    return signal;
}

std::size_t LoudestAt(const std::vector<float>& samples, std::size_t from, std::size_t to) {
    std::size_t best = from;
    for (std::size_t i = from; i < to; ++i)
        best = std::fabs(samples[i]) > std::fabs(samples[best]) ? i : best;
    return best;
}

} // namespace

TEST(PingPong, Answers_on_the_right_after_one_time_and_on_the_left_after_two) {
    Music::PingPong echoes;
    echoes.time = 0.25;
    const Stereo out = echoes.Process(Click(1.2));
    EXPECT_NEAR(LoudestAt(out.right, 0, 20000), 11025, 12);
    EXPECT_NEAR(LoudestAt(out.left, 0, 30000), 22050, 24);
    EXPECT_EQ(Signal::Peak({out.left.begin(), out.left.begin() + 20000}), 0.0F);
}

TEST(PingPong, Dies_away_and_ends_in_silence) {
    Music::PingPong echoes;
    echoes.time = 0.05;
    const Stereo out = echoes.Process(Click(20.0));
    EXPECT_FALSE(Signal::HasOddNumbers(out.left));
    EXPECT_EQ(out.left.back(), 0.0F);
}

TEST(Reverb, Falls_by_60_dB_in_its_time) {
    Music::Reverb hall;
    hall.time = 2.0;
    hall.damping = 20000;
    hall.lowCut = 20;
    const Stereo out = hall.Process(Click(3.0));
    const auto level = [&](double at) {
        return Signal::Db(
            Signal::Rms(out.left, Music::FrameAt(at - 0.15), Music::FrameAt(at + 0.15)));
    };
    // 30 dB a second; the diffusion of the first echoes and the damping make it uneven.
    EXPECT_NEAR(level(0.5) - level(1.5), 30.0, 5.0);
}

TEST(Reverb, Starts_after_the_pre_delay_and_never_rings_on_in_denormal_numbers) {
    Music::Reverb hall;
    hall.preDelay = 0.1;
    hall.time = 0.5;
    const Stereo out = hall.Process(Click(20.0));
    // The shortest line holds 1289 samples, wandering by 9.
    EXPECT_EQ(Signal::Peak({out.left.begin(), out.left.begin() + 4410 + 1270}), 0.0F);
    EXPECT_GT(Signal::Peak(out.left), 0.01F);
    EXPECT_FALSE(Signal::HasOddNumbers(out.left));
    EXPECT_FALSE(Signal::HasOddNumbers(out.right));
}

TEST(Chorus, Widens_a_centred_sound_and_keeps_its_level) {
    Stereo signal = Signal::Both(Signal::Sine(440, 0.5, 2.0));
    Music::Chorus().Apply(signal);
    double side = 0;
    for (std::size_t i = 44100; i < signal.Frames(); ++i)
        side = std::max<double>(side, std::fabs(signal.left[i] - signal.right[i]));
    EXPECT_GT(side, 0.05);
    EXPECT_LT(Signal::Peak(signal.left), 0.5 * (1.0 + 0.4 * 1.5) + 0.01);
}

TEST(SoftClip, Makes_the_third_harmonic_and_no_higher_one) {
    constexpr int fftSize = 4096;
    std::vector<float> samples = Signal::Sine(64 * Signal::rate / fftSize, 0.9, 0.2);
    for (float& sample : samples)
        sample = Music::SoftClip(sample, 1.5F);
    const auto power = Music::PowerSpectrum(samples.data(), fftSize);
    // x - 4/27 x^3 of 1.35 sin: the third harmonic has 4/27 * 1.35^3 / 4 = 0.0911.
    EXPECT_NEAR(std::sqrt(power[3 * 64]), 0.0911, 0.001);
    EXPECT_LT(power[5 * 64], 1e-9);
    EXPECT_LT(power[2 * 64], 1e-9);
}

TEST(Compressor, Turns_what_is_over_the_threshold_down_by_its_ratio) {
    // A constant of -8 dB is 12 dB over -20; at 4:1 it may keep 3: the gain is -9 dB.
    const Stereo key = Signal::Both(std::vector<float>(44100, Music::FromDb(-8.0F)));
    const auto gain =
        Music::Compressor{
            .threshold = -20.0F, .ratio = 4.0F, .attack = 0.01, .release = 0.1, .knee = 0.0F}
            .GainDb(key);
    EXPECT_NEAR(gain.back(), -9.0F, 0.01F);
    EXPECT_NEAR(gain[440], -9.0F * (1 - std::exp(-1.0)), 0.1); // one attack time
}

TEST(Compressor, Recovers_with_the_release_time) {
    std::vector<float> key(44100, 0.0F);
    std::fill(key.begin(), key.begin() + 22050, 1.0F);
    const auto gain =
        Music::Compressor{
            .threshold = -12.0F, .ratio = 2.0F, .attack = 0.001, .release = 0.2, .knee = 0.0F}
            .GainDb(Signal::Both(key));
    EXPECT_NEAR(gain[22049], -6.0F, 0.01F); // 12 dB over at 2:1
    EXPECT_NEAR(gain[22050 + 8820], -6.0F * std::exp(-1.0), 0.05);
}

TEST(Compressor, Leaves_quiet_keys_alone) {
    const auto gain = Music::Compressor().GainDb(Signal::Both(std::vector<float>(1000, 0.01F)));
    EXPECT_EQ(gain.back(), 0.0F);
}

TEST(TruePeaks, Sees_the_peak_between_two_samples) {
    // A quarter of the rate, 45 degrees off: every sample is +-0.7071, the wave reaches 1.
    const auto samples = Signal::Sine(Signal::rate / 4, 1.0, 0.1, 0.125);
    const auto peaks = Music::TruePeaks(samples);
    EXPECT_NEAR(samples[2000] * samples[2000], 0.5, 1e-4);
    const float highest = *std::max_element(peaks.begin() + 100, peaks.end() - 100);
    EXPECT_NEAR(Signal::Db(highest), 0.0, 0.15);
}

TEST(Limiter, Keeps_the_true_peak_under_its_ceiling) {
    Music::Random random(9);
    Stereo signal(44100);
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        const float loud = i % 9000 < 3000 ? 3.0F : 0.2F;
        signal.left[i] = loud * random.Bipolar();
        signal.right[i] = loud * random.Bipolar();
    }
    const float reduction = Music::Limiter{-2.0F, 0.003, 0.05}.Apply(signal);
    EXPECT_GT(reduction, 8.0F);
    for (const auto* channel : {&signal.left, &signal.right}) {
        const auto peaks = Music::TruePeaks(*channel);
        // The gain moves a little within the interpolation filter's reach.
        EXPECT_LE(Signal::Db(*std::max_element(peaks.begin(), peaks.end())), -1.9);
    }
}

TEST(Limiter, Does_nothing_to_what_is_already_below) {
    Stereo signal = Signal::Both(Signal::Sine(100, 0.5, 0.5));
    const Stereo before = signal;
    EXPECT_NEAR(Music::Limiter().Apply(signal), 0.0F, 1e-4F);
    for (std::size_t i = 0; i < signal.Frames(); ++i)
        ASSERT_NEAR(signal.left[i], before.left[i], 1e-5);
}

TEST(SlidingMinimum, Takes_the_least_of_the_neighbourhood) {
    const std::vector<float> values{5, 4, 9, 1, 7, 8, 6};
    EXPECT_EQ(Music::SlidingMinimum(values, 1), (std::vector<float>{4, 4, 1, 1, 1, 6, 6}));
    EXPECT_EQ(Music::SlidingMinimum(values, 0), values);
}

TEST(HannSmoothed, Weighs_the_neighbourhood_with_a_raised_cosine) {
    std::vector<float> values(21, 0.0F);
    values[10] = 1.0F;
    const auto smooth = Music::HannSmoothed(values, 3);
    // Weights 1 + cos(pi d / 4) over their sum 8: 2, 1.7071, 1, 0.2929.
    EXPECT_NEAR(smooth[10], 0.25, 1e-6);
    EXPECT_NEAR(smooth[11], 1.7071 / 8, 1e-5);
    EXPECT_NEAR(smooth[8], 1.0 / 8, 1e-6);
    EXPECT_NEAR(smooth[13], 0.2929 / 8, 1e-5);
    EXPECT_NEAR(smooth[14], 0.0, 1e-6);
}
