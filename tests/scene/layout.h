#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <vector>

// How the tests see where a class keeps its fields and its virtual operations: what was built
// against an older version of the engine finds both by their place.

/// The place of a virtual operation in the table of its class; the destructor takes the first two,
/// 0 and 1. A pointer to a virtual member carries, on this platform, the place in bytes plus 1.
template <class Operation>
std::size_t Slot(Operation operation) {
    std::size_t words[2] = {};
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    return (words[0] - 1) / sizeof(void*);
}

/// Whether these fields of one object stand in memory one behind the other, in this order.
inline bool InOrder(const std::vector<const void*>& fields) {
    return std::is_sorted(fields.begin(), fields.end(), std::less_equal<>());
}
