#include "tools/doctor/rehearsal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>

using Doctor::Rehearsal;
using Doctor::Row;
using Doctor::State;
using Doctor::Table;
using ::testing::HasSubstr;

namespace {

constexpr std::size_t show = 0, speed = 1, glErrors = 2, logRows = 3; // the rows

/// A hundred frames: 1 to 100 ms, not in this order.
Rehearsal Frames1To100() {
    Rehearsal rehearsal;
    rehearsal.seconds = 3.0;
    for (int i = 0; i < 100; ++i)
        rehearsal.frames.push_back(
            {0.0, static_cast<double>((i * 37) % 100 + 1)}); // 37 and 100 share no factor
    return rehearsal;
}

double ValueOf(const Row& row, const std::string& name) {
    for (const Doctor::Value& value : row.values)
        if (value.name == name)
            return std::stod(value.text);
    throw std::runtime_error("no value " + name);
}

} // namespace

TEST(Rehearsal, Speed_is_told_by_rate_median_and_the_slowest_twentieth) {
    const Row row = RehearsalRows(Frames1To100())[speed];
    EXPECT_EQ(ValueOf(row, "frames"), 100);
    // 1 + 2 + ... + 100 = 5050 ms for 100 frames.
    EXPECT_NEAR(ValueOf(row, "fps"), 100 * 1000.0 / 5050.0, 0.005);
    EXPECT_EQ(ValueOf(row, "median_ms"), 50); // fifty of the hundred take 50 ms or less
    EXPECT_EQ(ValueOf(row, "slow_ms"), 95);   // five take more
    EXPECT_EQ(ValueOf(row, "longest_ms"), 100);
}

TEST(Rehearsal, Less_than_25_frames_per_second_is_a_warning) {
    Rehearsal rehearsal;
    rehearsal.frames.assign(50, {0.0, 40.0}); // 25 frames per second
    EXPECT_EQ(RehearsalRows(rehearsal)[speed].state, State::Ok);
    rehearsal.frames.assign(50, {0.0, 41.0});
    EXPECT_EQ(RehearsalRows(rehearsal)[speed].state, State::Warn);
    EXPECT_THAT(RehearsalRows(rehearsal)[speed].finding, HasSubstr("jerks: 24.4 frames"));
}

TEST(Rehearsal, Single_frame_that_fills_the_time_is_a_warning) {
    Rehearsal rehearsal;
    rehearsal.seconds = 3.0;
    EXPECT_EQ(RehearsalRows(rehearsal)[speed].state, State::Warn);
    EXPECT_THAT(RehearsalRows(rehearsal)[speed].finding, HasSubstr("longer than 3.0 s"));
}

TEST(Rehearsal, Demo_that_breaks_off_cannot_run) {
    Rehearsal rehearsal;
    rehearsal.end.signal = SIGSEGV;
    const Table table = RehearsalRows(rehearsal);
    EXPECT_EQ(table[show].state, State::Fail);
    EXPECT_EQ(table[show].finding, "the demo was ended by a crash (Segmentation fault)");
    EXPECT_EQ(table[speed].state, State::Unknown) << "there was nothing to measure";
}

TEST(Rehearsal, Demo_that_found_no_opengl_has_not_played_although_it_ended_in_order) {
    Rehearsal rehearsal;
    rehearsal.errorRows = {{"InitEngine", "ERROR", "GLExtentions"}};
    const Table table = RehearsalRows(rehearsal);
    EXPECT_EQ(table[show].state, State::Fail);
    EXPECT_EQ(table[show].finding, "the demo found no usable OpenGL and ended at once");
    EXPECT_THAT(table[show].advice, HasSubstr("-noreset"));
    for (const auto row : {speed, glErrors, logRows})
        EXPECT_EQ(table[row].state, State::Unknown) << table[row].id;
}

TEST(Rehearsal, Errors_of_opengl_are_a_warning) {
    Rehearsal rehearsal = Frames1To100();
    EXPECT_EQ(RehearsalRows(rehearsal)[glErrors].state, State::Ok);
    rehearsal.errors = 3;
    rehearsal.firstError = "0x502";
    EXPECT_EQ(RehearsalRows(rehearsal)[glErrors].state, State::Warn);
    EXPECT_EQ(RehearsalRows(rehearsal)[glErrors].finding,
              "OpenGL reported 3 errors, the first 0x502");
}

TEST(Rehearsal, Rows_of_the_log_that_say_error_are_a_warning) {
    Rehearsal rehearsal = Frames1To100();
    EXPECT_EQ(RehearsalRows(rehearsal)[logRows].state, State::Ok);
    rehearsal.errorRows = {{"Image", "ERROR", "a.png"}, {"Shader", "ERROR", "b.vert"}};
    EXPECT_EQ(RehearsalRows(rehearsal)[logRows].state, State::Warn);
    EXPECT_EQ(RehearsalRows(rehearsal)[logRows].finding,
              "rows that say ERROR: Image a.png; Shader b.vert");
}

TEST(Rehearsal, That_did_not_take_place_has_the_same_rows) {
    const Table without = Doctor::NoRehearsalRows("of rain");
    const Table with = RehearsalRows(Frames1To100());
    ASSERT_EQ(without.size(), with.size());
    for (std::size_t i = 0; i < with.size(); ++i) {
        EXPECT_EQ(without[i].id, with[i].id);
        EXPECT_EQ(without[i].state, State::Unknown);
        EXPECT_EQ(without[i].finding, "not looked at: of rain");
    }
}
