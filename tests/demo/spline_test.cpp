#include "demo/spline.h"

#include "tests/demo/spline_probe.h"
#include "tests/scene/layout.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <optional>
#include <type_traits>
#include <vector>

using Vell::vec3;

namespace {

/// Arrays that anything in this process made and freed.
struct Arrays {
    int made = 0;
    int freed = 0;
};

Arrays arrays;

} // namespace

// In the place of the standard ones: what a spline makes with array new can be counted.
void* operator new[](std::size_t size) {
    ++arrays.made;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete[](void* memory) noexcept {
    if (memory)
        ++arrays.freed;
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete[](memory);
}

namespace {

constexpr float rounding = 1e-5f; // a few float steps at values up to 30

void ExpectVector(const vec3& actual, float x, float y, float z) {
    EXPECT_NEAR(actual.x, x, rounding);
    EXPECT_NEAR(actual.y, y, rounding);
    EXPECT_NEAR(actual.z, z, rounding);
}

struct Key {
    vec3 point;
    float time;
};

void AddAll(Spline& spline, const std::vector<Key>& keys) {
    for (const Key& key : keys)
        spline.AddPoint(key.point, key.time);
}

/// From (1, 2, 3) at 1 s to (5, -2, 3) at 3 s.
const std::vector<Key> straight = {{vec3(1, 2, 3), 1.0f}, {vec3(5, -2, 3), 3.0f}};

// With A, B, C for the right-hand side, where D0 and D1 are the ways from key to key:
//     2 b0 +   b1        = A = 3 D0 / h0
//       b0 + 4 b1 +   b2 = B = 3 (D0 + D1) / h1
//              b1 + 2 b2 = C = 3 D1 / h1
// b0 = (A - b1) / 2 and b2 = (C - b1) / 2 leave 3 b1 = B - A / 2 - C / 2.

/// A second each.
///     x: D0 =  1, D1 = -1: A = 3, B =  0, C = -3: b1 = 0, b0 = 1.5, b2 = -1.5
///     y: D0 =  2, D1 =  2: A = 6, B = 12, C =  6: b1 = 2, b0 = 2,   b2 = 2
///     z: D0 =  0, D1 =  4: A = 0, B = 12, C = 12: b1 = 2, b0 = -1,  b2 = 5
/// c = 3 D - (b of the end + 2 b of the start), d = -2 D + (sum of both):
///     x: c0 = 3 - 3 = 0, d0 = -2 + 1.5 = -0.5;  c1 = -3 + 1.5 = -1.5, d1 = 2 - 1.5 = 0.5
///     y: c = 6 - 6 = 0, d = -4 + 4 = 0, in both
///     z: c0 = 0 - (2 - 2) = 0, d0 = 0 + 1 = 1;  c1 = 12 - (5 + 4) = 3, d1 = -8 + 7 = -1
const std::vector<Key> even = {{vec3(0, 0, 0), 0.0f}, {vec3(1, 2, 0), 1.0f}, {vec3(0, 4, 4), 2.0f}};

/// One second, then two: h0 = 1, h1 = 2.
///     x: D0 = 2, D1 =  8: A =  6, B = 15, C =  12: b1 =  2, b0 =  2,   b2 =  5
///     y: D0 = 4, D1 = -8: A = 12, B = -6, C = -12: b1 = -2, b0 =  7,   b2 = -5
///     z: D0 = 0, D1 =  4: A =  0, B =  6, C =   6: b1 =  1, b0 = -0.5, b2 = 2.5
/// c0 and d0 as above; c1 = (3 D1 - (b2 + 2 b1) 2) / 4, d1 = (-2 D1 + (b2 + b1) 2) / 8:
///     x: c0 = 6 - 6 = 0,    d0 = -4 + 4 = 0;    c1 = (24 - 18) / 4,  d1 = (-16 + 14) / 8
///     y: c0 = 12 - 12 = 0,  d0 = -8 + 5 = -3;   c1 = (-24 + 18) / 4, d1 = (16 - 14) / 8
///     z: c0 = 0 - 0 = 0,    d0 = 0 + 0.5 = 0.5; c1 = (12 - 9) / 4,   d1 = (-8 + 7) / 8
const std::vector<Key> uneven = {
    {vec3(0, 0, 1), 0.0f}, {vec3(2, 4, 1), 1.0f}, {vec3(10, -4, 5), 3.0f}};

class SplinePath : public ::testing::Test {
protected:
    /// The path through these points, in the place of the one before.
    Spline& Through(const std::vector<Key>& keys) {
        spline.emplace();
        AddAll(*spline, keys);
        spline->EndPath();
        return *spline;
    }

    /// Exact while `t` is the middle of a span of one cubic: its velocity is a parabola.
    static vec3 Acceleration(const Spline& path, float t, float seconds) {
        return (path.GetDerivative(t + seconds / 2) - path.GetDerivative(t - seconds / 2)) /
               seconds;
    }

    std::optional<Spline> spline;
};

} // namespace

// ------------------------------------------------------------------------------ Two points

TEST_F(SplinePath, Two_points_are_joined_by_a_straight_line_at_constant_speed) {
    // b = (5 - 1, -2 - 2, 3 - 3) / 2 s
    const Spline& path = Through(straight);
    for (const float t : {1.0f, 1.5f, 2.0f, 2.75f}) {
        SCOPED_TRACE(t);
        ExpectVector(path.GetPosition(t), 1 + 2 * (t - 1), 2 - 2 * (t - 1), 3);
        ExpectVector(path.GetDerivative(t), 2, -2, 0);
    }
}

TEST_F(SplinePath, Coefficients_of_a_straight_line_vanish_from_the_square_on) {
    Through(straight);
    const std::vector<const vec3*> abcd = SplineProbe::Coefficients(*spline);
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(abcd[0][i], straight[static_cast<std::size_t>(i)].point);
        EXPECT_EQ(abcd[1][i], vec3(2, -2, 0));
        EXPECT_EQ(abcd[2][i], vec3(0, 0, 0));
        EXPECT_EQ(abcd[3][i], vec3(0, 0, 0));
    }
}

