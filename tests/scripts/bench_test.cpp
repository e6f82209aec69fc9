// What bench/run makes of the numbers that it measures.

#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char* const flights = NIMBREL_SOURCE_DIR "/bench/flights.awk";

/// What a shell command prints; it finds `input` in the file of that name.
std::string Output(const std::string& input, const std::string& command) {
    WriteFile("input", input);
    const Tools::Ending end = Tools::Run({.arguments = {"/bin/bash", "-c", command}}, 10.0);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    return end.output;
}

/// Two flights of ten seconds.
std::string Flights(const std::string& frames, const std::string& column = "2") {
    return Output(frames, std::string("awk -v cuts='0 10 20' -v column=") + column + " -f '" +
                              flights + "' input");
}

/// The row of the table that the rounds make.
std::string Row(const std::string& rounds, const std::string& digits = "") {
    return Output(rounds, "scratch=. && . '" NIMBREL_SOURCE_DIR
                          "/bench/table.sh' && summary name ms " +
                              digits + " <input && cat table && rm table");
}

} // namespace

// Of flight 1 the frames take 10, 20, 30 and 50 ms, of flight 2 5, 6, 40 and 100: the median is the
// second of the four. 99 in 100 of four frames are all four.
TEST(Bench, Tells_each_flights_median_slowest_and_longest_frame) {
    const ScratchDir scratch;
    const std::string frames = "0 50 9\n1 10 9\n2 20 9\n3 30 9\n"
                               "10 5 9\n11 40 9\n12 6 9\n13 100 9\n";
    EXPECT_EQ(Flights(frames), "flight-1 20\nflight-1-slow 50\nflight-1-worst 50 0.000\n"
                               "flight-2 6\nflight-2-slow 100\nflight-2-worst 100 13.000\n"
                               "first 50\ncut-2 40\n");
}

// 200 frames, of which two take 7 ms, two 9 and the others 1: 99 in 100 are 198.
TEST(Bench, Leaves_one_frame_in_a_hundred_out_of_the_slowest) {
    const ScratchDir scratch;
    std::string frames;
    for (int i = 0; i < 200; ++i)
        frames += "5 1 " + std::to_string(i < 2 ? 9 : i < 4 ? 7 : 1) + "\n";
    EXPECT_NE(Flights(frames, "3").find("flight-1-slow 7\n"), std::string::npos);
}

// 20 is the middle one of 10, 20 and 30, and from the round at 3 s; of the multiples 3, 2 and 5 it
// is 3.
TEST(Bench, Tells_the_median_of_all_rounds_and_that_of_the_multiples) {
    const ScratchDir scratch;
    EXPECT_EQ(Row("30 10 1\n10 5 2\n20 4 3\n"), "name\tms, 3.0 s\t20\t10\t30\t3.00\n");
    EXPECT_EQ(Row("30 10\n10 5\n20 4\n"), "name\tms\t20\t10\t30\t3.00\n");
}

TEST(Bench, Tells_no_multiple_of_what_took_no_time) {
    const ScratchDir scratch;
    EXPECT_EQ(Row("30 0\n"), "name\tms\t30\t30\t30\t-\n");
}

// 1000.4 / 1000 is 1.0004.
TEST(Bench, Tells_small_differences_with_more_digits) {
    const ScratchDir scratch;
    EXPECT_EQ(Row("1000.4 1000\n"), "name\tms\t1000\t1000\t1000\t1.00\n");
    EXPECT_EQ(Row("1000.4 1000\n", "4"), "name\tms\t1000\t1000\t1000\t1.0004\n");
}

TEST(Bench, Has_no_row_of_what_was_not_measured) {
    const ScratchDir scratch;
    EXPECT_EQ(Row(""), "");
}
