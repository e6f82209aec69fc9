#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

namespace Tools {

/// Tells on standard error how far the work has come: a bar on a terminal, elsewhere a line every
/// ten seconds, and one when all is done.
class Progress {
public:
    /// Of `total` (1 or more) of what is counted: "frames". Where that is something to be played,
    /// `playedPerSecond` of it make a second, and the speed is told too.
    Progress(std::string counted, std::int64_t total, double playedPerSecond = 0.0);
    ~Progress(); ///< ends the bar's line
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// So many more are done. Any thread may call it.
    void Add(std::int64_t count = 1);

    /// "[####....] 1234/7096 frames  61.2 a second (1.02x)  time left 1:35", after `elapsed`
    /// seconds.
    std::string Line(double elapsed) const;

private:
    void Tell(bool finished);

    const std::string counted;
    const std::int64_t total;
    const double playedPerSecond;
    const bool terminal;
    const double begin; ///< seconds of the steady clock
    std::atomic<std::int64_t> done{0};
    std::mutex telling;
    double told; ///< when the last line was; guarded by `telling`
};

} // namespace Tools
