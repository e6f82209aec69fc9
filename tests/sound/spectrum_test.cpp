#include "sound/spectrum.h"

#include "tests/allocations/allocations.h"
#include "tests/sound/whole_track.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <vector>

using ::testing::Each;
using ::testing::FloatNear;
using ::testing::Pointwise;
using Vell::Sound::Spectrum;
using Vell::Sound::Window;

namespace {

constexpr double pi = std::numbers::pi;
constexpr int count = 64;        // values, as the demo asks for
constexpr int blockLength = 128; // frames under one spectrum
constexpr int left = 0;
constexpr int right = 1;

// Samples are whole numbers: each is off by up to half of 1 / 32768, and a weighted mean of them
// is not off by more. Twice as much, because a sine's values are doubled.
constexpr float rounding = 1.0f / 32768.0f;

template <class LeftAt, class RightAt>
WholeTrack MakeTrack(int frames, LeftAt leftAt, RightAt rightAt) {
    std::vector<std::int16_t> samples;
    for (int frame = 0; frame < frames; ++frame) {
        samples.push_back(static_cast<std::int16_t>(std::lround(32767.0 * leftAt(frame))));
        samples.push_back(static_cast<std::int16_t>(std::lround(32767.0 * rightAt(frame))));
    }
    return {44100, std::move(samples)};
}

double Nothing(int) {
    return 0.0;
}

/// A sine of full scale on the left whose frequency is `bin` bins wide, counted from bin 0.
WholeTrack SineOnBin(double bin, double phase = 0.0) {
    return MakeTrack(
        2000, [=](int n) { return std::sin(2.0 * pi * bin * n / blockLength + phase); }, Nothing);
}

std::vector<float> Measure(const WholeTrack& track, std::int64_t heard, int side = left,
                           int values = count) {
    // Filled beforehand with what no spectrum gives: every value must have been written.
    std::vector<float> spectrum(static_cast<std::size_t>(values), -1.0f);
    Spectrum().Measure(track, heard, side, spectrum);
    return spectrum;
}

/// Share of a sine's amplitude that reaches a bin `distance` bins away. The triangle of L = 2 N
/// samples is a row of N ones convolved with itself and divided by N, so its transform is
/// (sin(pi N f) / sin(pi f))^2 / N at the frequency f = distance / L, and N at 0.
double Leak(double distance) {
    if (distance == 0.0)
        return 1.0;
    const double f = distance / blockLength;
    const double ratio = std::sin(pi * count * f) / std::sin(pi * f);
    return ratio * ratio / (count * count);
}

TEST(Spectrum, Reads_one_where_a_sine_of_full_scale_meets_a_bin) {
    // The mirror image of bin k is an even number of bins away and leaves nothing here.
    for (const int bin : {1, 2, 16, 31, 63})
        EXPECT_NEAR(Measure(SineOnBin(bin), 1000)[static_cast<std::size_t>(bin)], 1.0,
                    rounding + 1.0 / 32767.0)
            << bin;
}

TEST(Spectrum, Is_linear) {
    const WholeTrack quiet = MakeTrack(
        2000, [](int n) { return 0.01 * std::sin(2.0 * pi * 10.0 * n / blockLength); }, Nothing);
    EXPECT_NEAR(Measure(quiet, 1000)[10], 0.01, rounding);
}

TEST(Spectrum, Gives_the_neighbours_of_a_bin_what_the_triangle_leaks) {
    // 4 / pi^2 = 0.405 of the amplitude to each side, nothing at even distances and 4 / (9 pi^2) =
    // 0.045 three bins away. The mirror image, 33 bins and more from here, adds up to
    // Leak(31) = 0.0005.
    const std::vector<float> spectrum = Measure(SineOnBin(16), 1000);
    constexpr double mirror = 0.0005 + rounding;
    EXPECT_NEAR(spectrum[15], 0.405, mirror + 0.0005);
    EXPECT_NEAR(spectrum[17], 0.405, mirror + 0.0005);
    EXPECT_NEAR(spectrum[14], 0.0, rounding);
    EXPECT_NEAR(spectrum[18], 0.0, rounding);
    EXPECT_NEAR(spectrum[13], 0.045, mirror + 0.0005);
    EXPECT_NEAR(spectrum[19], 0.045, mirror + 0.0005);
}

TEST(Spectrum, Reads_eight_tenths_on_both_sides_of_a_sine_between_two_bins) {
    // 8 / pi^2 = 0.8106; the mirror image is 41 bins and more away.
    const std::vector<float> spectrum = Measure(SineOnBin(20.5), 1000);
    const double tolerance = Leak(40.5) + rounding;
    EXPECT_NEAR(Leak(0.5), 0.8106, 0.0001);
    EXPECT_NEAR(spectrum[20], Leak(0.5), tolerance);
    EXPECT_NEAR(spectrum[21], Leak(0.5), tolerance);
    EXPECT_NEAR(spectrum[19], Leak(1.5), tolerance);
    EXPECT_NEAR(spectrum[22], Leak(1.5), tolerance);
}

TEST(Spectrum, Does_not_depend_on_the_phase_of_a_sine_on_a_bin) {
    for (const double phase : {0.0, 0.7, 1.6, 3.0})
        EXPECT_NEAR(Measure(SineOnBin(16, phase), 1000)[16], 1.0, 2.0 * rounding) << phase;
}

TEST(Spectrum, Reads_a_constant_as_its_level_in_value_0) {
    const WholeTrack constant = MakeTrack(
        2000, [](int) { return 0.5; }, Nothing);
    const std::vector<float> spectrum = Measure(constant, 1000);
    EXPECT_NEAR(spectrum[0], 0.5, rounding);
    // As a sine of frequency 0 it leaks like one, from both sides of 0 into value 1.
    EXPECT_NEAR(spectrum[1], 2.0 * 0.5 * Leak(1), rounding);
    EXPECT_NEAR(spectrum[2], 0.0, rounding);
}

TEST(Spectrum, Measures_the_side_that_is_asked_for) {
    const WholeTrack track = MakeTrack(
        2000, [](int n) { return std::sin(2.0 * pi * 8.0 * n / blockLength); },
        [](int n) { return std::sin(2.0 * pi * 40.0 * n / blockLength); });
    EXPECT_NEAR(Measure(track, 1000, left)[8], 1.0, 2.0 * rounding);
    EXPECT_NEAR(Measure(track, 1000, left)[40], 0.0, 2.0 * rounding);
    EXPECT_NEAR(Measure(track, 1000, right)[8], 0.0, 2.0 * rounding);
    EXPECT_NEAR(Measure(track, 1000, right)[40], 1.0, 2.0 * rounding);
}

TEST(Spectrum, Takes_the_samples_before_the_one_heard_next_and_no_others) {
    // One click of full scale at frame 500: a flat spectrum of 2 w / 64 each, w the weight there.
    const WholeTrack click = MakeTrack(
        2000, [](int n) { return n == 500 ? 1.0 : 0.0; }, Nothing);
    EXPECT_THAT(Measure(click, 500), Each(0.0f)) << "about to be heard";
    EXPECT_THAT(Measure(click, 500 + blockLength + 1), Each(0.0f)) << "out of the block again";
    // In the middle of the block the weight is 1, a quarter before its end 1/2.
    EXPECT_NEAR(Measure(click, 500 + 64)[30], 2.0 / 64.0, rounding);
    EXPECT_NEAR(Measure(click, 500 + 32)[30], 1.0 / 64.0, rounding);
    EXPECT_NEAR(Measure(click, 500 + 96)[30], 1.0 / 64.0, rounding);
    EXPECT_NEAR(Measure(click, 500 + 64)[0], 1.0 / 64.0, rounding) << "constant part";
}

TEST(Spectrum, Hears_silence_before_the_track_and_after_it) {
    const WholeTrack loud = MakeTrack(
        2000, [](int) { return 1.0; }, Nothing);
    for (const std::int64_t heard : {-1'000'000L, -1L, 0L, 2000L, 2001L, 1'000'000L})
        EXPECT_THAT(Measure(loud, heard), Each(0.0f)) << heard;
    EXPECT_GT(Measure(loud, 1)[0], 0.0f);
    EXPECT_GT(Measure(loud, 1999)[0], 0.9f);
}

TEST(Spectrum, Completes_the_block_with_silence_at_the_start) {
    // 32 frames of level 1 fill the last quarter of the block. Their weights are (32 - m) / 64 for
    // m = 0 .. 31 before the end: from 32/64 down to 1/64, together 32 * 33 / 2 / 64 = 8.25.
    const WholeTrack constant = MakeTrack(
        2000, [](int) { return 1.0; }, Nothing);
    EXPECT_NEAR(Measure(constant, 32)[0], 8.25 / 64.0, rounding);
}

TEST(Spectrum, Reads_a_silent_track_as_exact_zeros) {
    EXPECT_THAT(Measure(MakeTrack(2000, Nothing, Nothing), 1000), Each(0.0f));
}

TEST(Spectrum, Agrees_with_the_transform_written_out) {
    // A signal with no pattern, every size from the smallest up.
    const auto signal = [](int n) { return 0.9 * std::sin(0.37 * n * n); };
    const WholeTrack track = MakeTrack(2000, signal, Nothing);
    for (const int values : {2, 4, 8, 64, 256}) {
        std::vector<float> expected;
        for (int k = 0; k < values; ++k) {
            double real = 0.0;
            double imaginary = 0.0;
            for (int n = 0; n < 2 * values; ++n) {
                const double weight = 1.0 - std::abs(n - values) / static_cast<double>(values);
                const double sample =
                    track.samples[2 * static_cast<std::size_t>(1000 - 2 * values + n)];
                real += weight * sample / 32768.0 * std::cos(pi * k * n / values);
                imaginary -= weight * sample / 32768.0 * std::sin(pi * k * n / values);
            }
            const double scale = k == 0 ? 1.0 : 2.0;
            expected.push_back(static_cast<float>(scale / values * std::hypot(real, imaginary)));
        }
        // Single precision throughout: a few roundings of values up to 1.
        EXPECT_THAT(Measure(track, 1000, left, values), Pointwise(FloatNear(1e-5f), expected));
    }
}

TEST(Spectrum, Can_change_its_size_from_call_to_call) {
    const WholeTrack track = SineOnBin(16);
    Spectrum spectrum;
    std::vector<float> small(64);
    std::vector<float> large(128);
    for (int round = 0; round < 3; ++round) {
        spectrum.Measure(track, 1000, left, small);
        spectrum.Measure(track, 1000, left, large);
        EXPECT_NEAR(small[16], 1.0, 2.0 * rounding);
        EXPECT_NEAR(large[32], 1.0, 2.0 * rounding) << "bins half as wide";
    }
}

TEST(Spectrum, Takes_memory_in_the_first_call_only) {
    const WholeTrack track = SineOnBin(16);
    Spectrum spectrum;
    std::vector<float> values(count);
    const int before = Allocations();
    spectrum.Measure(track, 1000, left, values);
    const int first = Allocations();
    EXPECT_GT(first, before);
    for (std::int64_t heard = -100; heard < 2100; ++heard)
        spectrum.Measure(track, heard, left, values);
    EXPECT_EQ(Allocations(), first);
}

struct WindowCase {
    Window window;
    double next;   // what a sine of full scale leaks one bin away
    double second; // and two bins away
};

// w(n) = a - b cos(2 pi n / L) + c cos(4 pi n / L) moves half of b one bin away and half of c two
// bins away; all relative to a, to which the sine's own bin is scaled.
TEST(Spectrum, Reads_one_on_a_bin_through_every_window_and_leaks_as_that_window_does) {
    const WindowCase cases[] = {
        {Window::Rectangle, 0.0, 0.0},
        {Window::Hamming, 0.23 / 0.54, 0.0},
        {Window::Hann, 0.25 / 0.5, 0.0},
        {Window::Blackman, 0.25 / 0.42, 0.04 / 0.42},
    };
    const WholeTrack sine = SineOnBin(16);
    for (const WindowCase& expected : cases) {
        SCOPED_TRACE(static_cast<int>(expected.window));
        std::vector<float> values(count, -1.0f);
        Spectrum().Measure(sine, 1000, left, values, expected.window);
        EXPECT_NEAR(values[16], 1.0, 2.0 * rounding);
        for (const int side : {-1, 1}) {
            EXPECT_NEAR(values[static_cast<std::size_t>(16 + side)], expected.next, 2.0 * rounding);
            EXPECT_NEAR(values[static_cast<std::size_t>(16 + 2 * side)], expected.second,
                        2.0 * rounding);
        }
    }
}

TEST(Spectrum, Can_change_its_window_from_call_to_call) {
    const WholeTrack sine = SineOnBin(16);
    Spectrum spectrum;
    std::vector<float> values(count);
    spectrum.Measure(sine, 1000, left, values, Window::Hann);
    spectrum.Measure(sine, 1000, left, values, Window::Rectangle);
    EXPECT_NEAR(values[17], 0.0, 2.0 * rounding);
    spectrum.Measure(sine, 1000, left, values, Window::Hann);
    EXPECT_NEAR(values[17], 0.5, 2.0 * rounding);
}

TEST(Spectrum, Offers_the_windows_0_to_4) {
    for (int number = 0; number <= 4; ++number)
        EXPECT_TRUE(Spectrum::OffersWindow(number)) << number;
    EXPECT_FALSE(Spectrum::OffersWindow(-1));
    EXPECT_FALSE(Spectrum::OffersWindow(5));
}

TEST(Spectrum, Offers_powers_of_two_from_2_to_8192) {
    for (const int size : {2, 4, 64, 4096, 8192})
        EXPECT_TRUE(Spectrum::Offers(size)) << size;
    for (const int size : {-64, -1, 0, 1, 3, 63, 65, 8191, 16384, 1 << 30})
        EXPECT_FALSE(Spectrum::Offers(size)) << size;
}

} // namespace
