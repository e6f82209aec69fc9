#include "tests/support/fake_time.h"

#include <cmath>
#include <cstdint>
#include <ctime>
#include <optional>

#include <sys/time.h>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1000000;

std::optional<std::int64_t> fakeMicroseconds;
std::int64_t tickMicroseconds = 0;

std::int64_t Microseconds(double seconds) {
    return std::llround(seconds * static_cast<double>(microsecondsPerSecond));
}

std::int64_t RealMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * microsecondsPerSecond + now.tv_nsec / 1000;
}

} // namespace

void SetFakeTime(double seconds) {
    SetTickingTime(seconds, 0.0);
}

void SetTickingTime(double seconds, double tick) {
    fakeMicroseconds = Microseconds(seconds);
    tickMicroseconds = Microseconds(tick);
}

void ClearFakeTime() {
    fakeMicroseconds.reset();
}

/// Takes the place of the C library's function in every executable that links this file: the
/// linker finds it first.
extern "C" int gettimeofday(timeval* time, void*) noexcept {
    const std::int64_t now = fakeMicroseconds.value_or(RealMicroseconds());
    if (fakeMicroseconds)
        *fakeMicroseconds += tickMicroseconds;
    time->tv_sec = now / microsecondsPerSecond;
    time->tv_usec = now % microsecondsPerSecond;
    return 0;
}
