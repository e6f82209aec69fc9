#pragma once

#include "tools/stage/isolated.h"

#include <cstddef>
#include <functional>
#include <string>

/// What a piece of work took in a process of its own.
struct Cost {
    Tools::Facts facts;    ///< what it reported
    Tools::Ending ending;  ///< of the process
    double seconds = 0.0;  ///< of the processor, in that process
    std::size_t bytes = 0; ///< the most memory at a time, beyond what there was at its beginning
};

/// "2.0 MiB, 0.013 s"
std::string InWords(const Cost& cost);

/// Calls `work` in a child process, for at most so many seconds.
Cost CostOf(const std::function<void(const Tools::Report&)>& work, double patience);

/// Whether memory is counted as the program takes it. Under the address sanitizer it is not: what
/// is freed stays, and each allocation has more around it.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryCounts = false;
#else
constexpr bool memoryCounts = true;
#endif
