#pragma once

#include "art/music/audio.h"
#include "art/music/filter.h"

#include <array>
#include <vector>

namespace Music {

/// A ring of samples that can be read at any fractional distance in the past.
class DelayLine {
public:
    /// Holds `longest` samples.
    explicit DelayLine(std::size_t longest) : ring(longest + 4, 0.0F) {}

    void Write(float value) {
        ring[head] = Flushed(value);
        head = head + 1 == ring.size() ? 0 : head + 1;
    }

    /// The value written `distance` writes ago (1 is the newest), linear between samples.
    float Read(float distance) const;

private:
    std::vector<float> ring;
    std::size_t head = 0;
};

/// Thickens a signal with two slowly wandering copies a side. In place.
struct Chorus {
    double rate = 0.6;    ///< Hz of the wandering
    double depth = 0.002; ///< seconds it wanders to each side
    double delay = 0.012; ///< seconds of the mean delay
    float mix = 0.4F;     ///< of the copies against the direct sound

    void Apply(Stereo& signal) const;
};

/// Echoes that change sides: right after one `time`, left after two, and so on.
/// Returns the echoes alone.
struct PingPong {
    double time = 0.3;       ///< seconds between echoes
    float feedback = 0.45F;  ///< level of an echo against the one before, below 1
    double lowCut = 250.0;   ///< Hz: every echo is a little thinner
    double highCut = 4500.0; ///< Hz: and a little darker than the last

    Stereo Process(const Stereo& input) const;
};

/// A hall: a network of eight delays whose lengths share no common measure, mixed by a
/// Householder matrix (which keeps energy), each with its own damping, slowly modulated so that
/// no metallic resonance stands. Returns the reverberation alone.
struct Reverb {
    double time = 2.4;      ///< seconds until the middle range has fallen by 60 dB
    double damping = 5200;  ///< Hz above which it falls faster
    double preDelay = 0.02; ///< seconds before it begins
    double lowCut = 180.0;  ///< Hz below which nothing enters: the bass stays dry and central

    Stereo Process(const Stereo& input) const;
};

/// A soft, cubic bend: slope 1 at zero, flat at +-1.5. Of a tone it makes the third harmonic
/// only, so nothing below 7 kHz can alias. `drive` >= 1 is the gain before it.
float SoftClip(float value, float drive);

} // namespace Music
