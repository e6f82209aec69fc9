#include "engine/math/vec4.h"

#include <cmath>
#include <cstdlib>
#include <type_traits>

#include <gtest/gtest.h>

using namespace Vell;

namespace {

TEST(Vec4, Keeps_its_components_in_order) {
    const vec4 v(1, 2, 3, 4);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 2.0f);
    EXPECT_EQ(v.z, 3.0f);
    EXPECT_EQ(v.w, 4.0f);
}

TEST(Vec4, Refers_to_w_at_index_seven) {
    vec4 v;
    EXPECT_EQ(&v[7], &v.w);
}

TEST(Vec4, Divides_w_without_the_zero_check_of_the_others) {
    const vec4 v = vec4(1, 1, 1, 1) / vec4(1, 1, 1, 0);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.z, 1.0f);
    EXPECT_TRUE(std::isinf(v.w));
    // A zero before w still makes all of it zero.
    EXPECT_EQ(vec4(1, 1, 1, 1) / vec4(1, 1, 0, 0), vec4());
}

TEST(Vec4, Sums_the_dot_product_over_all_four_in_double) {
    static_assert(std::is_same_v<decltype(vec4().DotProduct(vec4())), double>);
    // 5 + 12 + 21 + 32 = 70.
    EXPECT_EQ(vec4(1, 2, 3, 4).DotProduct(vec4(5, 6, 7, 8)), 70.0);
    EXPECT_EQ(vec4(16777216.0f, 0, 0, 1).DotProduct(vec4(1)), 16777217.0);
}

TEST(Vec4, Crosses_in_place_and_zeroes_w) {
    // As three components: -3, 30, -135.
    vec4 v(1, 2, 3, 7);
    EXPECT_EQ(&v.CrossProduct(vec4(4, 5, 6, 8)), &v);
    EXPECT_EQ(v, vec4(-3, 30, -135, 0));
}

TEST(Vec4, Takes_x_of_the_first_factor_where_the_ordinary_cross_product_takes_y) {
    vec4 v(9);
    EXPECT_EQ(&v.CrossProduct(vec4(0, 1, 0, 5), vec4(0, 0, 1, 7)), &v);
    EXPECT_EQ(v, vec4(0, 0, 0, 0)); // the ordinary one has x = 1
    // x = 1 * 6 - 3 * 5 = -9, y = 3 * 4 - 1 * 6 = 6, z = 1 * 5 - 2 * 4 = -3
    v.CrossProduct(vec4(1, 2, 3, 1), vec4(4, 5, 6, 1));
    EXPECT_EQ(v, vec4(-9, 6, -3, 0));
}

TEST(Vec4, May_itself_be_one_of_the_two_it_crosses) {
    vec4 first(1, 2, 3, 1), second(4, 5, 6, 1);
    EXPECT_EQ(first.CrossProduct(first, second), vec4(-9, 6, -3, 0));
    EXPECT_EQ(second.CrossProduct(vec4(1, 2, 3, 1), second), vec4(-9, 6, -3, 0));
}

TEST(IVec4, Keeps_its_components_in_order) {
    const ivec4 v(1, -2, 3, -4);
    EXPECT_EQ(v.x, 1);
    EXPECT_EQ(v.y, -2);
    EXPECT_EQ(v.z, 3);
    EXPECT_EQ(v.w, -4);
}

TEST(IVec4DeathTest, Divides_w_by_zero_without_the_check_of_the_others) {
    // Intended, as the float type's w becomes infinite; integers have no such value.
    const volatile int zero = 0;
    EXPECT_DEATH(
        {
            const ivec4 quotient = ivec4(1) / ivec4(1, 1, 1, zero);
            std::exit(quotient.w); // so that the division is not left out
        },
        "");
    // A zero before w still makes all of it zero.
    EXPECT_EQ(ivec4(1) / ivec4(1, 1, 0, zero), ivec4());
}

TEST(IVec4, Sums_its_dot_product_with_floats_before_it_truncates) {
    static_assert(std::is_same_v<decltype(ivec4().DotProduct(vec4())), std::int32_t>);
    EXPECT_EQ(ivec4(1, 2, 3, 4).DotProduct(vec4(5, 6, 7, 8)), 70); // 5 + 12 + 21 + 32
    // Four times 0.5 is 2; truncated one by one it would be 0.
    EXPECT_EQ(ivec4(1).DotProduct(vec4(0.5f)), 2);
    // 1 * 0.5 + 2 * 0.5 = 1.5 and its negative, toward zero.
    EXPECT_EQ(ivec4(1, 2, 0, 0).DotProduct(vec4(0.5f)), 1);
    EXPECT_EQ(ivec4(1, 2, 0, 0).DotProduct(vec4(-0.5f)), -1);
}

TEST(IVec4, Has_dot_product_zero_when_no_int_can_hold_the_sum) {
    EXPECT_EQ(ivec4(1).DotProduct(vec4(1e30f)), 0);
    EXPECT_EQ(ivec4(1).DotProduct(vec4(std::nanf(""))), 0);
    // The ends of the range: 2^31 does not fit, 2^31 - 1 and -2^31 do.
    EXPECT_EQ(ivec4(1, 0, 0, 0).DotProduct(vec4(2147483648.0f, 0, 0, 0)), 0);
    EXPECT_EQ(ivec4(2147483647, 0, 0, 0).DotProduct(vec4(1)), 2147483647);
    EXPECT_EQ(ivec4(1, 0, 0, 0).DotProduct(vec4(-2147483648.0f, 0, 0, 0)), -2147483647 - 1);
}

TEST(IVec4, Crosses_as_the_float_type_does) {
    ivec4 inPlace(1, 2, 3, 7);
    EXPECT_EQ(&inPlace.CrossProduct(ivec4(4, 5, 6, 8)), &inPlace);
    EXPECT_EQ(inPlace, ivec4(-3, 30, -135, 0));
    ivec4 ofTwo(9);
    EXPECT_EQ(&ofTwo.CrossProduct(ivec4(1, 2, 3, 1), ivec4(4, 5, 6, 1)), &ofTwo);
    EXPECT_EQ(ofTwo, ivec4(-9, 6, -3, 0));
}

TEST(IVec4, May_itself_be_one_of_the_two_it_crosses) {
    ivec4 first(1, 2, 3, 1), second(4, 5, 6, 1);
    EXPECT_EQ(first.CrossProduct(first, second), ivec4(-9, 6, -3, 0));
    EXPECT_EQ(second.CrossProduct(ivec4(1, 2, 3, 1), second), ivec4(-9, 6, -3, 0));
}

} // namespace
