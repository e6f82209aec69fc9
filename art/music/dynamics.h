#pragma once

#include "art/music/audio.h"

#include <vector>

namespace Music {

/// A compressor whose gain is worked out from a key signal and applied by the caller, so that
/// the key may be another track (side-chain) or the signal itself (bus compression).
struct Compressor {
    float threshold = -20.0F; ///< dBFS of the key's smoothed peak
    float ratio = 4.0F;       ///< dB above the threshold that become one
    double attack = 0.002;    ///< seconds to 63 % of a gain reduction
    double release = 0.15;    ///< seconds to 63 % of the recovery
    float knee = 6.0F;        ///< dB over which the ratio sets in

    /// Gain in dB (<= 0) for every sample of `key`.
    std::vector<float> GainDb(const Stereo& key) const;
};

/// Multiplies `signal` by gains in dB, each times `amount`.
void ApplyGainDb(Stereo& signal, const std::vector<float>& gainDb, float amount);

/// The greatest absolute value of the waveform between the samples around each sample, by four
/// times oversampling with a 48-tap filter as in ITU-R BS.1770. For the limiter, which needs one
/// for each sample; what a meter reads of a whole piece is in loudness.h.
std::vector<float> TruePeaks(const std::vector<float>& samples);

/// Keeps the true peak of both channels under a ceiling, with a look-ahead so that the gain has
/// gone down smoothly before the peak arrives.
struct Limiter {
    float ceiling = -1.2F;    ///< dBTP
    double lookAhead = 0.003; ///< seconds, also the time of the gain's smooth fall
    double release = 0.09;    ///< seconds to 63 % of the recovery

    /// Limits in place; returns the greatest reduction in dB (>= 0).
    float Apply(Stereo& signal) const;
};

/// For each sample the smallest value within `reach` samples to either side.
std::vector<float> SlidingMinimum(const std::vector<float>& values, std::size_t reach);

/// Weighted mean over `reach` samples to either side with a raised-cosine weight.
std::vector<float> HannSmoothed(const std::vector<float>& values, std::size_t reach);

} // namespace Music
