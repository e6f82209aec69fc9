#include "art/music/envelope.h"
#include "art/music/filter.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

using Music::Biquad;
using Music::StateVariableFilter;

namespace {

constexpr double flat = 0.09395; // 0.5 * 40^r = 0.7071

enum class Output { Low, Band, High };

/// Level in dB of a sine behind a StateVariableFilter, once it has settled.
double Response(double cutoff, double resonance, double frequency, Output output) {
    StateVariableFilter filter;
    filter.Set(cutoff, resonance);
    std::vector<float> samples = Signal::Sine(frequency, 1.0, 1.0);
    for (float& sample : samples) {
        filter.Process(sample);
        sample = output == Output::Low ? filter.Low()
                                       : (output == Output::High ? filter.High() : filter.Band());
    }
    return Signal::Db(Signal::Rms(samples, samples.size() / 2, samples.size()) * std::sqrt(2.0));
}

double Response(const Biquad& filter, double frequency) {
    std::vector<float> samples = Signal::Sine(frequency, 0.5, 1.0);
    filter.Apply(samples);
    return Signal::Db(Signal::Rms(samples, samples.size() / 2, samples.size()) * std::sqrt(8.0));
}

} // namespace

TEST(StateVariableFilter, Is_3_dB_down_at_its_cut_off_when_flat) {
    for (double cutoff : {100.0, 1000.0, 8000.0}) {
        EXPECT_NEAR(Response(cutoff, flat, cutoff, Output::Low), -3.01, 0.05) << cutoff;
        EXPECT_NEAR(Response(cutoff, flat, cutoff, Output::High), -3.01, 0.05) << cutoff;
    }
}

TEST(StateVariableFilter, Falls_by_12_dB_an_octave) {
    // Two octaves from 500 Hz, far enough below half the rate for the analogue figure.
    EXPECT_NEAR(Response(500, flat, 2000, Output::Low) - Response(500, flat, 4000, Output::Low),
                12.0, 0.6);
    EXPECT_NEAR(Response(4000, flat, 500, Output::High) - Response(4000, flat, 250, Output::High),
                12.0, 0.3);
}

TEST(StateVariableFilter, Rings_at_its_cut_off_by_its_Q) {
    // Q = 0.5 * 40 = 20 at resonance 1: 26.02 dB.
    EXPECT_NEAR(Response(1000, 1.0, 1000, Output::Low), 26.02, 0.3);
    EXPECT_NEAR(Music::ResonanceToQ(0.0), 0.5, 1e-9);
}

TEST(StateVariableFilter, Survives_cut_offs_outside_its_range_and_sudden_jumps) {
    StateVariableFilter filter;
    Music::Random random(3);
    std::vector<float> output;
    for (int i = 0; i < 20000; ++i) {
        filter.Set(i % 2 == 0 ? -50.0 : 1e6, 0.9);
        filter.Process(random.Bipolar());
        output.push_back(filter.Low());
    }
    EXPECT_LT(Signal::Peak(output), 100.0F); // a loop that diverges passes any bound
    EXPECT_FALSE(Signal::HasOddNumbers(output));
}

TEST(Biquad, Meets_its_figures) {
    EXPECT_NEAR(Response(Biquad::LowPass(1000, std::sqrt(0.5)), 1000), -3.01, 0.05);
    EXPECT_NEAR(Response(Biquad::HighPass(1000, std::sqrt(0.5)), 1000), -3.01, 0.05);
    EXPECT_NEAR(Response(Biquad::Peak(1000, 1.0, 6.0), 1000), 6.0, 0.05);
    EXPECT_NEAR(Response(Biquad::Peak(1000, 1.0, 6.0), 50), 0.0, 0.1);
    EXPECT_NEAR(Response(Biquad::HighShelf(2000, -6.0), 15000), -6.0, 0.2);
    EXPECT_NEAR(Response(Biquad::LowShelf(200, 4.0), 200), 2.0, 0.05); // half of it there
}

TEST(Biquad, Does_not_move_a_signal_that_it_filters_both_ways) {
    std::vector<float> samples(2001, 0.0F);
    samples[1000] = 1.0F;
    Biquad::LowPass(500, 0.7).ApplyZeroPhase(samples);
    for (std::size_t i = 1; i < 200; ++i)
        EXPECT_NEAR(samples[1000 - i], samples[1000 + i], 1e-5) << i;
}

TEST(Biquad, Comes_to_rest_without_denormal_numbers) {
    std::vector<float> samples(Music::FrameAt(20.0), 0.0F);
    samples[0] = 1.0F;
    Biquad::LowPass(30, 5.0).Apply(samples);
    EXPECT_FALSE(Signal::HasOddNumbers(samples));
    EXPECT_EQ(samples.back(), 0.0F);
}

TEST(Envelope, Rises_within_the_attack) {
    Music::Envelope envelope({0.1, 1.0, 1.0, 0.1}, 1.0);
    std::vector<float> levels;
    for (int i = 0; i < 4420; ++i)
        levels.push_back(envelope.Next());
    EXPECT_NEAR(levels[2204], 0.5F, 0.001F); // half of 4410 samples
    EXPECT_LT(levels[4400], 1.0F);
    EXPECT_EQ(levels[4412], 1.0F);
}

TEST(Envelope, Decays_by_60_dB_of_the_way_to_the_sustain_level) {
    Music::Envelope envelope({0.0, 0.2, 0.25, 0.1}, 10.0);
    float level = envelope.Next(); // the attack of one sample
    for (int i = 0; i < 8820; ++i)
        level = envelope.Next();
    EXPECT_NEAR(level, 0.25 + 0.75 * 0.001, 0.0002);
}

TEST(Envelope, Releases_by_60_dB_in_the_release_time) {
    Music::Envelope envelope({0.0, 0.1, 0.5, 0.3}, 1.0);
    float held = 0;
    for (int i = 0; i < 44100; ++i)
        held = envelope.Next();
    EXPECT_NEAR(held, 0.5F, 0.001F);
    EXPECT_FALSE(envelope.Done());
    for (int i = 0; i < 13230; ++i)
        held = envelope.Next();
    EXPECT_NEAR(held, 0.0005F, 0.0001F);
    for (int i = 0; i < 13230; ++i)
        envelope.Next();
    EXPECT_TRUE(envelope.Done());
}
