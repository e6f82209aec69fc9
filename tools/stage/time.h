#pragma once

#include <cmath>
#include <cstdint>
#include <ctime>
#include <functional>
#include <utility>

#include <sys/time.h>

namespace Stage {

/// Since the epoch where the time is real, else since the beginning of the show.
using Microseconds = std::int64_t;

constexpr Microseconds microsecondsPerSecond = 1000000;

/// Longer than the demo: how far its clocks jump to bring it to its end in order.
constexpr Microseconds timeIsUp = 1000 * microsecondsPerSecond;

/// Rounded to the nearest.
inline Microseconds MicrosecondsOf(double seconds) {
    return std::llround(seconds * static_cast<double>(microsecondsPerSecond));
}

inline double SecondsOf(Microseconds time) {
    return static_cast<double>(time) / static_cast<double>(microsecondsPerSecond);
}

/// What the time is for a program that is played from outside. Who stands in for gettimeofday()
/// answers with it, be it linked into the program, preloaded under it or part of a test.
class Time {
public:
    virtual ~Time() = default;

    /// What the clock says.
    virtual Microseconds Now() = 0;

    /// A frame begins, which is number 0 for the first one: loading is over by then.
    virtual void BeginFrame(int /*number*/) {}

    /// It has ended, and number `next` is to come.
    virtual void EndFrame(int /*next*/) {}
};

/// The machine's.
class RealTime : public Time {
public:
    Microseconds Now() override {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        return now.tv_sec * microsecondsPerSecond + now.tv_nsec / 1000;
    }
};

/// Stands still until it is moved; with a tick it also moves on by that with every reading.
class HeldTime : public Time {
public:
    explicit HeldTime(Microseconds begin = 0, Microseconds tickLength = 0)
        : now(begin), tick(tickLength) {}

    void MoveTo(Microseconds time) { now = time; }

    Microseconds Now() override { return std::exchange(now, now + tick); }

private:
    Microseconds now;
    const Microseconds tick;
};

/// Stands still within a frame and moves between two. It is 0 in the first frame, and before that
/// while the demo loads and starts its clocks.
class FrameTime : public Time {
public:
    /// `timeOf` tells the time of a frame by its number, for all but the first.
    explicit FrameTime(std::function<Microseconds(int)> timeOf) : ofFrame(std::move(timeOf)) {}

    Microseconds Now() override { return now; }
    void EndFrame(int next) override { now = ofFrame(next); }

private:
    const std::function<Microseconds(int)> ofFrame;
    Microseconds now = 0;
};

/// The machine's while the demo loads, from its first frame on so many times as fast.
class FasterTime : public Time {
public:
    explicit FasterTime(double timesAsFast) : factor(timesAsFast) {}

    Microseconds Now() override {
        const Microseconds now = real.Now();
        if (begin == 0)
            return now;
        return begin + std::llround(static_cast<double>(now - begin) * factor);
    }

    void BeginFrame(int number) override {
        if (number == 0)
            begin = real.Now();
    }

private:
    const double factor;
    RealTime real;
    Microseconds begin = 0; ///< of the first frame; 0 until then
};

/// gettimeofday()'s answer: its result, 0.
inline int Tell(Microseconds now, timeval* time) {
    time->tv_sec = now / microsecondsPerSecond;
    time->tv_usec = now % microsecondsPerSecond;
    return 0;
}

} // namespace Stage
