#include "art/music/filter.h"

#include <algorithm>

namespace Music {

namespace {

/// The shared part of the textbook second-order sections for an angle and a Q.
struct Section {
    Section(double frequency, double q)
        : w(2.0 * pi * frequency / sampleRate),
          cosine(std::cos(w)),
          alpha(std::sin(w) / (2.0 * q)) {}

    double w;
    double cosine;
    double alpha;
};

Biquad Normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    return Biquad::Raw(b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0);
}

} // namespace

double ResonanceToQ(double resonance) {
    return 0.5 * std::pow(40.0, std::clamp(resonance, 0.0, 1.0));
}

void StateVariableFilter::Set(double cutoff, double resonance) {
    const double limited = std::clamp(cutoff, 10.0, 20000.0);
    g = static_cast<float>(std::tan(pi * limited / sampleRate));
    k = static_cast<float>(1.0 / ResonanceToQ(resonance));
    scale = 1.0F / (1.0F + g * (g + k));
}

void StateVariableFilter::Process(float input) {
    high = (input - (g + k) * state1 - state2) * scale;
    band = g * high + state1;
    low = g * band + state2;
    state1 = Flushed(g * high + band);
    state2 = Flushed(g * band + low);
}

Biquad Biquad::Raw(double b0, double b1, double b2, double a1, double a2) {
    Biquad filter;
    filter.b0 = b0;
    filter.b1 = b1;
    filter.b2 = b2;
    filter.a1 = a1;
    filter.a2 = a2;
    return filter;
}

Biquad Biquad::LowPass(double frequency, double q) {
    const Section s(frequency, q);
    const double b = (1.0 - s.cosine) / 2.0;
    return Normalised(b, 2.0 * b, b, 1.0 + s.alpha, -2.0 * s.cosine, 1.0 - s.alpha);
}

Biquad Biquad::HighPass(double frequency, double q) {
    const Section s(frequency, q);
    const double b = (1.0 + s.cosine) / 2.0;
    return Normalised(b, -2.0 * b, b, 1.0 + s.alpha, -2.0 * s.cosine, 1.0 - s.alpha);
}

Biquad Biquad::LowShelf(double frequency, double gainDb) {
    const Section s(frequency, std::sqrt(0.5));
    const double a = std::pow(10.0, gainDb / 40.0);
    const double root = 2.0 * std::sqrt(a) * s.alpha;
    return Normalised(
        a * ((a + 1) - (a - 1) * s.cosine + root), 2 * a * ((a - 1) - (a + 1) * s.cosine),
        a * ((a + 1) - (a - 1) * s.cosine - root), (a + 1) + (a - 1) * s.cosine + root,
        -2 * ((a - 1) + (a + 1) * s.cosine), (a + 1) + (a - 1) * s.cosine - root);
}

Biquad Biquad::HighShelf(double frequency, double gainDb) {
    const Section s(frequency, std::sqrt(0.5));
    const double a = std::pow(10.0, gainDb / 40.0);
    const double root = 2.0 * std::sqrt(a) * s.alpha;
    return Normalised(
        a * ((a + 1) + (a - 1) * s.cosine + root), -2 * a * ((a - 1) + (a + 1) * s.cosine),
        a * ((a + 1) + (a - 1) * s.cosine - root), (a + 1) - (a - 1) * s.cosine + root,
        2 * ((a - 1) - (a + 1) * s.cosine), (a + 1) - (a - 1) * s.cosine - root);
}

Biquad Biquad::Peak(double frequency, double q, double gainDb) {
    const Section s(frequency, q);
    const double a = std::pow(10.0, gainDb / 40.0);
    return Normalised(1 + s.alpha * a, -2 * s.cosine, 1 - s.alpha * a, 1 + s.alpha / a,
                      -2 * s.cosine, 1 - s.alpha / a);
}

void Biquad::Apply(std::vector<float>& samples) const {
    Biquad filter = *this;
    for (float& sample : samples)
        sample = Flushed(static_cast<float>(filter.Process(sample)));
}

void Biquad::ApplyZeroPhase(std::vector<float>& samples) const {
    Apply(samples);
    std::reverse(samples.begin(), samples.end());
    Apply(samples);
    std::reverse(samples.begin(), samples.end());
}

} // namespace Music
