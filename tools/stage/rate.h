#pragma once

#include <cstdint>
#include <string>

namespace Stage {

/// How many frames make a second: an exact fraction, so that no frame's time drifts.
struct Rate {
    std::int64_t frames = 60;
    std::int64_t seconds = 1;

    /// Whether it is 1 to 1000 frames a second, in numbers whose products stay within 64 bits; the
    /// others are only for such a rate.
    bool Usable() const;

    /// Demo time of frame `number`, in microseconds, rounded to the nearest.
    std::int64_t Microseconds(int number) const;

    /// Demo time of frame `number`, in seconds: what every clock shows while it is drawn.
    double Seconds(int number) const;

    /// The number of the frame that is on the screen at `seconds` of demo time (>= 0).
    int FrameAt(double time) const;

    /// The number of the first frame at or after `seconds` of demo time (>= 0).
    int FrameFrom(double time) const;
};

/// "60", "23.976" or "60000/1001"; throws std::runtime_error for anything else, and outside of
/// 1 to 1000 frames a second.
Rate ParseRate(const std::string& text);

} // namespace Stage
