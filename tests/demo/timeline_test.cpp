#include "demo/timeline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using Timeline::Segment;
using Timeline::WispView;
using Vell::vec3;

namespace {

// A cut, and the nearest times around it that a double can hold.
double Before(double cut) {
    return std::nextafter(cut, 0.0);
}
double After(double cut) {
    return std::nextafter(cut, 1e9);
}

struct Cut {
    double time;
    Segment before;
    Segment after;
};

const Cut cuts[] = {
    {13.912, Segment::Plain, Segment::CityRise},
    {27.824, Segment::CityRise, Segment::FishSchool},
    {41.736, Segment::FishSchool, Segment::ColourSplit},
    {55.648, Segment::ColourSplit, Segment::Glow},
    {76.516, Segment::Glow, Segment::Wisps},
};

constexpr float rounding = 1e-5f; // a few float steps at values up to 100

void ExpectPoint(const vec3& actual, double x, double y, double z) {
    EXPECT_NEAR(actual.x, x, rounding);
    EXPECT_NEAR(actual.y, y, rounding);
    EXPECT_NEAR(actual.z, z, rounding);
}

} // namespace

TEST(TimelineSegments, Change_at_every_cut) {
    for (const Cut& cut : cuts) {
        SCOPED_TRACE(cut.time);
        EXPECT_EQ(Timeline::SegmentAt(Before(cut.time)), cut.before);
        EXPECT_EQ(Timeline::SegmentAt(After(cut.time)), cut.after);
    }
}

TEST(TimelineSegments, Do_nothing_exactly_at_a_cut) {
    for (const Cut& cut : cuts) {
        SCOPED_TRACE(cut.time);
        EXPECT_EQ(Timeline::SegmentAt(cut.time), Segment::Plain);
    }
}

TEST(TimelineSegments, Compare_demo_time_with_doubles) {
    // The float next to 27.824 is 27.82399940..., which is below it: still the rise of the city.
    EXPECT_LT(static_cast<double>(27.824f), 27.824);
    EXPECT_EQ(Timeline::SegmentAt(27.824f), Segment::CityRise);
    // The float next to 76.516 is 76.51599884...: still the glow.
    EXPECT_LT(static_cast<double>(76.516f), 76.516);
    EXPECT_EQ(Timeline::SegmentAt(76.516f), Segment::Glow);
}

TEST(TimelineSegments, Are_plain_flight_from_the_start) {
    EXPECT_EQ(Timeline::SegmentAt(0.0), Segment::Plain);
    EXPECT_EQ(Timeline::SegmentAt(7.0), Segment::Plain);
}

TEST(TimelineSegments, End_with_the_wisps_however_long_it_runs) {
    EXPECT_EQ(Timeline::SegmentAt(118.252), Segment::Wisps);
    EXPECT_EQ(Timeline::SegmentAt(1000.0), Segment::Wisps);
}

TEST(TimelineWispView, Follows_the_flight_between_its_two_times_both_included) {
    EXPECT_EQ(Timeline::WispViewAt(76.6), WispView::Approach);
    EXPECT_EQ(Timeline::WispViewAt(Before(90.428)), WispView::Approach);
    EXPECT_EQ(Timeline::WispViewAt(90.428), WispView::Flight);
    EXPECT_EQ(Timeline::WispViewAt(97.0), WispView::Flight);
    EXPECT_EQ(Timeline::WispViewAt(104.34), WispView::Flight);
    EXPECT_EQ(Timeline::WispViewAt(After(104.34)), WispView::Finale);
    EXPECT_EQ(Timeline::WispViewAt(118.0), WispView::Finale);
}

TEST(TimelineCity, Rises_from_minus_20_to_0_with_cosine_easing) {
    constexpr double phrase = 13.912;
    // x = t / 13.912 - 1; height = -20 (1 + cos(pi x)) / 2.
    EXPECT_NEAR(Timeline::CityHeight(static_cast<float>(phrase)), -20.0, rounding);
    // x = 1/3: cos = 1/2, height = -20 * 3/4
    EXPECT_NEAR(Timeline::CityHeight(static_cast<float>(phrase * 4.0 / 3.0)), -15.0, rounding);
    EXPECT_NEAR(Timeline::CityHeight(static_cast<float>(phrase * 1.5)), -10.0, rounding);
    // x = 2/3: cos = -1/2, height = -20 / 4
    EXPECT_NEAR(Timeline::CityHeight(static_cast<float>(phrase * 5.0 / 3.0)), -5.0, rounding);
    EXPECT_NEAR(Timeline::CityHeight(static_cast<float>(phrase * 2.0)), 0.0, rounding);
}

