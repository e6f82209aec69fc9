#pragma once

#include "art/music/audio.h"

namespace Music {

/// Times in seconds, sustain as a factor 0..1.
struct EnvelopeTimes {
    double attack = 0.005; ///< straight rise from 0 to 1
    double decay = 0.2;    ///< until 60 dB of the way from 1 down to the sustain level is done
    double sustain = 0.7;  ///< level held while the note lasts
    double release = 0.2;  ///< until the level has fallen by 60 dB after the note's end
};

/// Attack, decay, sustain, release: straight attack, exponential falls.
class Envelope {
public:
    /// Starts at the note's beginning; the note lasts `length` seconds.
    Envelope(const EnvelopeTimes& times, double length)
        : sustain(static_cast<float>(times.sustain)),
          rise(static_cast<float>(1.0 / std::fmax(times.attack * sampleRate, 1.0))),
          fall(Factor(times.decay)),
          release(Factor(times.release)),
          held(FrameAt(length)) {}

    /// The level for the next sample.
    float Next() {
        if (position++ >= held) {
            level *= release;
        } else if (rising) {
            level += rise;
            if (level >= 1.0F) {
                level = 1.0F;
                rising = false;
            }
        } else {
            level = sustain + (level - sustain) * fall;
        }
        return level;
    }

    /// True when the released note has fallen below -72 dB and can be dropped.
    bool Done() const { return position > held && level < 0.00025F; }
    /// True when nothing is to come even without a release: a decayed note without sustain.
    bool Silent() const { return !rising && level < 0.00025F; }

private:
    /// Factor a sample that falls by 60 dB in `seconds`.
    static float Factor(double seconds) {
        return static_cast<float>(std::pow(0.001, 1.0 / std::fmax(seconds * sampleRate, 1.0)));
    }

    float sustain;
    float rise;
    float fall;
    float release;
    float level = 0.0F;
    bool rising = true;
    std::size_t position = 0;
    std::size_t held;
};

} // namespace Music
