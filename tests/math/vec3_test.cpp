#include "engine/math/vec3.h"

#include <cmath>
#include <type_traits>

#include <gtest/gtest.h>

using namespace Vell;

namespace {

TEST(Vec3, Keeps_its_components_in_order) {
    const vec3 v(1, 2, 3);
    EXPECT_EQ(v.x, 1.0f);
    EXPECT_EQ(v.y, 2.0f);
    EXPECT_EQ(v.z, 3.0f);
}

TEST(Vec3, Refers_to_z_at_index_seven) {
    vec3 v;
    EXPECT_EQ(&v[7], &v.z);
}

TEST(Vec3, Multiplies_component_by_component) {
    EXPECT_EQ(vec3(1, 2, 3) * vec3(4, 5, 6), vec3(4, 10, 18));
}

TEST(Vec3, Is_zero_when_divided_by_a_vector_with_a_zero) {
    EXPECT_EQ(vec3(2, 2, 2) / vec3(1, 0, 1), vec3(0, 0, 0));
}

TEST(Vec3, Measures_the_distance_to_another_point) {
    // 2, 3 and 6: 4 + 9 + 36 = 49.
    EXPECT_FLOAT_EQ(vec3(1, 1, 1).Distance(vec3(3, -2, 7)), 7.0f);
}

TEST(Vec3, Sums_the_dot_product_in_double) {
    static_assert(std::is_same_v<decltype(vec3().DotProduct(vec3())), double>);
    // 1 * 4 + 2 * -5 + 3 * 6 = 12.
    EXPECT_EQ(vec3(1, 2, 3).DotProduct(vec3(4, -5, 6)), 12.0);
    // A float sum loses the 1 beside 2^24.
    EXPECT_EQ(vec3(16777216.0f, 1, 0).DotProduct(vec3(1, 1, 0)), 16777217.0);
}

TEST(Vec3, Crosses_in_place_reading_the_components_it_has_just_written) {
    struct Case {
        vec3 u, v, expected;
    };
    const Case cases[] = {
        // x = 0 * 0 - 0 * 1 = 0, y = 0 * 0 - 0 * 0 = 0, z = 0 * 1 - 0 * 0 = 0
        {vec3(1, 0, 0), vec3(0, 1, 0), vec3(0, 0, 0)},
        // x = 1 * 1 - 0 * 0 = 1, y = 0 * 0 - 1 * 1 = -1, z = 1 * 0 - (-1) * 0 = 0
        {vec3(0, 1, 0), vec3(0, 0, 1), vec3(1, -1, 0)},
        // x = 2 * 6 - 3 * 5 = -3, y = 3 * 4 - (-3) * 6 = 30, z = (-3) * 5 - 30 * 4 = -135
        {vec3(1, 2, 3), vec3(4, 5, 6), vec3(-3, 30, -135)},
    };
    for (const Case& c : cases) {
        vec3 u = c.u;
        EXPECT_EQ(&u.CrossProduct(c.v), &u);
        EXPECT_EQ(u, c.expected) << u.x << ' ' << u.y << ' ' << u.z;
    }
}

TEST(Vec3, Crosses_two_others_in_the_ordinary_way) {
    vec3 v(9, 9, 9);
    EXPECT_EQ(&v.CrossProduct(vec3(1, 0, 0), vec3(0, 1, 0)), &v);
    EXPECT_EQ(v, vec3(0, 0, 1));
    // 2 * 6 - 3 * 5 = -3, 3 * 4 - 1 * 6 = 6, 1 * 5 - 2 * 4 = -3
    v.CrossProduct(vec3(1, 2, 3), vec3(4, 5, 6));
    EXPECT_EQ(v, vec3(-3, 6, -3));
}

TEST(Vec3, May_itself_be_one_of_the_two_it_crosses) {
    vec3 first(1, 2, 3), second(4, 5, 6);
    EXPECT_EQ(first.CrossProduct(first, second), vec3(-3, 6, -3));
    EXPECT_EQ(second.CrossProduct(vec3(1, 2, 3), second), vec3(-3, 6, -3));
}

TEST(Vec3, Forms_cross_products_in_double) {
    // 4097 * 4097 - 4096 * 4098 = 16785409 - 16785408 = 1; the first product needs 25 bits, one
    // more than a float has.
    vec3 v;
    v.CrossProduct(vec3(0, 4097, 4096), vec3(0, 4098, 4097));
    EXPECT_EQ(v.x, 1.0f);
}

TEST(Vec3, Is_crossed_into_a_new_vector_by_the_free_function) {
    static_assert(Cross(vec3(1, 0, 0), vec3(0, 1, 0)) == vec3(0, 0, 1));
    // 2 * 6 - 3 * 5 = -3, 3 * 4 - 1 * 6 = 6, 1 * 5 - 2 * 4 = -3
    EXPECT_EQ(Cross(vec3(1, 2, 3), vec3(4, 5, 6)), vec3(-3, 6, -3));
}

TEST(Vec3, Is_reckoned_with_by_the_compiler_where_all_is_known) {
    static_assert(2.0f * -(vec3(1, 2, 3) + vec3(3, 2, 1)) / 4.0f == vec3(-2, -2, -2));
    static_assert(vec3(2, 4, 6) / vec3(2, 2, 2) * vec3(3, 2, 1) - vec3(1) == vec3(2, 3, 2));
    static_assert(Dot(vec3(1, 2, 3), vec3(4, -5, 6)) == 12.0f);
}

TEST(IVec3, Keeps_its_components_in_order) {
    const ivec3 v(1, -2, 3);
    EXPECT_EQ(v.x, 1);
    EXPECT_EQ(v.y, -2);
    EXPECT_EQ(v.z, 3);
}

TEST(IVec3, Measures_distances_with_integer_differences) {
    EXPECT_FLOAT_EQ(ivec3(1, 1, 1).Distance(ivec3(3, -2, 7)), 7.0f);
    // 50000 squared is 2.5e9, which wraps to a negative number.
    EXPECT_TRUE(std::isnan(ivec3(0, 0, 0).Distance(ivec3(0, 0, 50000))));
}

TEST(IVec3, Has_an_integer_dot_product) {
    static_assert(std::is_same_v<decltype(ivec3().DotProduct(ivec3())), std::int32_t>);
    EXPECT_EQ(ivec3(1, 2, 3).DotProduct(ivec3(4, -5, 6)), 12);
    // 2^16 * 2^16 wraps to 0.
    EXPECT_EQ(ivec3(65536, 1, 0).DotProduct(ivec3(65536, 5, 0)), 5);
}

TEST(IVec3, Crosses_as_the_float_type_does) {
    ivec3 inPlace(1, 2, 3);
    EXPECT_EQ(&inPlace.CrossProduct(ivec3(4, 5, 6)), &inPlace);
    EXPECT_EQ(inPlace, ivec3(-3, 30, -135));
    ivec3 ordinary;
    EXPECT_EQ(&ordinary.CrossProduct(ivec3(1, 2, 3), ivec3(4, 5, 6)), &ordinary);
    EXPECT_EQ(ordinary, ivec3(-3, 6, -3));
}

TEST(IVec3, May_itself_be_one_of_the_two_it_crosses) {
    ivec3 first(1, 2, 3), second(4, 5, 6);
    EXPECT_EQ(first.CrossProduct(first, second), ivec3(-3, 6, -3));
    EXPECT_EQ(second.CrossProduct(ivec3(1, 2, 3), second), ivec3(-3, 6, -3));
}

} // namespace
