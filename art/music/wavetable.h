#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Music {

/// The single-cycle waves an oscillator can play.
enum class Wave {
    Sine,
    Saw,      ///< all harmonics, 1/n
    Square,   ///< odd harmonics, 1/n
    Triangle, ///< odd harmonics, 1/n^2
    Hollow,   ///< few odd harmonics, the third weak: a stopped pipe
    Organ,    ///< octaves and fifths: 1, 2, 3, 4, 6, 8
    Reed,     ///< harmonics around the fifth stand out: a nasal, vocal colour
};

/// Finds a wave by its lower-case name ("saw"). Returns false when there is none.
bool FindWave(const std::string& name, Wave& wave);

/// The wave of a number as a score's settings hold it: the nearest there is.
Wave WaveOf(double number);

/// One wave in versions with ever fewer harmonics, so that at any pitch a version exists whose
/// highest harmonic stays below half the sample rate: nothing can alias.
class WaveTable {
public:
    /// The shared table of `wave`, computed on first use.
    static const WaveTable& Of(Wave wave);

    /// The richest version with no harmonic above 20.5 kHz at `frequency` Hz.
    const float* Version(double frequency) const;

    /// The value at `phase` (0 <= phase < 1) of a version, by cubic interpolation.
    static float Read(const float* version, double phase);

private:
    explicit WaveTable(Wave wave);

    std::vector<int> harmonics;               // of each version, rising
    std::vector<std::vector<float>> versions; // size samples and 3 more for interpolation
};

/// Plays a WaveTable. The pitch may change at any sample.
class Oscillator {
public:
    Oscillator() = default;
    /// `phase` 0..1 is where in the cycle the oscillator starts.
    Oscillator(Wave wave, double phase);

    /// Sets the pitch in Hz, kept within 0.1 Hz and 0.49 of the sample rate.
    void SetFrequency(double frequency);
    /// The next sample, at most about -1..1.
    float Next();
    /// The next sample of a pulse of `width` (0..1) made from a saw and its shifted inverse.
    float NextPulse(double width);

private:
    const WaveTable* table = nullptr;
    const float* version = nullptr;
    double phase = 0;
    double step = 0;
};

} // namespace Music
