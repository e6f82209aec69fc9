#include "sound/position.h"

#include "sound/control.h"

#include <gtest/gtest.h>

#include <memory>

using Vell::Sound::HandTime;
using Vell::Sound::Position;

namespace {

/// A position in a track of 1,000 frames a second: a frame is a millisecond.
class PositionTest : public ::testing::Test {
protected:
    void At(int milliseconds) { time.MoveTo(milliseconds / 1000.0); }

    HandTime time;
    Position position{1000, [this] { return time.Now(); }};
};

TEST_F(PositionTest, Has_heard_nothing_before_the_start) {
    At(5000);
    EXPECT_EQ(position.FramesHeard(), 0);
    EXPECT_EQ(position.FramesByClock(), 0);
}

TEST_F(PositionTest, Is_what_was_written_less_the_delay) {
    position.Start();
    At(300);
    position.Report(300, 80);
    EXPECT_EQ(position.FramesHeard(), 220);
    EXPECT_EQ(position.FramesByClock(), 300);
}

TEST_F(PositionTest, Moves_with_the_clock_between_two_reports) {
    position.Start();
    At(300);
    position.Report(300, 80);
    At(307);
    EXPECT_EQ(position.FramesHeard(), 227);
}

TEST_F(PositionTest, Is_not_past_what_the_device_was_given) {
    position.Start();
    At(300);
    position.Report(300, 80);
    At(400); // the device ran dry 20 ms ago
    EXPECT_EQ(position.FramesHeard(), 300);
}

TEST_F(PositionTest, Is_before_the_first_frame_while_that_is_on_its_way) {
    position.Start();
    At(10);
    position.Report(100, 150); // a device with 50 ms of its own behind the buffer
    EXPECT_EQ(position.FramesHeard(), -50);
}

TEST_F(PositionTest, Is_never_ahead_of_the_clock) {
    At(1000);
    position.Start();
    position.Report(60'000, 0); // a minute of music, taken at once
    EXPECT_EQ(position.FramesHeard(), 0);
    At(1025);
    EXPECT_EQ(position.FramesHeard(), 25);
}

TEST_F(PositionTest, Goes_on_from_where_it_is_when_the_device_is_lost) {
    position.Start();
    At(300);
    position.Report(300, 80);
    At(310);
    position.RunFree();
    EXPECT_EQ(position.FramesHeard(), 230);
    At(5310);
    EXPECT_EQ(position.FramesHeard(), 5230);
}

TEST_F(PositionTest, Follows_the_clock_alone_without_any_device) {
    At(2000);
    position.Start();
    position.RunFree();
    EXPECT_EQ(position.FramesHeard(), 0);
    At(2750);
    EXPECT_EQ(position.FramesHeard(), 750);
}

TEST(Position, Counts_to_the_nearest_frame) {
    HandTime time;
    Position position(44100, [&] { return time.Now(); });
    position.Start();
    position.RunFree();
    time.MoveTo(0.499 / 44100.0);
    EXPECT_EQ(position.FramesHeard(), 0);
    time.MoveTo(0.501 / 44100.0);
    EXPECT_EQ(position.FramesHeard(), 1);
    time.MoveTo(1.0 / 60.0); // not a whole number of nanoseconds
    EXPECT_EQ(position.FramesHeard(), 735);
}

TEST(Position, Stays_exact_for_days) {
    HandTime time;
    Position position(48000, [&] { return time.Now(); });
    position.Start();
    position.RunFree();
    time.MoveTo(1e6);
    EXPECT_EQ(position.FramesHeard(), 48'000'000'000);
}

} // namespace
