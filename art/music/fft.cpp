#include "art/music/fft.h"

#include "art/music/audio.h"

#include <utility>

namespace Music {

namespace {

using Complex = std::complex<double>;

void BitReverse(std::vector<Complex>& values) {
    const size_t n = values.size();
    for (size_t i = 1, j = 0; i < n; ++i) {
        size_t bit = n >> 1;
        for (; (j & bit) != 0; bit >>= 1) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(values[i], values[j]);
        }
    }
}

void Transform(std::vector<Complex>& values, double sign) {
    BitReverse(values);
    const size_t n = values.size();
    for (size_t length = 2; length <= n; length *= 2) {
        const double angle = sign * 2.0 * kPi / static_cast<double>(length);
        std::vector<Complex> turn(length / 2);
        for (size_t k = 0; k < turn.size(); ++k) {
            turn[k] = std::polar(1.0, angle * static_cast<double>(k));
        }
        for (size_t start = 0; start < n; start += length) {
            for (size_t k = 0; k < length / 2; ++k) {
                const Complex even = values[start + k];
                const Complex odd = values[start + k + length / 2] * turn[k];
                values[start + k] = even + odd;
                values[start + k + length / 2] = even - odd;
            }
        }
    }
}

} // namespace

void Forward(std::vector<Complex>& values) {
    Transform(values, -1.0);
}

void Inverse(std::vector<Complex>& values) {
    Transform(values, 1.0);
    for (Complex& value : values) {
        value /= static_cast<double>(values.size());
    }
}

std::vector<double> PowerSpectrum(const float* samples, int size) {
    std::vector<Complex> values(static_cast<size_t>(size));
    for (int i = 0; i < size; ++i) {
        const double window = 0.5 - 0.5 * std::cos(2.0 * kPi * i / size);
        values[static_cast<size_t>(i)] = samples[i] * window;
    }
    Forward(values);
    // The Hann window sums to size/2; a sine of amplitude 1 puts half of that into its bin.
    const double scale = 4.0 / size;
    std::vector<double> power(static_cast<size_t>(size) / 2 + 1);
    for (size_t k = 0; k < power.size(); ++k) {
        power[k] = std::norm(values[k] * scale);
    }
    return power;
}

} // namespace Music
