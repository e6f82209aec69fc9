#include "tools/movie/progress.h"

#include <gmock/gmock.h>

using Movie::Progress;

TEST(Progress, Tells_frames_speed_and_time_left) {
    testing::internal::CaptureStderr();
    Progress progress(240, {60, 1});
    for (int i = 0; i < 60; ++i)
        progress.Step();
    // A quarter in 2 s: 30 frames a second are half the speed of 60, and 180 more take 6 s.
    EXPECT_EQ(progress.Line(2.0),
              "[######..................] 60/240 frames  30.0 a second (0.50x)  time left 0:06");
    testing::internal::GetCapturedStderr();
}

TEST(Progress, Starts_without_a_guess) {
    EXPECT_EQ(Progress(10, {25, 1}).Line(0.0),
              "[........................] 0/10 frames  0.0 a second (0.00x)  time left 0:00");
}

TEST(Progress, Says_the_last_line_where_there_is_no_terminal) {
    testing::internal::CaptureStderr();
    Progress progress(3, {60, 1});
    progress.Step();
    progress.Step();
    progress.Step();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, testing::StartsWith("[########################] 3/3 frames  "));
    EXPECT_THAT(said, testing::EndsWith("time left 0:00\n"));
}

TEST(Progress, Counts_more_than_an_hour_in_minutes) {
    testing::internal::CaptureStderr();
    Progress progress(7200, {60, 1});
    progress.Step();
    EXPECT_THAT(progress.Line(1.0), testing::HasSubstr("time left 119:59"));
    testing::internal::GetCapturedStderr();
}
