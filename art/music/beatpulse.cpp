#include "art/music/beatpulse.h"

#include "art/music/dynamics.h"

#include <algorithm>
#include <array>

namespace Music {

namespace {

constexpr int window = 128;
constexpr double edge = 0.004;        // seconds of a gap's smooth beginning and end
constexpr double gapBefore = 0.034;   // seconds before a beat at which its gap begins
constexpr double gapEnd = 0.003;      // and ends
constexpr double sceneBefore = 0.010; // the same for a beat that opens a scene,
constexpr double sceneAfter = 0.017;  // whose gap reaches behind the beat
// A reading may fall below the threshold this long after and before the beat without harm.
constexpr double freeAfter = 0.054;
constexpr double freeBefore = 0.054;
constexpr double carrierReach = 0.012; // seconds over which the carrier is smoothed

constexpr int firReach = 200; // samples to each side
constexpr double firCutoff = 650.0;

/// A low pass without phase shift.
const std::vector<float>& LowPassTaps() {
    static const std::vector<float> taps = [] {
        std::vector<double> exact;
        double sum = 0;
        for (int i = -firReach; i <= firReach; ++i) {
            const double x = 2.0 * firCutoff * i / sampleRate;
            const double sinc = i == 0 ? 1.0 : std::sin(pi * x) / (pi * x);
            exact.push_back(sinc * (0.5 + 0.5 * std::cos(pi * i / (firReach + 1.0))));
            sum += exact.back();
        }
        std::vector<float> scaled;
        scaled.reserve(exact.size());
        for (double tap : exact)
            scaled.push_back(static_cast<float>(tap / sum));
        return scaled;
    }();
    return taps;
}

float LowAt(const std::vector<float>& samples, std::ptrdiff_t centre) {
    const auto count = static_cast<std::ptrdiff_t>(samples.size());
    float sum = 0;
    for (std::ptrdiff_t i = -firReach; i <= firReach; ++i) {
        const std::ptrdiff_t at = centre + i;
        if (at >= 0 && at < count) {
            sum += samples[static_cast<std::size_t>(at)] *
                   LowPassTaps()[static_cast<std::size_t>(i + firReach)];
        }
    }
    return sum;
}

/// Smooth step from 0 to 1 while x goes from 0 to 1.
float Ease(double x) {
    return static_cast<float>(0.5 - 0.5 * std::cos(pi * std::clamp(x, 0.0, 1.0)));
}

std::vector<float> BoxMean(const std::vector<float>& values, int length, int before) {
    std::vector<float> means(values.size());
    const auto count = static_cast<std::ptrdiff_t>(values.size());
    double sum = 0;
    for (std::ptrdiff_t i = -before; i < count; ++i) {
        const std::ptrdiff_t enter = i + before;
        const std::ptrdiff_t leave = enter - length;
        sum += enter < count ? values[static_cast<std::size_t>(enter)] : 0.0F;
        sum -= leave >= 0 ? values[static_cast<std::size_t>(leave)] : 0.0F;
        if (i >= 0)
            means[static_cast<std::size_t>(i)] = static_cast<float>(sum / length);
    }
    return means;
}

std::vector<float> SlidingMaximum(std::vector<float> values, std::size_t reach) {
    for (float& value : values)
        value = -value;
    values = SlidingMinimum(values, reach);
    for (float& value : values)
        value = -value;
    return values;
}

} // namespace

std::vector<float> LowestBandMean(const std::vector<float>& samples) {
    // Two boxes of half the window in a row make the triangle.
    return BoxMean(BoxMean(samples, window / 2, window / 4), window / 2, window / 4 - 1);
}

float LowestBand(const std::vector<float>& samples, std::size_t first) {
    double sum = 0;
    double weights = 0;
    for (int i = 0; i < window; ++i) {
        const double weight = 1.0 - std::fabs((i - (window - 1) / 2.0) / (window / 2.0));
        const std::size_t at = first + static_cast<std::size_t>(i);
        sum += weight * (at < samples.size() ? samples[at] : 0.0F);
        weights += weight;
    }
    return static_cast<float>(std::fabs(sum) / weights);
}

bool BeatPulse::OpensScene(int beat) const {
    return std::find(sceneBeats.begin(), sceneBeats.end(), beat) != sceneBeats.end();
}

BeatPulse::Gap BeatPulse::GapOf(int beat) const {
    const double time = TimeOf(beat);
    return OpensScene(beat) ? Gap{time - sceneBefore, time + sceneAfter}
                            : Gap{time - gapBefore, time - gapEnd};
}

void BeatPulse::OpenGap(std::vector<float>& channel, const Gap& gap) const {
    const std::vector<float> before = channel; // the low pass must not see its own work
    const auto begin = static_cast<std::ptrdiff_t>(FrameAt(gap.from - edge));
    const auto end = std::min(static_cast<std::ptrdiff_t>(FrameAt(gap.to + edge)),
                              static_cast<std::ptrdiff_t>(channel.size()));
    for (std::ptrdiff_t i = begin; i < end; ++i) {
        const double time = static_cast<double>(i) / sampleRate;
        const float closed =
            std::min(Ease((time - gap.from + edge) / edge), Ease((gap.to + edge - time) / edge));
        channel[static_cast<std::size_t>(i)] -= closed * LowAt(before, i);
    }
}

void BeatPulse::OpenGaps(Stereo& signal) const {
    for (int beat = 0; beat <= beats; ++beat) {
        OpenGap(signal.left, GapOf(beat));
        OpenGap(signal.right, GapOf(beat));
    }
}

void BeatPulse::OpenSceneGaps(Stereo& kick) const {
    for (int beat : sceneBeats) {
        OpenGap(kick.left, GapOf(beat));
        OpenGap(kick.right, GapOf(beat));
    }
}

void BeatPulse::FollowPolarity(Stereo& signal) const {
    for (int beat = 0; beat < beats; ++beat) {
        if (Polarity(beat) > 0)
            continue;
        // Turned from the middle of this beat's gap to the middle of the next one's.
        const Gap in = GapOf(beat);
        const Gap out = GapOf(beat + 1);
        const double halfIn = (in.to - in.from) / 2;
        const double halfOut = (out.to - out.from) / 2;
        const std::size_t end = std::min(FrameAt(out.to), signal.Frames());
        for (std::size_t i = FrameAt(in.from); i < end; ++i) {
            const double time = static_cast<double>(i) / sampleRate;
            const float turned = std::min(Ease((time - in.from) / (2 * halfIn)),
                                          Ease((out.to - time) / (2 * halfOut)));
            const float factor = 1.0F - 2.0F * turned;
            signal.left[i] *= factor;
            signal.right[i] *= factor;
        }
    }
}

void BeatPulse::AddCarrier(Stereo& signal) const {
    const std::vector<float> mean = LowestBandMean(signal.left);
    for (int beat = 0; beat < beats; ++beat) {
        const std::size_t begin = FrameAt(TimeOf(beat));
        const std::size_t end = std::min(FrameAt(TimeOf(beat + 1)), signal.Frames());
        if (begin >= end)
            return;
        const std::size_t first = FrameAt(TimeOf(beat) + freeAfter) - begin;
        const std::size_t last = FrameAt(TimeOf(beat + 1) - freeBefore) - begin;
        std::vector<float> needed(end - begin, 0.0F);
        for (std::size_t i = first; i < std::min(last, needed.size()); ++i)
            needed[i] = std::max(0.0F, margin - Polarity(beat) * mean[begin + i]);
        const std::size_t reach = FrameAt(carrierReach);
        const std::vector<float> carrier = HannSmoothed(SlidingMaximum(needed, reach), reach);
        for (std::size_t i = 0; i < carrier.size(); ++i) {
            signal.left[begin + i] += Polarity(beat) * carrier[i];
            signal.right[begin + i] += Polarity(beat) * carrier[i];
        }
    }
}

} // namespace Music
