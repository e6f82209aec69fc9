#pragma once

#include "art/music/audio.h"

namespace Music {

/// A state-variable filter of the second order (12 dB an octave), solved without delay in its
/// loop, so that the cut-off may be modulated at any speed and stays in tune up to 20 kHz.
class StateVariableFilter {
public:
    /// `cutoff` in Hz (kept within 10..20000), `resonance` 0 (Q = 0.5) .. 1 (Q = 20).
    /// 0.094 (Q = 0.7071) is the flat Butterworth response.
    void Set(double cutoff, double resonance);

    /// Feeds one sample; the outputs below belong to it.
    void Process(float input);
    float Low() const { return low; }
    float Band() const { return band; }
    float High() const { return high; }

private:
    float g = 0.1F; // tan of half the cut-off's angle
    float k = 2.0F; // 1/Q
    float scale = 1.0F;
    float state1 = 0.0F;
    float state2 = 0.0F;
    float low = 0.0F;
    float band = 0.0F;
    float high = 0.0F;
};

/// The Q that `resonance` 0..1 of a StateVariableFilter stands for.
double ResonanceToQ(double resonance);

/// A filter of the second order with fixed coefficients, in double precision.
class Biquad {
public:
    /// Pass-bands flat, -3 dB at `frequency` for q = 0.7071.
    static Biquad LowPass(double frequency, double q);
    static Biquad HighPass(double frequency, double q);
    /// `gainDb` above (high) or below (low) `frequency`, half of it at `frequency`.
    static Biquad HighShelf(double frequency, double gainDb);
    static Biquad LowShelf(double frequency, double gainDb);
    /// `gainDb` around `frequency`, 0 dB far from it.
    static Biquad Peak(double frequency, double q, double gainDb);
    /// From coefficients with a0 = 1.
    static Biquad Raw(double b0, double b1, double b2, double a1, double a2);

    double Process(double input) {
        const double output = b0 * input + z1;
        z1 = b1 * input - a1 * output + z2;
        z2 = b2 * input - a2 * output;
        if (std::fabs(z1) + std::fabs(z2) < 1e-30)
            z1 = z2 = 0; // long before the state turns into denormal numbers
        return output;
    }

    /// Runs the whole of `samples` through a fresh copy of the filter, in place.
    void Apply(std::vector<float>& samples) const;
    /// The same forwards and then backwards: twice the slope and no phase shift.
    void ApplyZeroPhase(std::vector<float>& samples) const;

private:
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    double z1 = 0, z2 = 0;
};

} // namespace Music
