#include "art/common/parallel.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace Art {

void ForEachIndex(int count, int threads, const std::function<void(int)>& body) {
    if (threads <= 0)
        threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    std::atomic<int> next{0};
    const auto work = [&] {
        for (int i = next++; i < count; i = next++)
            body(i);
    };
    std::vector<std::jthread> helpers;
    for (int i = 1; i < threads; ++i)
        helpers.emplace_back(work);
    work();
}

} // namespace Art
