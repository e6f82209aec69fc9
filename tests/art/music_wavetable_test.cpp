#include "art/music/wavetable.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

using Music::Oscillator;
using Music::Wave;

namespace {

constexpr int fftSize = 8192;

std::vector<float> Play(Wave wave, double frequency, std::size_t count) {
    Oscillator oscillator(wave, 0.1);
    oscillator.SetFrequency(frequency);
    std::vector<float> samples;
    for (std::size_t i = 0; i < count; ++i)
        samples.push_back(oscillator.Next());
    return samples;
}

/// The frequency at the centre of a bin.
double BinFrequency(int bin) {
    return bin * Signal::rate / fftSize;
}

/// Power of a bin with its neighbours, which the Hann window lights up too (1/4 each beside it).
double Around(const std::vector<double>& power, int bin) {
    double sum = 0;
    for (int k = bin - 1; k <= bin + 1; ++k)
        sum += power[static_cast<std::size_t>(k)];
    return sum;
}

/// Greatest level outside the harmonics of `bin`, dB below the fundamental.
double WorstAlias(const std::vector<double>& power, int bin) {
    double worst = 1e-30;
    for (int k = 1; k < fftSize / 2; ++k) {
        const int away =
            std::abs(k - bin * static_cast<int>(std::lround(static_cast<double>(k) / bin)));
        if (away > 2 || k < bin - 2)
            worst = std::max(worst, power[static_cast<std::size_t>(k)]);
    }
    return 10.0 * std::log10(worst / power[static_cast<std::size_t>(bin)]);
}

} // namespace

TEST(WaveTable, Keeps_the_aliases_of_a_saw_at_4_kHz_below_60_dB) {
    const int bin = 743; // 3999.8 Hz
    const auto samples = Play(Wave::Saw, BinFrequency(bin), fftSize);
    EXPECT_LT(WorstAlias(Music::PowerSpectrum(samples.data(), fftSize), bin), -60.0);
}

TEST(WaveTable, Keeps_the_aliases_of_every_wave_below_60_dB_at_several_pitches) {
    for (Wave wave :
         {Wave::Saw, Wave::Square, Wave::Triangle, Wave::Hollow, Wave::Organ, Wave::Reed}) {
        for (int bin : {41, 163, 977, 1801}) {
            const auto samples = Play(wave, BinFrequency(bin), fftSize);
            EXPECT_LT(WorstAlias(Music::PowerSpectrum(samples.data(), fftSize), bin), -60.0)
                << "wave " << static_cast<int>(wave) << " bin " << bin;
        }
    }
}

TEST(WaveTable, Gives_a_saw_harmonics_of_2_over_pi_n) {
    const int bin = 64; // 344.5 Hz
    const auto power =
        Music::PowerSpectrum(Play(Wave::Saw, BinFrequency(bin), fftSize).data(), fftSize);
    for (int n = 1; n <= 20; ++n) {
        // The three bins of a Hann-windowed tone hold 1 + 1/4 + 1/4 of its power.
        const double amplitude = std::sqrt(Around(power, n * bin) / 1.5);
        EXPECT_NEAR(amplitude, 2.0 / (Music::pi * n), 0.002) << "harmonic " << n;
    }
}

TEST(WaveTable, Leaves_even_harmonics_out_of_a_pulse_of_half_width) {
    const int bin = 100;
    Oscillator oscillator(Wave::Saw, 0.0);
    oscillator.SetFrequency(BinFrequency(bin));
    std::vector<float> samples;
    for (int i = 0; i < fftSize; ++i)
        samples.push_back(oscillator.NextPulse(0.5));
    const auto power = Music::PowerSpectrum(samples.data(), fftSize);
    EXPECT_LT(Around(power, 2 * bin), 1e-6 * Around(power, bin));
    EXPECT_GT(Around(power, 3 * bin), 0.05 * Around(power, bin)); // (1/3)^2 = 0.11
}

TEST(WaveTable, Plays_in_tune_to_a_tenth_of_a_cent) {
    for (double midi : {33.0, 57.0, 69.0, 90.5, 108.0}) {
        const double frequency = Music::NoteFrequency(midi);
        const auto samples = Play(Wave::Sine, frequency, 5 * Music::sampleRate);
        EXPECT_NEAR(Signal::Cents(Signal::Pitch(samples), frequency), 0.0, 0.1) << midi;
    }
}

TEST(WaveTable, Has_no_constant_part) {
    for (Wave wave : {Wave::Sine, Wave::Saw, Wave::Square, Wave::Triangle, Wave::Hollow,
                      Wave::Organ, Wave::Reed}) {
        // 100 whole periods of 441 samples.
        EXPECT_NEAR(Signal::Mean(Play(wave, 100.0, 44100)), 0.0, 1e-4)
            << "wave " << static_cast<int>(wave);
    }
}

TEST(WaveTable, Knows_its_waves_by_name_and_no_others) {
    Wave wave = Wave::Sine;
    EXPECT_TRUE(Music::FindWave("hollow", wave));
    EXPECT_EQ(wave, Wave::Hollow);
    EXPECT_FALSE(Music::FindWave("sawtooth", wave));
    EXPECT_EQ(wave, Wave::Hollow);
}
