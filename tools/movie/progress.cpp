#include "tools/movie/progress.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <iostream>

#include <unistd.h>

namespace Movie {

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

} // namespace

Progress::Progress(int frameCount, const Stage::Rate& frameRate)
    : count(frameCount),
      rate(frameRate),
      terminal(isatty(STDERR_FILENO) == 1),
      begin(Now()),
      said(begin) {}

Progress::~Progress() {
    if (terminal && done > 0)
        std::cerr << '\n';
}

void Progress::Step() {
    ++done;
    const double now = Now();
    if (done < count && now - said < (terminal ? barPause : linePause))
        return;
    said = now;
    if (terminal)
        std::cerr << '\r' << Line(now - begin) << "\x1b[K" << std::flush; // and clears the rest
    else
        std::cerr << Line(now - begin) << '\n';
}

std::string Progress::Line(double elapsed) const {
    const double perSecond = elapsed > 0.0 ? done / elapsed : 0.0;
    const double left = perSecond > 0.0 ? (count - done) / perSecond : 0.0;
    const int filled = static_cast<int>(static_cast<std::int64_t>(barLength) * done / count);
    char numbers[128];
    std::snprintf(numbers, sizeof numbers, "] %d/%d frames  %.1f a second (%.2fx)  time left ",
                  done, count, perSecond,
                  perSecond * static_cast<double>(rate.seconds) / static_cast<double>(rate.frames));
    std::string line = "[";
    line.append(static_cast<std::size_t>(filled), '#');
    line.append(static_cast<std::size_t>(barLength - filled), '.');
    return line + numbers + Minutes(left);
}

} // namespace Movie
