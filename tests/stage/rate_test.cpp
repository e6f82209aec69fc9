#include "tools/stage/rate.h"

#include <gmock/gmock.h>

#include <stdexcept>

using Stage::ParseRate;
using Stage::Rate;

TEST(Rate, Gives_every_frame_its_time_without_drift) {
    const Rate sixty;
    EXPECT_EQ(sixty.Microseconds(0), 0);
    EXPECT_EQ(sixty.Microseconds(1), 16667); // 16666.67
    EXPECT_EQ(sixty.Microseconds(2), 33333);
    EXPECT_EQ(sixty.Microseconds(7095), 118250000); // 7095 / 60 = 118.25
    const Rate ntsc = {24000, 1001};
    EXPECT_EQ(ntsc.Microseconds(24000), 1001000000);
    EXPECT_EQ(ntsc.Microseconds(1), 41708); // 1001 / 24000 = 0.04170833
}

TEST(Rate, Knows_the_frame_on_the_screen_at_a_time) {
    const Rate sixty;
    EXPECT_EQ(sixty.FrameAt(0.0), 0);
    EXPECT_EQ(sixty.FrameAt(0.0166), 0);
    EXPECT_EQ(sixty.FrameAt(0.0167), 1);
    EXPECT_EQ(sixty.FrameAt(118.25), 7095);
    EXPECT_EQ(sixty.FrameAt(118.252), 7095);
    // Its own time belongs to each frame, rounded or not.
    for (int number = 0; number < 7096; ++number)
        ASSERT_EQ(sixty.FrameAt(sixty.Seconds(number)), number);
}

TEST(Rate, Knows_the_first_frame_from_a_time_on) {
    const Rate sixty;
    EXPECT_EQ(sixty.FrameFrom(0.0), 0);
    EXPECT_EQ(sixty.FrameFrom(0.001), 1);
    EXPECT_EQ(sixty.FrameFrom(118.252), 7096); // 7095 is at 118.25: so many frames has the show
    for (int number = 0; number < 7096; ++number)
        ASSERT_EQ(sixty.FrameFrom(sixty.Seconds(number)), number);
}

TEST(Rate, Is_read_as_whole_number_decimal_and_fraction) {
    const struct {
        const char* text;
        std::int64_t frames;
        std::int64_t seconds;
    } rates[] = {
        {"60", 60, 1},
        {"1", 1, 1},
        {"1000", 1000, 1},
        {"23.976", 23976, 1000},
        {"60000/1001", 60000, 1001},
        {"29.97", 2997, 100},
        {"12.5", 125, 10},
    };
    for (const auto& rate : rates) {
        const Rate read = ParseRate(rate.text);
        EXPECT_EQ(read.frames, rate.frames) << rate.text;
        EXPECT_EQ(read.seconds, rate.seconds) << rate.text;
    }
}

TEST(Rate, Refuses_what_is_none) {
    for (const char* text : {"", "0", "-1", "1001", "0.5", "60/0", "60/", "/1", "sixty", "60 ",
                             "6e1", "60/1/1", "1.2.3", "-60/-1", "1.0000000001",
                             "99999999999999999999", "nan", "60000000000/1000000000"})
        EXPECT_THROW(ParseRate(text), std::runtime_error) << text;
}
