#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Music {

/// Every signal of the music is 32-bit float at this rate, in samples a second.
constexpr int sampleRate = 44100;
constexpr double pi = 3.14159265358979323846;

/// Two channels of equal length; full scale is -1..1.
struct Stereo {
    std::vector<float> left;
    std::vector<float> right;

    Stereo() = default;
    explicit Stereo(std::size_t frames) : left(frames, 0.0F), right(frames, 0.0F) {}

    std::size_t Frames() const { return left.size(); }
    /// Silence of the same length.
    void Clear();
    /// Adds `other` (same length) times `gain`.
    void Add(const Stereo& other, float gain);
    /// Multiplies every sample by `gain`.
    void Scale(float gain);
};

/// Amplitude factor of a level in decibels, and back (silence gives -200 dB).
inline float FromDb(float db) {
    return std::pow(10.0F, db / 20.0F);
}
inline float ToDb(float factor) {
    return 20.0F * std::log10(std::fmax(std::fabs(factor), 1e-10F));
}

/// Frequency in Hz of a MIDI note number (69 is the A of 440 Hz); fractions are allowed.
inline double NoteFrequency(double midi) {
    return 440.0 * std::exp2((midi - 69.0) / 12.0);
}

/// Sample index that lies nearest to a time in seconds.
inline std::size_t FrameAt(double seconds) {
    return static_cast<std::size_t>(std::llround(std::fmax(seconds, 0.0) * sampleRate));
}

/// Zero in place of values so small that they would become denormal numbers in a feedback
/// loop, which cost a hundred times the time of a normal one on common processors.
inline float Flushed(float value) {
    return std::fabs(value) < 1e-15F ? 0.0F : value;
}

/// A small deterministic random generator (xorshift): the same seed gives the same piece.
class Random {
public:
    explicit Random(std::uint32_t seed) : state(seed * 2654435761U + 88172645U) {
        if (state == 0)
            state = 88172645U; // all zero bits would stay zero for ever
    }

    /// Evenly distributed in -1..1.
    float Bipolar() { return static_cast<float>(Next() >> 8) * (2.0F / 16777216.0F) - 1.0F; }
    /// Evenly distributed in 0..1.
    float Unipolar() { return static_cast<float>(Next() >> 8) * (1.0F / 16777216.0F); }

private:
    std::uint32_t Next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }

    std::uint32_t state;
};

} // namespace Music
