#include "tools/progress/progress.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>
#include <vector>

using Tools::Progress;

TEST(Progress, Tells_frames_speed_and_time_left) {
    testing::internal::CaptureStderr();
    Progress progress("frames", 240, 60.0);
    for (int i = 0; i < 60; ++i)
        progress.Add();
    // A quarter in 2 s: 30 frames a second are half the speed of 60, and 180 more take 6 s.
    EXPECT_EQ(progress.Line(2.0),
              "[######..................] 60/240 frames  30.0 a second (0.50x)  time left 0:06");
    testing::internal::GetCapturedStderr();
}

TEST(Progress, Has_no_speed_where_nothing_is_played) {
    testing::internal::CaptureStderr();
    Progress progress("faces of the sky", 6);
    progress.Add(3);
    // Half in 65 s: the other half takes as long.
    EXPECT_EQ(progress.Line(65.0),
              "[############............] 3/6 faces of the sky  time left 1:05");
    testing::internal::GetCapturedStderr();
}

TEST(Progress, Starts_without_a_guess) {
    EXPECT_EQ(Progress("frames", 10, 25.0).Line(0.0),
              "[........................] 0/10 frames  0.0 a second (0.00x)  time left 0:00");
}

TEST(Progress, Says_the_last_line_where_there_is_no_terminal) {
    testing::internal::CaptureStderr();
    Progress progress("frames", 3, 60.0);
    progress.Add();
    progress.Add();
    progress.Add();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, testing::StartsWith("[########################] 3/3 frames  "));
    EXPECT_THAT(said, testing::EndsWith("time left 0:00\n"));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
}

TEST(Progress, Counts_more_than_an_hour_in_minutes) {
    testing::internal::CaptureStderr();
    Progress progress("frames", 7200, 60.0);
    progress.Add();
    EXPECT_THAT(progress.Line(1.0), testing::HasSubstr("time left 119:59"));
    testing::internal::GetCapturedStderr();
}

TEST(Progress, Counts_what_several_threads_do) {
    testing::internal::CaptureStderr();
    Progress progress("rows", 4000);
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int step = 0; step < 1000; ++step)
                    progress.Add();
            });
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr(" 4000/4000 rows "));
}
