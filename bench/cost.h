#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

namespace Bench {

/// Of the processor, all threads of this program: programs beside it count less.
inline double Milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// Of one value or more; of an even number of them the upper one in the middle.
inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace Bench
