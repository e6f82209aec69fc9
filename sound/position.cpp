#include "sound/position.h"

#include <algorithm>
#include <utility>

namespace Vell::Sound {

Position::Position(int framesPerSecond, TimeSource source)
    : rate(framesPerSecond), time(std::move(source)) {}

void Position::Start() {
    const std::lock_guard lock(mutex);
    started = true;
    start = time();
    reported = start;
}

void Position::Report(std::int64_t framesWritten, std::int64_t delay) {
    const std::lock_guard lock(mutex);
    written = framesWritten;
    heardThen = framesWritten - delay;
    reported = time();
}

void Position::RunFree() {
    const std::lock_guard lock(mutex);
    free = true;
}

std::int64_t Position::FramesByClock() const {
    const std::lock_guard lock(mutex);
    return started ? FramesSince(start) : 0;
}

std::int64_t Position::FramesHeard() const {
    const std::lock_guard lock(mutex);
    if (!started)
        return 0;
    const std::int64_t byDevice = heardThen + FramesSince(reported);
    const std::int64_t heard = std::min(byDevice, FramesSince(start));
    // A device cannot be past what it was given: in an underrun the music stands still.
    return free ? heard : std::min(heard, written);
}

/// To the nearest frame, so that a moment given in nanoseconds, such as that of a film's picture,
/// names the frame it means.
std::int64_t Position::FramesSince(Time moment) const {
    // Whole seconds apart from the rest: the product of both would overflow after two days.
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    const std::int64_t passed = (time() - moment).count();
    return passed / nanosecondsPerSecond * rate +
           (passed % nanosecondsPerSecond * rate + nanosecondsPerSecond / 2) / nanosecondsPerSecond;
}

} // namespace Vell::Sound
