#pragma once

#include "sound/timesource.h"

#include <cstdint>
#include <mutex>

namespace Vell::Sound {

/// Where in the track the listener is, worked out from what the device last said and the time
/// that has passed since.
///
/// The device is believed with one exception: it is never ahead of the clock that started with
/// frame 0. A device that takes everything at once (the null device, a file) claims to have played
/// what it was just given; by this rule it plays at the right speed all the same.
///
/// Every function may be called from any thread.
class Position {
public:
    /// `rate` in frames per second. Nothing is heard before Start().
    Position(int rate, TimeSource time);

    /// Frame 0 is given to the device now: the clock runs from here.
    void Start();

    /// The device has taken `written` frames so far, and holds the last `delay` of them back.
    void Report(std::int64_t written, std::int64_t delay);

    /// There is no device, or no longer: the position goes on from where it is at the track's
    /// rate, without an end.
    void RunFree();

    /// Frames by the clock alone since Start(); 0 before it.
    std::int64_t FramesByClock() const;

    /// Frames heard by now; 0 or less when the first is still on its way.
    std::int64_t FramesHeard() const;

private:
    std::int64_t FramesSince(Time moment) const;

    const int rate;
    const TimeSource time;
    mutable std::mutex mutex;   ///< guards all below
    bool started = false;       ///< whether the clock runs
    bool free = false;          ///< whether no device holds the position back
    Time start{};               ///< when the clock began to run
    Time reported{};            ///< when the device last spoke
    std::int64_t written = 0;   ///< frames taken by the device then
    std::int64_t heardThen = 0; ///< frames heard then
};

} // namespace Vell::Sound
