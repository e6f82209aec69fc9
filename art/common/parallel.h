#pragma once

#include <functional>

namespace Art {

/// Runs body(i) for 0 <= i < count on `threads` threads (0: one per core). The order is not
/// fixed, so a body may only write what belongs to its own i.
void ForEachIndex(int count, int threads, const std::function<void(int)>& body);

} // namespace Art
