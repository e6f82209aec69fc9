#include "art/common/progress.h"

#include <cstdio>
#include <thread>
#include <vector>

#include <unistd.h>

namespace Art {

namespace {

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string Bar(std::int64_t done, std::int64_t total) {
    constexpr int length = 24;
    const int filled = static_cast<int>(done * length / total);
    return std::string(filled, '#') + std::string(length - filled, '.');
}

} // namespace

std::string DurationText(double seconds) {
    char text[48];
    if (seconds < 60)
        std::snprintf(text, sizeof text, "%.1f s", seconds);
    else
        std::snprintf(text, sizeof text, "%d min %02d s", static_cast<int>(seconds) / 60,
                      static_cast<int>(seconds) % 60);
    return text;
}

Progress::Progress(std::string name, std::int64_t steps)
    : title(std::move(name)),
      total(std::max<std::int64_t>(steps, 1)),
      started(std::chrono::steady_clock::now()),
      terminal(isatty(STDERR_FILENO) != 0) {
    Show(0);
}

Progress::~Progress() {
    std::fprintf(stderr, "%s%-24s done in %s\n", terminal ? "\r\033[K" : "", title.c_str(),
                 DurationText(SecondsSince(started)).c_str());
}

void Progress::Add(std::int64_t steps) {
    const std::int64_t done = finished.fetch_add(steps) + steps;
    if (showing.try_lock()) {
        Show(done);
        showing.unlock();
    }
}

void Progress::Show(std::int64_t done) {
    const double passed = SecondsSince(started);
    const auto tick = terminal ? static_cast<std::int64_t>(passed * 5) : done * 10 / total;
    if (tick == shownTicks)
        return;
    shownTicks = tick;
    const double left =
        done > 0 ? passed * static_cast<double>(total - done) / static_cast<double>(done) : 0;
    std::fprintf(stderr, "%s%-24s [%s] %3d %%  %s left%s", terminal ? "\r\033[K" : "",
                 title.c_str(), Bar(done, total).c_str(), static_cast<int>(done * 100 / total),
                 done > 0 ? DurationText(left).c_str() : "?", terminal ? "" : "\n");
    std::fflush(stderr);
}

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