TEST_F(SplinePath, Every_stored_value_is_a_float) {
    // The way D is 1 + s with s = 2^-23, one float step. 3 D = 3 + 3 s is halfway between two
    // floats, which are 2 s apart from 2 on; the even one is z0 = 3 + 4 s. Then
    // z1 = 3 + 3 s - z0 / 2 = 1.5 + s, b1 = z1 / 1.5 = 1 + 2 s / 3 = 1 + s; z0 - b1 = 2 + 3 s is
    // halfway again and 2 + 4 s, so that b0 = 1 + 2 s.
    constexpr float s = 0x1p-23f;
    const vec3* b = SplineProbe::B(Through({{vec3(0), 0.0f}, {vec3(1 + s), 1.0f}}));
    EXPECT_EQ(b[1].x, 1 + s);
    EXPECT_EQ(b[0].x, 1 + 2 * s);
}

// ------------------------------------------------------------------------------ Even times

TEST_F(SplinePath, Even_times_give_the_cubics_worked_out_by_hand) {
    const Spline& path = Through(even);
    // h = 0.5: b / 2 + d / 8, and b + 3 d / 4
    ExpectVector(path.GetPosition(0.5f), 0.6875f, 1, -0.375f);
    ExpectVector(path.GetDerivative(0.5f), 1.125f, 2, -0.25f);
    // h = 0.5 of the second: a + b / 2 + c / 4 + d / 8, and b + c + 3 d / 4
    ExpectVector(path.GetPosition(1.5f), 0.6875f, 3, 1.625f);
    ExpectVector(path.GetDerivative(1.5f), -1.125f, 2, 4.25f);
}

