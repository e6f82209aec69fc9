#pragma once

#include "art/music/audio.h"
#include "art/music/powerspectrum.h"

#include <algorithm>
#include <cmath>
#include <vector>

/// Signals and measurements that the tests of the music share.
namespace Signal {

constexpr double rate = Music::sampleRate;

inline std::vector<float> Sine(double frequency, double amplitude, double seconds,
                               double phase = 0.0) {
    std::vector<float> samples(Music::FrameAt(seconds));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(
            amplitude *
            std::sin(2.0 * Music::pi * (phase + frequency * static_cast<double>(i) / rate)));
    }
    return samples;
}

inline Music::Stereo Both(const std::vector<float>& samples) {
    Music::Stereo signal;
    signal.left = samples;
    signal.right = samples;
    return signal;
}

inline double Rms(const std::vector<float>& samples, std::size_t from, std::size_t to) {
    double sum = 0;
    for (std::size_t i = from; i < to; ++i) {
        sum += static_cast<double>(samples[i]) * samples[i];
    }
    return std::sqrt(sum / static_cast<double>(to - from));
}

inline double Mean(const std::vector<float>& samples) {
    double sum = 0;
    for (float sample : samples) {
        sum += sample;
    }
    return sum / static_cast<double>(samples.size());
}

inline float Peak(const std::vector<float>& samples) {
    float peak = 0;
    for (float sample : samples) {
        peak = std::max(peak, std::fabs(sample));
    }
    return peak;
}

inline double Db(double factor) {
    return 20.0 * std::log10(std::max(factor, 1e-12));
}

/// Pitch in Hz from the first to the last upward zero crossing, each placed between samples.
inline double Pitch(const std::vector<float>& samples) {
    double first = -1;
    double last = -1;
    int periods = -1;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] < 0 && samples[i] >= 0) {
            last = static_cast<double>(i) - samples[i] / (samples[i] - samples[i - 1]);
            first = first < 0 ? last : first;
            ++periods;
        }
    }
    return periods * rate / (last - first);
}

inline double Cents(double frequency, double reference) {
    return 1200.0 * std::log2(frequency / reference);
}

/// Whether any sample is a denormal number, infinite or not a number.
inline bool HasOddNumbers(const std::vector<float>& samples) {
    return std::any_of(samples.begin(), samples.end(), [](float sample) {
        return std::fpclassify(sample) != FP_NORMAL && std::fpclassify(sample) != FP_ZERO;
    });
}

} // namespace Signal
