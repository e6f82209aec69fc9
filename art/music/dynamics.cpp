#include "art/music/dynamics.h"

#include <algorithm>
#include <array>
#include <deque>

namespace Music {

namespace {

constexpr int phaseCount = 4;
constexpr int tapsPerPhase = 12; // a phase

/// Polyphase windowed-sinc interpolator: row p gives the value p/4 of a sample later.
std::array<std::array<float, tapsPerPhase>, phaseCount> InterpolatorTaps() {
    std::array<std::array<float, tapsPerPhase>, phaseCount> taps{};
    for (int phase = 0; phase < phaseCount; ++phase) {
        for (int tap = 0; tap < tapsPerPhase; ++tap) {
            const int whole = tap - (tapsPerPhase / 2 - 1);
            const double x = whole - phase / static_cast<double>(phaseCount);
            const double sinc = x == 0.0 ? 1.0 : std::sin(pi * x) / (pi * x);
            const double window = 0.5 + 0.5 * std::cos(pi * x / (tapsPerPhase / 2.0));
            taps[static_cast<std::size_t>(phase)][static_cast<std::size_t>(tap)] =
                static_cast<float>(sinc * window);
        }
    }
    return taps;
}

float KneeGain(float over, float ratio, float knee) {
    const float slope = 1.0F / ratio - 1.0F;
    if (over <= -knee / 2)
        return 0.0F;
    if (over < knee / 2) {
        const float inside = over + knee / 2;
        return slope * inside * inside / (2.0F * knee);
    }
    return slope * over;
}

} // namespace

std::vector<float> Compressor::GainDb(const Stereo& key) const {
    const auto toAttack = static_cast<float>(1.0 - std::exp(-1.0 / (attack * sampleRate)));
    const auto toRelease = static_cast<float>(1.0 - std::exp(-1.0 / (release * sampleRate)));
    std::vector<float> gains(key.Frames());
    float gain = 0.0F;
    for (std::size_t i = 0; i < gains.size(); ++i) {
        const float peak = std::max(std::fabs(key.left[i]), std::fabs(key.right[i]));
        const float wanted = KneeGain(ToDb(peak) - threshold, ratio, knee);
        gain += (wanted - gain) * (wanted < gain ? toAttack : toRelease);
        gain = Flushed(gain);
        gains[i] = gain;
    }
    return gains;
}

void ApplyGainDb(Stereo& signal, const std::vector<float>& gainDb, float amount) {
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        const float gain = FromDb(gainDb[i] * amount);
        signal.left[i] *= gain;
        signal.right[i] *= gain;
    }
}

std::vector<float> TruePeaks(const std::vector<float>& samples) {
    static const auto taps = InterpolatorTaps();
    const auto count = static_cast<std::ptrdiff_t>(samples.size());
    std::vector<float> peaks(samples.size());
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        float peak = 0.0F;
        const std::ptrdiff_t first = i - (tapsPerPhase / 2 - 1);
        const bool inside = first >= 0 && first + tapsPerPhase <= count;
        for (const auto& phase : taps) {
            float value = 0.0F;
            for (std::ptrdiff_t tap = 0; tap < tapsPerPhase; ++tap) {
                const std::ptrdiff_t at = first + tap;
                if (inside || (at >= 0 && at < count)) {
                    value += samples[static_cast<std::size_t>(at)] *
                             phase[static_cast<std::size_t>(tap)];
                }
            }
            peak = std::max(peak, std::fabs(value));
        }
        peaks[static_cast<std::size_t>(i)] = peak;
    }
    return peaks;
}

std::vector<float> SlidingMinimum(const std::vector<float>& values, std::size_t reach) {
    std::vector<float> result(values.size());
    std::deque<std::size_t> rising; // indices of candidates, values growing
    std::size_t added = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (; added < values.size() && added <= i + reach; ++added) {
            while (!rising.empty() && values[rising.back()] >= values[added])
                rising.pop_back();
            rising.push_back(added);
        }
        while (rising.front() + reach < i)
            rising.pop_front();
        result[i] = values[rising.front()];
    }
    return result;
}

std::vector<float> HannSmoothed(const std::vector<float>& values, std::size_t reach) {
    // A raised cosine is a constant plus a cosine: both parts are running sums, the second one
    // of the values turned by the cosine's angle. Doubles keep the running sums exact enough.
    const double angle = pi / static_cast<double>(reach + 1);
    const auto n = static_cast<std::ptrdiff_t>(values.size());
    const auto r = static_cast<std::ptrdiff_t>(reach);
    std::vector<float> result(values.size());
    const auto at = [&](std::ptrdiff_t i) {
        return static_cast<double>(
            values[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i, 0, n - 1))]);
    };
    double plain = 0;
    double cosine = 0;
    double sine = 0;
    for (std::ptrdiff_t i = -r; i < r; ++i) {
        plain += at(i);
        cosine += at(i) * std::cos(angle * static_cast<double>(i));
        sine += at(i) * std::sin(angle * static_cast<double>(i));
    }
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double enter = angle * static_cast<double>(i + r);
        plain += at(i + r);
        cosine += at(i + r) * std::cos(enter);
        sine += at(i + r) * std::sin(enter);
        const double here = angle * static_cast<double>(i);
        const double turned = cosine * std::cos(here) + sine * std::sin(here);
        result[static_cast<std::size_t>(i)] =
            static_cast<float>((plain + turned) / (2.0 * static_cast<double>(r + 1)));
        const double leave = angle * static_cast<double>(i - r);
        plain -= at(i - r);
        cosine -= at(i - r) * std::cos(leave);
        sine -= at(i - r) * std::sin(leave);
    }
    return result;
}

float Limiter::Apply(Stereo& signal) const {
    const float top = FromDb(ceiling);
    const std::vector<float> leftPeaks = TruePeaks(signal.left);
    const std::vector<float> rightPeaks = TruePeaks(signal.right);
    std::vector<float> gain(signal.Frames());
    for (std::size_t i = 0; i < gain.size(); ++i)
        gain[i] = std::min(1.0F, top / std::max({leftPeaks[i], rightPeaks[i], 1e-9F}));
    // The minimum reaches as far as the smoothing, so the smoothed gain is never above the
    // wanted one.
    const std::size_t reach = FrameAt(lookAhead);
    gain = SlidingMinimum(gain, reach);
    const auto recover = static_cast<float>(1.0 - std::exp(-1.0 / (release * sampleRate)));
    float held = 1.0F;
    for (float& value : gain) {
        held = value < held ? value : held + (value - held) * recover;
        value = held;
    }
    gain = HannSmoothed(gain, reach);
    float deepest = 1.0F;
    for (std::size_t i = 0; i < gain.size(); ++i) {
        signal.left[i] *= gain[i];
        signal.right[i] *= gain[i];
        deepest = std::min(deepest, gain[i]);
    }
    return -ToDb(deepest);
}

} // namespace Music