TEST_F(SplinePath, Four_points_two_seconds_apart_give_the_cubics_worked_out_by_hand) {
    // Ways of -4, 4 and 6: the right-hand side is -6, 0, 3 (4 + 6) / 2 = 15 and 9, and
    // 2 (-3) + 0 = -6, -3 + 4 0 + 3 = 0, 0 + 4 3 + 3 = 15, 3 + 2 3 = 9: b = -3, 0, 3, 3.
    //     c0 = (-12 + 6 2) / 4 = 0      d0 = (8 - 3 2) / 8 = 0.25
    //     c1 = (12 - 3 2) / 4 = 1.5     d1 = (-8 + 3 2) / 8 = -0.25
    //     c2 = (18 - (3 + 6) 2) / 4 = 0 d2 = (-12 + 6 2) / 8 = 0
    const Spline& path = Through({{vec3(0, 0, 0), 0.0f},
                                  {vec3(-4, 0, 0), 2.0f},
                                  {vec3(0, 0, 0), 4.0f},
                                  {vec3(6, 0, 0), 6.0f}});
    ExpectVector(path.GetPosition(1.0f), -2.75f, 0, 0); // -3 + 0.25
    ExpectVector(path.GetPosition(3.0f), -2.75f, 0, 0); // -4 + 1.5 - 0.25
    ExpectVector(path.GetPosition(5.0f), 3, 0, 0);
    ExpectVector(path.GetDerivative(1.0f), -2.25f, 0, 0); // -3 + 0.75
    ExpectVector(path.GetDerivative(3.0f), 2.25f, 0, 0);  // 3 - 0.75
    ExpectVector(path.GetDerivative(6.0f), 3, 0, 0);
}

TEST_F(SplinePath, Even_times_leave_no_acceleration_at_both_ends) {
    const Spline& path = Through(even);
    // 2 c0 and 2 c1 + 6 d1: what is left a hundredth of a second from the end is 6 d / 100
    ExpectVector(Acceleration(path, 0.01f, 0.02f), -0.03f, 0, 0.06f);
    ExpectVector(Acceleration(path, 1.98f, 0.02f), -0.06f, 0, 0.12f);
}

TEST_F(SplinePath, Even_times_leave_no_jump_of_the_acceleration_at_a_point) {
    const Spline& path = Through(even);
    // 2 c0 + 6 d0 = 2 c1 = (-3, 0, 6), and 6 d h on both sides of it
    constexpr float away = 0.25f;
    ExpectVector(Acceleration(path, 1 - away, away), -3 + 3 * away, 0, 6 - 6 * away);
    ExpectVector(Acceleration(path, 1 + away, away), -3 + 3 * away, 0, 6 - 6 * away);
}

// ---------------------------------------------------------------------------- Uneven times

TEST_F(SplinePath, Uneven_times_divide_by_the_following_interval_alone) {
    const Spline& path = Through(uneven); // divided by both intervals, B of x would be 10
    ExpectVector(path.GetDerivative(0.0f), 2, 7, -0.5f);
    ExpectVector(path.GetDerivative(1.0f), 2, -2, 1);
    ExpectVector(path.GetDerivative(3.0f), 5, -5, 2.5f);
}

TEST_F(SplinePath, Uneven_times_give_the_cubics_worked_out_by_hand) {
    const Spline& path = Through(uneven);
    // h = 0.5: a + b / 2 + d / 8, and b + 3 d / 4
    ExpectVector(path.GetPosition(0.5f), 1, 3.125f, 0.8125f);
    ExpectVector(path.GetDerivative(0.5f), 2, 4.75f, -0.125f);
    // h = 1: a + b + c + d, and b + 2 c + 3 d
    ExpectVector(path.GetPosition(2.0f), 5.25f, 0.75f, 2.625f);
    ExpectVector(path.GetDerivative(2.0f), 4.25f, -4.25f, 2.125f);
}

TEST_F(SplinePath, Uneven_times_leave_no_jump_of_place_and_velocity_at_a_point) {
    const Spline& path = Through(uneven);
    constexpr float step = 1e-6f; // less than the rounding at speeds up to 7
    ExpectVector(path.GetPosition(1.0f - step), 2, 4, 1);
    ExpectVector(path.GetPosition(1.0f + step), 2, 4, 1);
    constexpr float shorter = 1e-7f; // likewise at accelerations up to 18
    ExpectVector(path.GetDerivative(1.0f - shorter), 2, -2, 1);
    ExpectVector(path.GetDerivative(1.0f + shorter), 2, -2, 1);
}

