#include "art/music/effects.h"

#include <algorithm>

namespace Music {

namespace {

constexpr std::size_t lineCount = 8;
// Prime numbers of samples between 29 and 81 ms, so that echoes never fall together.
constexpr std::array<int, lineCount> lineLengths{1289, 1447, 1663, 1873, 2129, 2503, 2999, 3571};
constexpr float wanderReach = 9.0F; // samples a line's length moves to each side

/// The eight delays of a Reverb while it runs.
class Network {
public:
    explicit Network(const Reverb& reverb) {
        for (std::size_t i = 0; i < lineCount; ++i) {
            lines.emplace_back(static_cast<std::size_t>(lineLengths[i]) + 16);
            gains[i] =
                static_cast<float>(std::pow(0.001, lineLengths[i] / (reverb.time * sampleRate)));
            phases[i] = static_cast<double>(i) / lineCount;
        }
        damp = static_cast<float>(1.0 - std::exp(-2.0 * pi * reverb.damping / sampleRate));
    }

    void Next(float inLeft, float inRight, float& outLeft, float& outRight) {
        std::array<float, lineCount> taps{};
        float sum = 0.0F;
        for (std::size_t i = 0; i < lineCount; ++i) {
            taps[i] = lines[i].Read(static_cast<float>(lineLengths[i]) + wander[i]);
            dark[i] = Flushed(dark[i] + damp * (taps[i] - dark[i]));
            sum += dark[i] * gains[i];
        }
        const float shared = sum * (2.0F / lineCount);
        for (std::size_t i = 0; i < lineCount; ++i) {
            const float input = i % 2 == 0 ? inLeft : inRight;
            lines[i].Write(input + dark[i] * gains[i] - shared);
        }
        outLeft = taps[0] - taps[2] + taps[4] - taps[6];
        outRight = taps[1] - taps[3] + taps[5] - taps[7];
    }

    /// Moves the lengths; called every few samples.
    void Wander(double seconds) {
        for (std::size_t i = 0; i < lineCount; ++i) {
            const double rate = 0.31 + 0.07 * static_cast<double>(i);
            wander[i] =
                wanderReach * static_cast<float>(std::sin(2.0 * pi * (rate * seconds + phases[i])));
        }
    }

private:
    std::vector<DelayLine> lines;
    std::array<float, lineCount> gains{};
    std::array<float, lineCount> dark{};
    std::array<float, lineCount> wander{};
    std::array<double, lineCount> phases{};
    float damp;
};

/// `samples` moved later by `frames`, cut to the same length.
std::vector<float> Later(const std::vector<float>& samples, std::size_t frames) {
    std::vector<float> moved(samples.size(), 0.0F);
    if (frames < samples.size()) {
        std::copy(samples.begin(), samples.end() - static_cast<std::ptrdiff_t>(frames),
                  moved.begin() + static_cast<std::ptrdiff_t>(frames));
    }
    return moved;
}

} // namespace

float DelayLine::Read(float distance) const {
    const auto whole = static_cast<std::size_t>(distance);
    const float part = distance - static_cast<float>(whole);
    const std::size_t size = ring.size();
    const std::size_t newer = (head + size - whole) % size;
    const std::size_t older = (newer + size - 1) % size;
    return ring[newer] + part * (ring[older] - ring[newer]);
}

void Chorus::Apply(Stereo& signal) const {
    const auto longest = FrameAt(delay + depth) + 8;
    DelayLine left(longest);
    DelayLine right(longest);
    const double step = 2.0 * pi * rate / sampleRate;
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        const double angle = step * static_cast<double>(i);
        const auto base = static_cast<float>(delay * sampleRate);
        const auto swing = static_cast<float>(depth * sampleRate);
        left.Write(signal.left[i]);
        right.Write(signal.right[i]);
        const float first = swing * static_cast<float>(std::sin(angle));
        const float second = swing * static_cast<float>(std::cos(angle));
        signal.left[i] += mix * (left.Read(base + first) - 0.5F * right.Read(base - second));
        signal.right[i] += mix * (right.Read(base - first) - 0.5F * left.Read(base + second));
    }
}

Stereo PingPong::Process(const Stereo& input) const {
    const std::size_t frames = FrameAt(time);
    DelayLine left(frames + 1);
    DelayLine right(frames + 1);
    Biquad leftLow = Biquad::HighPass(lowCut, 0.6);
    Biquad rightLow = leftLow;
    Biquad leftHigh = Biquad::LowPass(highCut, 0.6);
    Biquad rightHigh = leftHigh;
    Stereo echoes(input.Frames());
    const auto distance = static_cast<float>(frames);
    for (std::size_t i = 0; i < input.Frames(); ++i) {
        const float fromLeft = left.Read(distance);
        const float fromRight = right.Read(distance);
        echoes.left[i] = fromLeft;
        echoes.right[i] = fromRight;
        const double sent = 0.5 * (input.left[i] + input.right[i]) + feedback * fromLeft;
        right.Write(static_cast<float>(rightHigh.Process(rightLow.Process(sent))));
        const double back = feedback * fromRight;
        left.Write(static_cast<float>(leftHigh.Process(leftLow.Process(back))));
    }
    return echoes;
}

Stereo Reverb::Process(const Stereo& input) const {
    Stereo sent;
    sent.left = Later(input.left, FrameAt(preDelay));
    sent.right = Later(input.right, FrameAt(preDelay));
    const Biquad thin = Biquad::HighPass(lowCut, 0.7);
    thin.Apply(sent.left);
    thin.Apply(sent.right);
    Network network(*this);
    Stereo hall(input.Frames());
    constexpr std::size_t controlInterval = 16; // samples between moves of the delay lengths
    for (std::size_t i = 0; i < input.Frames(); ++i) {
        if (i % controlInterval == 0)
            network.Wander(static_cast<double>(i) / sampleRate);
        network.Next(sent.left[i], sent.right[i], hall.left[i], hall.right[i]);
    }
    return hall;
}

float SoftClip(float value, float drive) {
    const float x = std::clamp(value * drive, -1.5F, 1.5F);
    return x - x * x * x * (4.0F / 27.0F);
}

} // namespace Music
