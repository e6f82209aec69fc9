#include "art/music/loudness.h"

#include "art/music/dynamics.h"
#include "art/music/filter.h"

#include <algorithm>

namespace Music {

namespace {

constexpr double kAbsoluteGate = -70.0; // LUFS
constexpr size_t kHop = kSampleRate / 10;

/// The two filters that weigh frequencies as the ear does: a shelf for the head, then a high
/// pass. Analogue parameters as published for the standard's filters at any sample rate.
Biquad HeadShelf() {
    const double k = std::tan(kPi * 1681.974450955533 / kSampleRate);
    const double q = 0.7071752369554196;
    const double vh = std::pow(10.0, 3.999843853973347 / 20.0);
    const double vb = std::pow(vh, 0.4996667741545416);
    const double a0 = 1.0 + k / q + k * k;
    return Biquad::Raw((vh + vb * k / q + k * k) / a0, 2.0 * (k * k - vh) / a0,
                       (vh - vb * k / q + k * k) / a0, 2.0 * (k * k - 1.0) / a0,
                       (1.0 - k / q + k * k) / a0);
}

Biquad LowCut() {
    const double k = std::tan(kPi * 38.13547087602444 / kSampleRate);
    const double q = 0.5003270373238773;
    const double a0 = 1.0 + k / q + k * k;
    return Biquad::Raw(1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0);
}

/// Sum over both channels of the weighted squares, in steps of a tenth of a second.
std::vector<double> TenthPowers(const Stereo& signal) {
    std::vector<double> powers(signal.Frames() / kHop, 0.0);
    for (const std::vector<float>* channel : {&signal.left, &signal.right}) {
        Biquad shelf = HeadShelf();
        Biquad cut = LowCut();
        for (size_t i = 0; i < powers.size() * kHop; ++i) {
            const double weighted = cut.Process(shelf.Process((*channel)[i]));
            powers[i / kHop] += weighted * weighted / kHop;
        }
    }
    return powers;
}

double Lufs(double power) {
    return -0.691 + 10.0 * std::log10(std::max(power, 1e-12));
}

/// Means over `tenths` steps, one for each step.
std::vector<double> Blocks(const std::vector<double>& powers, size_t tenths) {
    std::vector<double> blocks;
    for (size_t end = tenths; end <= powers.size(); ++end) {
        double sum = 0;
        for (size_t i = end - tenths; i < end; ++i) {
            sum += powers[i];
        }
        blocks.push_back(sum / static_cast<double>(tenths));
    }
    return blocks;
}

double MeanAbove(const std::vector<double>& blocks, double gate) {
    double sum = 0;
    size_t count = 0;
    for (double power : blocks) {
        if (Lufs(power) > gate) {
            sum += power;
            ++count;
        }
    }
    return count == 0 ? 0.0 : sum / static_cast<double>(count);
}

double Integrated(const std::vector<double>& powers) {
    const std::vector<double> blocks = Blocks(powers, 4);
    const double relative = Lufs(MeanAbove(blocks, kAbsoluteGate)) - 10.0;
    return Lufs(MeanAbove(blocks, std::max(relative, kAbsoluteGate)));
}

double Range(const std::vector<double>& powers) {
    const std::vector<double> blocks = Blocks(powers, 30);
    const double gate = std::max(Lufs(MeanAbove(blocks, kAbsoluteGate)) - 20.0, kAbsoluteGate);
    std::vector<double> levels;
    for (double power : blocks) {
        if (Lufs(power) > gate) {
            levels.push_back(Lufs(power));
        }
    }
    if (levels.size() < 2) {
        return 0.0;
    }
    std::sort(levels.begin(), levels.end());
    const auto rank = [&](double part) {
        return levels[static_cast<size_t>(
            std::lround(part * static_cast<double>(levels.size() - 1)))];
    };
    return rank(0.95) - rank(0.10);
}

} // namespace

Loudness MeasureLoudness(const Stereo& signal) {
    Loudness result;
    const std::vector<double> powers = TenthPowers(signal);
    result.integrated = Integrated(powers);
    result.range = Range(powers);
    for (const std::vector<float>* channel : {&signal.left, &signal.right}) {
        const std::vector<float> peaks = TruePeaks(*channel);
        if (!peaks.empty()) {
            const float peak = *std::max_element(peaks.begin(), peaks.end());
            result.truePeak = std::max<double>(result.truePeak, ToDb(peak));
        }
    }
    return result;
}

} // namespace Music
