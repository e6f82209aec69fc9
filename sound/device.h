#pragma once

#include <cstdint>

namespace Vell::Sound {

/// A sound device as the thread that feeds it sees it: 16 bit stereo frames go in, one period or
/// less at a time. One thread uses it; the destructor drops what is queued and closes it.
class Device {
public:
    enum class Outcome {
        Taken,     ///< some frames or all were accepted
        Full,      ///< there is no room; the device plays
        Recovered, ///< it had run dry or slept; what was queued is gone, and it can go on
        Lost       ///< the device is gone for good
    };
    struct Answer {
        Outcome outcome;
        std::int64_t taken; ///< frames accepted; 0 unless Taken
    };

    virtual ~Device() = default;

    /// Prepares playing at `rate` frames per second. False when there is no such device, it is busy
    /// or cannot do it. The rest may be called only after this was true.
    virtual bool Open(int rate) = 0;

    virtual std::int64_t PeriodFrames() const = 0; ///< frames that are handed over at once
    virtual std::int64_t BufferFrames() const = 0; ///< frames that the device can hold

    /// Hands over `count` interleaved frames. The device starts by itself when it is full.
    virtual Answer Write(const std::int16_t* frames, std::int64_t count) = 0;

    /// Returns when there is room for a period, after 100 ms at the latest.
    virtual void Wait() = 0;

    /// Frames that were taken and are not heard yet; 0 when the device cannot tell.
    virtual std::int64_t Delay() = 0;

    /// Plays out what is queued, without waiting: true as soon as that is done.
    virtual bool Drain() = 0;
};

} // namespace Vell::Sound
