#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace Art {

/// A progress bar with the time left on standard error, at most five lines a second on a
/// terminal and one line a tenth otherwise. Add() may be called from several threads.
class Progress {
public:
    /// Starts a bar with the given title for `total` steps (> 0).
    Progress(std::string title, std::int64_t total);
    /// Ends the line with the time the whole took.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Add(std::int64_t steps);

private:
    void Show(std::int64_t done);

    std::string title;
    std::int64_t total;
    std::atomic<std::int64_t> finished{0};
    std::chrono::steady_clock::time_point started;
    std::mutex showing;
    std::int64_t shownTicks = -1;
    bool terminal;
};

/// "2 min 05 s" or "12.3 s".
std::string DurationText(double seconds);

/// Runs body(i) for 0 <= i < count on `threads` threads (0: one per core). The order is not
/// fixed, so a body may only write what belongs to its own i.
void ForEachIndex(int count, int threads, const std::function<void(int)>& body);

} // namespace Art