TEST(TimelineCity, Starts_and_ends_at_rest) {
    // In the first and last hundredth of the rise it moves 20 (1 - cos(pi / 100)) / 2 = 0.0049,
    // where a straight line would move 0.2.
    EXPECT_NEAR(Timeline::CityHeight(13.912f * 1.01f), -19.9951, 2e-4);
    EXPECT_NEAR(Timeline::CityHeight(13.912f * 1.99f), -0.0049, 2e-4);
}

TEST(TimelineCity, Is_eased_in_floats) {
    // 1.4 ms before the end 1 - x is 1.00632e-4, and 1 - f its square times pi^2 / 4: 2.499e-8.
    // That is less than half the float step below 1, 2.98e-8, so that f is 1: it has arrived.
    EXPECT_EQ(Timeline::CityHeight(27.8226f), 0.0f);
    // 2 ms before it 1 - x is 1.4376e-4 and 1 - f 5.099e-8: one step of 5.96e-8 below 1.
    EXPECT_EQ(Timeline::CityHeight(27.822f), -20.0f * 0x1p-24f);
}

TEST(TimelineCity, Counts_its_phrases_in_doubles) {
    // Three float steps of 2^-19 after 20.868f = 20.8680000305 the rise is 5.7525e-6 s past its
    // half, 4.135e-7 of a phrase: 6.94 steps of 2^-24, so x is 7 above 1/2. There f rises by pi / 2
    // a step: 11.0, and the height by 20 * 11 / 16 = 13.75 steps of 2^-20, which are 14. Divided in
    // floats t / phrase has steps of 2^-23 only, and x would be 6 or 8.
    EXPECT_EQ(Timeline::CityHeight(20.868f + 3 * 0x1p-19f), -10.0f + 14 * 0x1p-20f);
}

TEST(TimelineFish, Every_place_in_the_list_belongs_to_one_fish) {
    std::set<int> places;
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 3; ++row)
            for (int number = 0; number < 5; ++number)
                places.insert(Timeline::FishIndex(column, row, number));
    EXPECT_EQ(places.size(), 60u);
    EXPECT_EQ(*places.begin(), 0);
    EXPECT_EQ(*places.rbegin(), 59);
}

TEST(TimelineFish, Places_count_rows_by_20_columns_by_5_and_fish_by_1) {
    EXPECT_EQ(Timeline::FishIndex(0, 0, 0), 0);
    EXPECT_EQ(Timeline::FishIndex(0, 0, 1), 1);
    EXPECT_EQ(Timeline::FishIndex(1, 0, 0), 5);
    EXPECT_EQ(Timeline::FishIndex(0, 1, 0), 20);
    EXPECT_EQ(Timeline::FishIndex(3, 2, 4), 59); // 20 * 2 + 5 * 3 + 4
}

TEST(TimelineFish, Stand_in_a_grid_that_follows_the_eye_and_drifts) {
    const vec3 eye(30, -3, -75);
    // x = 30 + 2 * column - 2 * 30, y = -3 + 2 * row, z = -50 whatever the eye's z
    ExpectPoint(Timeline::FishPosition(eye, 30.0f, 0, 0), -30, -3, -50);
    ExpectPoint(Timeline::FishPosition(eye, 30.0f, 3, 0), -24, -3, -50);
    ExpectPoint(Timeline::FishPosition(eye, 30.0f, 0, 2), -30, 1, -50);
    ExpectPoint(Timeline::FishPosition(vec3(31, -2, 8), 30.0f, 1, 1), -27, 0, -50);
}

TEST(TimelineFish, Drift_towards_minus_x_at_two_units_a_second) {
    const vec3 eye(30, -3, -75);
    const float early = Timeline::FishPosition(eye, 30.0f, 1, 1).x;
    const float late = Timeline::FishPosition(eye, 31.5f, 1, 1).x;
    EXPECT_NEAR(late - early, -3.0, rounding);
}

TEST(TimelineWisps, Red_swings_along_x_at_half_speed) {
    ExpectPoint(Timeline::RedWispPosition(0.0f), 30, 3, 15);
    // sin(80 / 2) = sin(40 - 6 * 2 pi) = sin(2.3008882) = 0.7451132
    ExpectPoint(Timeline::RedWispPosition(80.0f), 0.7451132 * 2.5 + 30, 3, 15);
}

TEST(TimelineWisps, Green_circles_in_the_plane_across_x) {
    ExpectPoint(Timeline::GreenWispPosition(0.0f), 25, 2.5, 17.5);
    // 80 - 12 * 2 pi = 4.6017763: sin = -0.9938887, cos = -0.1103872
    ExpectPoint(Timeline::GreenWispPosition(80.0f), 25, -0.9938887 * 2.5 + 2.5,
                -0.1103872 * 2.5 + 15);
}

TEST(TimelineWisps, Blue_swings_along_z) {
    ExpectPoint(Timeline::BlueWispPosition(0.0f), 22, 3, 15);
    ExpectPoint(Timeline::BlueWispPosition(80.0f), 22, 3, -0.9938887 * 2.5 + 15);
}

