#include "art/music/powerspectrum.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

namespace {

constexpr int windowSize = 1024;
constexpr int toneBin = 100;

/// The spectrum of a sine of that amplitude on the centre of toneBin.
std::vector<double> SpectrumOfSine(double amplitude) {
    const double block = windowSize / Signal::rate; // seconds, in which it swings toneBin times
    const auto samples = Signal::Sine(toneBin / block, amplitude, 2.0 * block);
    return Music::PowerSpectrum(samples.data(), windowSize);
}

} // namespace

TEST(PowerSpectrum, Reads_a_full_scale_sine_as_1_and_half_of_it_as_a_quarter) {
    EXPECT_NEAR(SpectrumOfSine(1.0)[toneBin], 1.0, 1e-6);
    EXPECT_NEAR(SpectrumOfSine(0.5)[toneBin], 0.25, 1e-6);
}

TEST(PowerSpectrum, Shows_a_sine_in_its_bin_and_the_two_beside_it_alone) {
    const auto power = SpectrumOfSine(1.0);
    ASSERT_EQ(power.size(), windowSize / 2 + 1U);
    for (int k = 0; k <= windowSize / 2; ++k) {
        // A Hann window's transform is 1, 1/2, 0 at whole bins from its centre: powers 1, 1/4, 0.
        const int away = std::abs(k - toneBin);
        const double expected = away == 0 ? 1.0 : away == 1 ? 0.25 : 0.0;
        EXPECT_NEAR(power[static_cast<std::size_t>(k)], expected, 1e-6) << "bin " << k;
    }
}
