#include "engine/core/clock.h"

#include <sys/time.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>

namespace Vell {

Clock::Clock() {
    Reset();
}

void Clock::Reset() {
    start = GetTime();
}

double Clock::GetTime() const {
    timeval now = {};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) / 1000000.0;
}

float Clock::GetElapsedTime() const {
    return static_cast<float>(GetTime() - start);
}

void Clock::Sleep(float seconds) const {
    if (!std::isfinite(seconds) || seconds < 1.0f)
        return;
    // Reduced to 32 bits first, so that any float converts; the product then wraps as documented.
    constexpr double twoTo32 = 4294967296.0;
    const double whole = std::trunc(static_cast<double>(seconds));
    usleep(static_cast<std::uint32_t>(std::fmod(whole, twoTo32)) * std::uint32_t{1000000});
}

} // namespace Vell