TEST(TimelineWisps, Green_sinks_by_the_sine_of_a_double) {
    // Near its lowest point the height shows it: sin(80) = -0.993888653923, and the float next to
    // that is 2.2e-8 lower, which 2.5 makes 5.6e-8.
    constexpr double steps = 2e-9; // two float steps at 0.015
    EXPECT_NEAR(Timeline::GreenWispPosition(80.0f).y, 2.5 - 2.5 * 0.993888653923, steps);
}

TEST(TimelineWisps, Red_is_rounded_once) {
    // sin(t / 2) * 2.5 is 697546.528 steps of 2^-19 then, the steps of floats from 16 on: with 30
    // it is rounded up. Rounded to a float by itself it would be 697546.5, and then the even one.
    EXPECT_EQ(Timeline::RedWispPosition(76.52058411f).x, 30.0f + 697547 * 0x1p-19f);
}

TEST(TimelineLevel, Jumps_to_the_peak_while_the_lowest_band_is_quiet) {
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.2f, 0.0f, 0.1f, Timeline::splitPulse), 0.7f);
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.2f, 0.0299f, 0.1f, Timeline::splitPulse), 0.7f);
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.2f, 0.0f, 0.1f, Timeline::glowPulse), 1.0f);
}

TEST(TimelineLevel, Decays_at_3_units_a_second_while_the_band_is_loud) {
    // 0.7 - 3 * 0.1
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.7f, 0.5f, 0.1f, Timeline::splitPulse), 0.4f);
    // 1.0 - 3 * 0.05
    EXPECT_FLOAT_EQ(Timeline::NextLevel(1.0f, 0.0301f, 0.05f, Timeline::glowPulse), 0.85f);
}

TEST(TimelineLevel, Takes_a_band_of_exactly_three_hundredths_for_loud) {
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.7f, 0.03f, 0.1f, Timeline::splitPulse), 0.4f);
    EXPECT_FLOAT_EQ(
        Timeline::NextLevel(0.7f, std::nextafter(0.03f, 0.0f), 0.1f, Timeline::splitPulse), 0.7f);
}

TEST(TimelineLevel, Stops_at_its_rest_after_a_very_long_frame) {
    EXPECT_EQ(Timeline::NextLevel(0.7f, 0.5f, 1000.0f, Timeline::splitPulse), 0.0f);
    EXPECT_EQ(Timeline::NextLevel(1.0f, 0.5f, 1000.0f, Timeline::glowPulse), 0.25f);
}

TEST(TimelineLevel, Is_raised_to_its_rest_when_it_starts_below) {
    // What the colour split leaves may be lower than the glow's rest.
    EXPECT_EQ(Timeline::NextLevel(0.0f, 0.5f, 0.01f, Timeline::glowPulse), 0.25f);
}

TEST(TimelineLevel, Decays_while_the_band_is_not_a_number) {
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.5f, std::nanf(""), 0.1f, Timeline::splitPulse), 0.2f);
}

TEST(TimelineLevel, Decays_from_above_its_peak_as_from_anywhere) {
    EXPECT_FLOAT_EQ(Timeline::NextLevel(0.9f, 0.5f, 0.01f, Timeline::splitPulse), 0.87f);
}

TEST(TimelineLevel, Decays_in_doubles) {
    // dt is a sixteenth of 1 + 2^-23, and three times that is 0.1875 + 3 * 2^-27. As a float it
    // would be 4 * 2^-27 above 0.1875, halfway between two steps and rounded to the even one.
    constexpr float dt = (1.0f + 0x1p-23f) / 16.0f;
    EXPECT_EQ(Timeline::NextLevel(0.25f, 0.5f, dt, Timeline::splitPulse), 0.0625f - 3 * 0x1p-27f);
}

TEST(TimelineLogo, Is_hardly_there_and_not_gone_in_its_last_moment) {
    // The float before 10 is 10 - 2^-20: alpha is a tenth of 2^-20. One minus a float would be a
    // multiple of 2^-24, which is six tenths of it.
    EXPECT_FLOAT_EQ(Timeline::LogoAlpha(std::nextafter(10.0f, 0.0f)), 0x1p-20f / 10.0f);
}

TEST(TimelineLogo, Fades_from_opaque_to_transparent_in_ten_seconds) {
    EXPECT_FLOAT_EQ(Timeline::LogoAlpha(0.0f), 1.0f);
    EXPECT_FLOAT_EQ(Timeline::LogoAlpha(2.5f), 0.75f);
    EXPECT_NEAR(Timeline::LogoAlpha(10.0f), 0.0f, 1e-7f);
    EXPECT_EQ(Timeline::logoEnd, 10.0);
}
