#include "engine/math/vec2.h"

#include <cmath>
#include <type_traits>

#include <gtest/gtest.h>

using namespace Vell;

namespace {

TEST(Vec2, Keeps_its_components_in_order) {
    const vec2 v(1.5f, -2.0f);
    EXPECT_EQ(v.x, 1.5f);
    EXPECT_EQ(v.y, -2.0f);
    static_assert(std::is_same_v<decltype(v.x), float>);
}

TEST(Vec2, Refers_to_y_at_index_minus_one) {
    vec2 v(1, 2);
    EXPECT_EQ(&v[-1], &v.y);
}

TEST(Vec2, Is_zero_when_divided_by_zero_and_unchanged_when_divided_in_place) {
    EXPECT_EQ(vec2(4, 6) / 0.0f, vec2(0, 0));
    vec2 v(4, 6);
    v /= 0.0f;
    EXPECT_EQ(v, vec2(4, 6));
}

TEST(Vec2, Is_capped_by_Min_and_raised_by_Max) {
    vec2 capped(5, -3);
    capped.Min(1);
    EXPECT_EQ(capped, vec2(1, -3));
    vec2 raised(-1, 2);
    raised.Max(0);
    EXPECT_EQ(raised, vec2(0, 2));
}

TEST(Vec2, Measures_the_distance_to_another_point) {
    // (1, 1) to (4, 5): 3 and 4, so 5.
    EXPECT_FLOAT_EQ(vec2(1, 1).Distance(vec2(4, 5)), 5.0f);
    EXPECT_EQ(vec2(1, 1).Distance(vec2(1, 1)), 0.0f);
}

TEST(Vec2, Spans_a_triangle_whose_sign_tells_left_from_right) {
    // 3 * 4 - 1 * 2 = 10: b lies to the left of a.
    static_assert(Cross(vec2(3, 1), vec2(2, 4)) == 10.0f);
    EXPECT_EQ(Cross(vec2(2, 4), vec2(3, 1)), -10.0f);
}

TEST(IVec2, Keeps_its_components_in_order) {
    const ivec2 v(960, -89);
    EXPECT_EQ(v.x, 960);
    EXPECT_EQ(v.y, -89);
    static_assert(std::is_same_v<decltype(v.x), std::int32_t>);
}

TEST(IVec2, Measures_distances_with_integer_differences) {
    EXPECT_FLOAT_EQ(ivec2(1, 1).Distance(ivec2(4, 5)), 5.0f);
    // 1 and 1: the root of 2 as a float, not truncated.
    EXPECT_FLOAT_EQ(ivec2(0, 0).Distance(ivec2(1, 1)), 1.41421356f);
}

TEST(IVec2, Wraps_squared_differences_at_32_bits) {
    // 65536 squared is 2^32 and wraps to 0; 50000 squared wraps to a negative number.
    EXPECT_EQ(ivec2(0, 0).Distance(ivec2(65536, 2)), 2.0f);
    EXPECT_TRUE(std::isnan(ivec2(0, 0).Distance(ivec2(50000, 0))));
}

} // namespace
