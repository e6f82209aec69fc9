#pragma once

namespace Vell {

/// A stopwatch on the wall clock, in seconds.
///
/// It follows the system's wall clock on purpose, not a monotonic one: setting the system clock
/// back makes the elapsed time jump back.
class Clock {
public:
    /// Starts at once.
    Clock();
    ~Clock() = default;

    /// Starts again from 0.
    void Reset();

    /// The wall clock itself: seconds since the Unix epoch, in microsecond steps.
    double GetTime() const;

    /// Seconds since construction or the last Reset(). Taken in double; the float keeps about 1 ms
    /// at 10,000 s.
    float GetElapsedTime() const;

    /// Blocks for the whole seconds in `seconds`; the fraction is dropped, which is intended, so
    /// 0.5 returns at once and 1.9 waits one second. The microseconds are counted in 32 bits: 4,295
    /// s and more wrap round to short waits. Negative and non-finite arguments return at once.
    void Sleep(float seconds) const;

private:
    double start = 0.0; ///< seconds since the Unix epoch
};

} // namespace Vell
