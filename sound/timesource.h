#pragma once

#include <chrono>
#include <functional>

namespace Vell::Sound {

using Time = std::chrono::nanoseconds;

/// Tells the time since some fixed moment; never goes back. Any thread may ask.
using TimeSource = std::function<Time()>;

/// The machine's monotonic clock.
inline Time SteadyTime() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace Vell::Sound
