#include "engine/core/clock.h"

#include "tests/support/fake_time.h"

#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <optional>
#include <type_traits>

#include <unistd.h>

#include <gtest/gtest.h>

using Vell::Clock;

namespace {

/// What usleep() was last asked for, in microseconds; none when it was not called.
std::optional<useconds_t> slept;

} // namespace

/// Takes the place of the C library's function: notes the request, and only waits when the request
/// is short enough for a test to wait for.
extern "C" int usleep(useconds_t microseconds) {
    slept = microseconds;
    constexpr useconds_t patience = 50000;
    if (microseconds > patience)
        return 0;
    timespec wait{0, static_cast<long>(microseconds) * 1000};
    return nanosleep(&wait, nullptr);
}

namespace {

constexpr double epochSeconds = 1267790400.0; // 5 March 2010, 12:00 UTC

/// What Sleep(seconds) asks of the system.
std::optional<useconds_t> Asked(float seconds) {
    slept.reset();
    Clock().Sleep(seconds);
    return slept;
}

TEST(Clock, Is_nothing_but_its_start_time) {
    EXPECT_EQ(sizeof(Clock), sizeof(double));
    EXPECT_TRUE(std::is_trivially_destructible_v<Clock>);
}

TEST(Clock, Starts_at_zero_and_grows_in_real_time) {
    const Clock clock;
    EXPECT_LT(clock.GetElapsedTime(), 0.5f); // construction and this line: far below half a second
    timespec wait{0, 30 * 1000 * 1000};
    nanosleep(&wait, nullptr);
    EXPECT_GE(clock.GetElapsedTime(), 0.029f);
}

TEST(Clock, Counts_seconds_since_construction) {
    const FakeTimeScope time(epochSeconds + 0.75); // not at a whole second
    const Clock clock;
    EXPECT_EQ(clock.GetElapsedTime(), 0.0f);
    SetFakeTime(epochSeconds + 119);
    EXPECT_EQ(clock.GetElapsedTime(), 118.25f);
    EXPECT_EQ(clock.GetElapsedTime(), 118.25f) << "asking is not a frame and moves nothing";
}

TEST(Clock, Starts_again_at_Reset) {
    const FakeTimeScope time(epochSeconds);
    Clock clock;
    SetFakeTime(epochSeconds + 10.5);
    clock.Reset();
    EXPECT_EQ(clock.GetElapsedTime(), 0.0f);
    SetFakeTime(epochSeconds + 13);
    EXPECT_EQ(clock.GetElapsedTime(), 2.5f);
}

TEST(Clock, Is_independent_of_other_clocks) {
    const FakeTimeScope time(epochSeconds);
    const Clock first;
    SetFakeTime(epochSeconds + 1);
    Clock second;
    SetFakeTime(epochSeconds + 3);
    second.Reset();
    SetFakeTime(epochSeconds + 4);
    EXPECT_EQ(first.GetElapsedTime(), 4.0f);
    EXPECT_EQ(second.GetElapsedTime(), 1.0f);
}

TEST(Clock, Tells_the_seconds_since_the_epoch_with_their_microseconds) {
    const FakeTimeScope time(epochSeconds + 0.25);
    const Clock clock;
    EXPECT_EQ(clock.GetTime(), 1267790400.25);
    SetFakeTime(epochSeconds + 0.000001);
    EXPECT_EQ(clock.GetTime(), 1267790400.0 + 1 / 1000000.0);
}

TEST(Clock, Follows_the_real_wall_clock) {
    const double before = static_cast<double>(std::time(nullptr));
    const double now = Clock().GetTime();
    EXPECT_GE(now, before - 1.0); // std::time may run on a coarser tick
    EXPECT_LE(now, static_cast<double>(std::time(nullptr)) + 2.0);
}

TEST(Clock, Jumps_back_when_the_system_clock_is_set_back) {
    const FakeTimeScope time(epochSeconds);
    const Clock clock;
    SetFakeTime(epochSeconds + 20);
    EXPECT_EQ(clock.GetElapsedTime(), 20.0f);
    SetFakeTime(epochSeconds - 3600);
    EXPECT_EQ(clock.GetElapsedTime(), -3600.0f);
}

TEST(Clock, Loses_precision_only_in_the_final_float_after_a_long_run) {
    const FakeTimeScope time(epochSeconds);
    const Clock clock;
    // Floats near 10,000 are 1/1024 apart: 10000.3 is nearest to 10000 + 307/1024, and the
    // difference is taken in double, where 1.26e9 + 10000.3 still keeps the microseconds.
    SetFakeTime(epochSeconds + 10000.3);
    EXPECT_EQ(clock.GetElapsedTime(), 10000.0f + 307.0f / 1024.0f);
    EXPECT_NEAR(static_cast<double>(clock.GetElapsedTime()), 10000.3, 0.001);
}

TEST(Clock, Does_not_sleep_for_less_than_a_second) {
    for (float seconds : {0.0f, 0.5f, 0.999f}) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(Asked(seconds).value_or(0), 0u) << seconds;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(400));
    }
}

TEST(Clock, Sleeps_whole_seconds_only) {
    EXPECT_EQ(Asked(1.0f), 1000000u);
    EXPECT_EQ(Asked(1.9f), 1000000u);
    EXPECT_EQ(Asked(3.5f), 3000000u);
    EXPECT_EQ(Asked(4294.9f), 4294000000u);
}

TEST(Clock, Wraps_the_microseconds_at_32_bits) {
    // 4295 * 1000000 = 4295000000 = 2^32 + 32704.
    EXPECT_EQ(Asked(4295.0f), 32704u);
    // 2^32 seconds: a multiple of 2^32 microseconds. 3e38 is one too, as every float above 2^56 is.
    EXPECT_EQ(Asked(4294967296.0f), 0u);
    EXPECT_EQ(Asked(3e38f), 0u);
}

TEST(Clock, Returns_at_once_from_a_sleep_that_is_negative_or_no_number) {
    for (float seconds : {-1.0f, -1e30f, std::nanf(""), std::numeric_limits<float>::infinity()})
        EXPECT_EQ(Asked(seconds).value_or(0), 0u) << seconds;
}

} // namespace
