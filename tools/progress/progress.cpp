#include "tools/progress/progress.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iostream>

#include <unistd.h>

namespace Tools {

namespace {

constexpr int barLength = 24;
constexpr double barPause = 0.1; // seconds between two lines
constexpr double linePause = 10.0;

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// "1:05"
std::string Minutes(double seconds) {
    const long whole = std::lround(seconds);
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

/// "  61.2 a second (1.02x)"
std::string Speed(double perSecond, double playedPerSecond) {
    char text[64];
    std::snprintf(text, sizeof text, "  %.1f a second (%.2fx)", perSecond,
                  perSecond / playedPerSecond);
    return text;
}

} // namespace

Progress::Progress(std::string what, std::int64_t ofAll, double speed)
    : counted(std::move(what)),
      total(ofAll),
      playedPerSecond(speed),
      terminal(isatty(STDERR_FILENO) == 1),
      begin(Now()),
      told(begin) {}

Progress::~Progress() {
    if (terminal && done > 0)
        std::cerr << '\n';
}

void Progress::Add(std::int64_t count) {
    Tell(done.fetch_add(count) + count >= total);
}

void Progress::Tell(bool finished) {
    std::unique_lock<std::mutex> lock(telling, std::defer_lock);
    if (finished)
        lock.lock();
    else if (!lock.try_lock()) // another thread is telling
        return;
    const double now = Now();
    if (!finished && now - told < (terminal ? barPause : linePause))
        return;
    told = now;
    if (terminal)
        std::cerr << '\r' << Line(now - begin) << "\x1b[K" << std::flush; // and clears the rest
    else
        std::cerr << Line(now - begin) << '\n';
}

std::string Progress::Line(double elapsed) const {
    const std::int64_t sofar = done;
    const double perSecond = elapsed > 0.0 ? static_cast<double>(sofar) / elapsed : 0.0;
    const double left = perSecond > 0.0 ? static_cast<double>(total - sofar) / perSecond : 0.0;
    const auto filled = static_cast<std::size_t>(barLength * sofar / total);
    std::string line = "[";
    line.append(filled, '#').append(barLength - filled, '.').append("] ");
    line.append(std::to_string(sofar)).append("/").append(std::to_string(total));
    line.append(" ").append(counted);
    if (playedPerSecond > 0.0)
        line += Speed(perSecond, playedPerSecond);
    return line + "  time left " + Minutes(left);
}

} // namespace Tools