// ------------------------------------------------------------------------------ Which time

TEST_F(SplinePath, Before_the_first_time_the_first_cubic_goes_on_backwards) {
    const Spline& path = Through(even);
    // h = -1: a - b + c - d and b - 2 c + 3 d
    ExpectVector(path.GetPosition(-1.0f), -1, -2, 0);
    ExpectVector(path.GetDerivative(-1.0f), 0, 2, 2);
    ExpectVector(Through(straight).GetPosition(0.0f), -1, 4, 3);
}

TEST_F(SplinePath, From_the_last_time_on_it_is_exactly_the_last_point) {
    const vec3 last(0.1f, -7.7f, 12345.678f); // no cubic would end exactly there
    const Spline& path = Through({{vec3(0, 0, 0), 0.3f}, {vec3(1, 2, 0), 1.7f}, {last, 4.1f}});
    for (const float t : {4.1f, 4.2f, 1e6f, std::numeric_limits<float>::infinity()})
        EXPECT_EQ(path.GetPosition(t), last) << t;
}

TEST_F(SplinePath, From_the_last_time_on_the_velocity_is_that_of_arrival) {
    const Spline& path = Through(uneven);
    for (const float t : {3.0f, 3.5f, 1e6f, std::numeric_limits<float>::infinity()}) {
        SCOPED_TRACE(t);
        EXPECT_EQ(path.GetDerivative(t), SplineProbe::B(*spline)[2]);
        ExpectVector(path.GetDerivative(t), 5, -5, 2.5f);
    }
}

TEST_F(SplinePath, Just_before_the_last_time_it_is_still_under_way) {
    const Spline& path = Through(even);
    const float t = std::nextafter(2.0f, 0.0f);
    SplineProbe::A(*spline)[2] = vec3(1000); // only the time after the path reads it
    ExpectVector(path.GetPosition(t), 0, 4, 4);
}

TEST_F(SplinePath, A_time_that_is_not_a_number_is_after_the_end) {
    EXPECT_EQ(Through(even).GetPosition(std::numeric_limits<float>::quiet_NaN()), even[2].point);
}

TEST_F(SplinePath, Passes_through_every_point_at_its_time) {
    for (const std::vector<Key>& keys : {straight, even, uneven}) {
        const Spline& path = Through(keys);
        for (const Key& key : keys)
            ExpectVector(path.GetPosition(key.time), key.point.x, key.point.y, key.point.z);
    }
}

TEST_F(SplinePath, A_points_own_time_belongs_to_the_interval_that_ends_there) {
    const Spline& path = Through(uneven);
    SplineProbe::A(*spline)[1] = vec3(1000); // read from the second interval on
    ExpectVector(path.GetPosition(1.0f), 2, 4, 1);
    EXPECT_GT(path.GetPosition(std::nextafter(1.0f, 2.0f)).x, 900.0f);
    SplineProbe::B(*spline)[1] = vec3(1000);
    ExpectVector(path.GetDerivative(1.0f), 2, -2, 1);
}

TEST_F(SplinePath, Is_asked_for_times_in_any_order) {
    const Spline& path = Through(uneven);
    for (int again = 0; again < 2; ++again) {
        ExpectVector(path.GetPosition(5.0f), 10, -4, 5);
        ExpectVector(path.GetPosition(0.5f), 1, 3.125f, 0.8125f);
        ExpectVector(path.GetPosition(2.0f), 5.25f, 0.75f, 2.625f);
    }
}

// -------------------------------------------------------------------------------- Its life

TEST(Spline, Is_empty_and_has_no_coefficients_at_first) {
    const Spline spline;
    EXPECT_EQ(SplineProbe::LastIndex(spline), -1);
    EXPECT_TRUE(SplineProbe::Points(spline).empty());
    EXPECT_TRUE(SplineProbe::Times(spline).empty());
    for (const vec3* coefficients : SplineProbe::Coefficients(spline))
        EXPECT_EQ(coefficients, nullptr);
}

