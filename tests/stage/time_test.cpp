#include "tools/stage/time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace Stage;

namespace {

Microseconds SystemTime() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

TEST(Time, Of_the_machine_is_the_time_since_the_epoch) {
    const Microseconds before = SystemTime();
    const Microseconds now = RealTime().Now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, SystemTime());
}

TEST(Time, Held_stands_still_until_it_is_moved) {
    HeldTime time(5);
    EXPECT_EQ(time.Now(), 5);
    EXPECT_EQ(time.Now(), 5);
    time.MoveTo(7);
    EXPECT_EQ(time.Now(), 7);
}

TEST(Time, Held_with_a_tick_moves_on_by_it_with_every_reading) {
    HeldTime time(5, 2);
    EXPECT_EQ(time.Now(), 5);
    EXPECT_EQ(time.Now(), 7);
    EXPECT_EQ(time.Now(), 9);
}

TEST(Time, Of_frames_is_zero_until_the_first_has_ended_and_moves_between_two) {
    FrameTime time([](int frame) { return 100 + frame; });
    EXPECT_EQ(time.Now(), 0) << "while the demo loads";
    time.BeginFrame(0);
    EXPECT_EQ(time.Now(), 0);
    time.EndFrame(1);
    EXPECT_EQ(time.Now(), 101) << "the loop's own test belongs to the next frame";
    time.BeginFrame(1);
    EXPECT_EQ(time.Now(), 101);
}

TEST(Time, Faster_is_real_while_the_demo_loads_and_runs_ahead_from_the_first_frame_on) {
    FasterTime time(1000.0);
    EXPECT_NEAR(static_cast<double>(time.Now() - SystemTime()), 0.0, 1e6);
    const Microseconds before = SystemTime();
    time.BeginFrame(0);
    const Microseconds begun = SystemTime();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const Microseconds slept = SystemTime();
    const Microseconds now = time.Now();
    // It began between `before` and `begun`, and was read between `slept` and now.
    EXPECT_GE(now, before + (slept - begun) * 1000);
    EXPECT_LE(now, begun + (SystemTime() - before) * 1000);
    time.BeginFrame(1);
    EXPECT_GE(time.Now(), now) << "only the first frame begins it";
}

TEST(Time, Is_told_in_whole_seconds_and_the_microseconds_above) {
    timeval told{};
    EXPECT_EQ(Tell(MicrosecondsOf(118.252), &told), 0);
    EXPECT_EQ(told.tv_sec, 118);
    EXPECT_EQ(told.tv_usec, 252000);
}
