#pragma once

#include "sound/output.h"
#include "sound/timesource.h"

#include <atomic>

namespace Vell::Sound {

/// A clock that stands still until it is moved: for programs that draw frames at their own speed,
/// such as into a film, and want the spectrum of each frame's moment. Any thread may use it.
class HandTime {
public:
    /// Moves the clock to `seconds` after its beginning, forward as a rule. Rounded to nanoseconds.
    void MoveTo(double seconds);

    Time Now() const { return Time(nanoseconds.load()); }

private:
    std::atomic<Time::rep> nanoseconds = 0;
};

/// From now on FMOD_System_PlaySound takes its outputs from `maker`; an empty one brings back the
/// sound device. What plays already goes on as it is. Not to be called by two threads at once.
void SetOutputMaker(OutputMaker maker);

/// From now on what FMOD_System_PlaySound plays is heard by nobody and gets on with `time` alone;
/// its first frame is heard at the moment that `time` shows in that call.
void PlayByHand(std::shared_ptr<const HandTime> time);

/// Makes an output for `track` as was chosen last: unless otherwise said, on ALSA's default device.
std::unique_ptr<Output> MakeOutput(std::shared_ptr<const Track> track);

} // namespace Vell::Sound