TEST(Spline, Keeps_points_and_times_in_the_order_they_were_added) {
    Spline spline;
    AddAll(spline, uneven);
    EXPECT_EQ(SplineProbe::LastIndex(spline), 2);
    EXPECT_EQ(SplineProbe::Times(spline), (std::vector<float>{0, 1, 3}));
    for (std::size_t i = 0; i < uneven.size(); ++i)
        EXPECT_EQ(SplineProbe::Points(spline)[i], uneven[i].point) << i;
}

TEST(Spline, Makes_four_arrays_once_and_frees_them_at_its_end) {
    const Arrays before = arrays;
    {
        Spline spline;
        AddAll(spline, even);
        EXPECT_EQ(arrays.made, before.made);
        spline.EndPath();
        EXPECT_EQ(arrays.made - before.made, 4);
        EXPECT_EQ(arrays.freed, before.freed);
    }
    EXPECT_EQ(arrays.made - before.made, 4);
    EXPECT_EQ(arrays.freed - before.freed, 4);
}

TEST(Spline, Ended_twice_leaves_its_first_coefficients_behind) {
    const Arrays before = arrays;
    {
        Spline spline;
        AddAll(spline, straight);
        spline.EndPath();
        spline.AddPoint(vec3(9, -6, 3), 5.0f); // on the same line at the same speed
        spline.EndPath();
        ExpectVector(spline.GetPosition(4.0f), 7, -4, 3);
        EXPECT_EQ(arrays.made - before.made, 8);
    }
    EXPECT_EQ(arrays.freed - before.freed, 4);
}

TEST(Spline, Destroyed_without_being_ended_it_frees_nothing) {
    const Arrays before = arrays;
    {
        Spline spline;
        AddAll(spline, even);
    }
    EXPECT_EQ(arrays.freed, before.freed);
}

TEST(Spline, With_fewer_than_two_points_there_is_no_path_and_no_harm) {
    const Arrays before = arrays;
    for (const std::size_t count : {static_cast<std::size_t>(0), static_cast<std::size_t>(1)}) {
        SCOPED_TRACE(count);
        Spline spline;
        AddAll(spline, {even.rbegin(), even.rbegin() + static_cast<std::ptrdiff_t>(count)});
        spline.EndPath();
        for (const float t : {-1.0f, 0.0f, 2.0f, 3.0f}) {
            EXPECT_EQ(spline.GetPosition(t), vec3(0, 0, 0));
            EXPECT_EQ(spline.GetDerivative(t), vec3(0, 0, 0));
        }
    }
    EXPECT_EQ(arrays.made, before.made);
    EXPECT_EQ(arrays.freed, before.freed);
}

TEST(Spline, Asked_before_it_is_ended_it_answers_with_the_zero_vector) {
    Spline spline;
    AddAll(spline, uneven);
    EXPECT_EQ(spline.GetPosition(0.5f), vec3(0, 0, 0));
    EXPECT_EQ(spline.GetDerivative(0.5f), vec3(0, 0, 0));
}

TEST(Spline, Gets_its_path_when_a_second_point_follows_an_end_in_vain) {
    Spline spline;
    spline.AddPoint(straight[0].point, straight[0].time);
    spline.EndPath();
    spline.AddPoint(straight[1].point, straight[1].time);
    spline.EndPath();
    ExpectVector(spline.GetPosition(2.0f), 3, 0, 3);
}

TEST(Spline, Is_not_copied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Spline>);
    EXPECT_FALSE(std::is_copy_assignable_v<Spline>);
}

TEST(Spline, Is_its_coefficients_then_points_and_times_then_their_number) {
    const Spline spline;
    const std::vector<const void*> fields = SplineProbe::Fields(spline);
    EXPECT_EQ(fields.front(), &spline) << "nothing stands before them, no virtual table either";
    EXPECT_TRUE(InOrder(fields));
}
