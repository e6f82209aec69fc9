#pragma once

/// Holds gettimeofday(), and with it every Vell::Clock of the process, at `seconds` since the
/// epoch (not negative; rounded to microseconds) until told otherwise.
void SetFakeTime(double seconds);

/// Likewise, but every call moves the time on by `tick` seconds: the order of two readings shows.
void SetTickingTime(double seconds, double tick);

/// Gives gettimeofday() the real time back.
void ClearFakeTime();

/// Holds the time as SetFakeTime() does, until the end of a block.
class FakeTimeScope {
public:
    explicit FakeTimeScope(double seconds) { SetFakeTime(seconds); }
    ~FakeTimeScope() { ClearFakeTime(); }
    FakeTimeScope(const FakeTimeScope&) = delete;
    FakeTimeScope& operator=(const FakeTimeScope&) = delete;
};
