#include "art/music/powerspectrum.h"

#include "art/music/audio.h"

#include <kissfft.hh>

#include <cmath>
#include <complex>

namespace Music {

std::vector<double> PowerSpectrum(const float* samples, int size) {
    std::vector<std::complex<double>> values(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i) {
        const double window = 0.5 - 0.5 * std::cos(2.0 * pi * i / size);
        values[static_cast<std::size_t>(i)] = samples[i] * window;
    }
    std::vector<std::complex<double>> bins(values.size());
    kissfft<double>(values.size(), false).transform(values.data(), bins.data());
    // The Hann window sums to size/2; a sine of amplitude 1 puts half of that into its bin.
    const double scale = 4.0 / size;
    std::vector<double> power(static_cast<std::size_t>(size) / 2 + 1);
    for (std::size_t k = 0; k < power.size(); ++k)
        power[k] = std::norm(bins[k] * scale);
    return power;
}

} // namespace Music
