#include "engine/math/plane.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;

namespace {

constexpr float floatPrecision = 1e-6f;

void ExpectNear(const vec4& actual, const vec4& expected) {
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], floatPrecision) << "component " << i;
}

TEST(Plane, Starts_empty_with_nothing_inside) {
    const Plane plane;
    EXPECT_EQ(plane.Get(), vec4(0, 0, 0, 0));
    EXPECT_FALSE(plane.PointIn(vec3(0, 0, 0)));
    EXPECT_FALSE(plane.PointIn(vec3(1, 2, 3)));
}

TEST(Plane, Is_its_normal_and_then_its_distance) {
    const Plane plane(vec3(1, 2, 3), 4);
    float packed[4] = {};
    static_assert(sizeof(Plane) == sizeof(packed));
    std::memcpy(packed, &plane, sizeof(packed));
    EXPECT_THAT(packed, ::testing::ElementsAre(1, 2, 3, 4));
}

TEST(Plane, Takes_normal_and_distance_in_every_form) {
    EXPECT_EQ(Plane(vec3(1, 2, 3), 4).Get(), vec4(1, 2, 3, 4));
    Plane fromNumbers, fromVector;
    fromNumbers.Set(1, 2, 3, 4);
    fromVector.Set(vec3(5, 6, 7), 8);
    EXPECT_EQ(fromNumbers.Get(), vec4(1, 2, 3, 4));
    EXPECT_EQ(fromVector.Get(), vec4(5, 6, 7, 8));
}

TEST(Plane, Has_its_inside_where_the_normal_points_and_never_on_itself) {
    // y = 2, inside above.
    const Plane plane(vec3(0, 1, 0), -2);
    EXPECT_TRUE(plane.PointIn(vec3(7, 2.001f, -9)));
    EXPECT_FALSE(plane.PointIn(vec3(7, 2, -9)));
    EXPECT_FALSE(plane.PointIn(vec3(7, 1.999f, -9)));
}

TEST(Plane, Tells_its_sides_apart_by_every_component) {
    // x + 2 y + 4 z = 8 cuts the axes at 8, 4 and 2.
    const Plane plane(vec3(1, 2, 4), -8);
    const vec3 cuts[] = {vec3(8, 0, 0), vec3(0, 4, 0), vec3(0, 0, 2)};
    for (const vec3& cut : cuts) {
        EXPECT_TRUE(plane.PointIn(cut * 1.25f)) << cut.x << ' ' << cut.y << ' ' << cut.z;
        EXPECT_FALSE(plane.PointIn(cut)) << cut.x << ' ' << cut.y << ' ' << cut.z;
    }
}

TEST(Plane, Tells_its_sides_apart_where_a_float_sum_cannot) {
    // 1 + 2^-30 - 1: in floats the 2^-30 is lost beside the 1.
    const Plane plane(vec3(1, 1, 0), -1);
    EXPECT_TRUE(plane.PointIn(vec3(1, 0x1p-30f, 0)));
    EXPECT_FALSE(plane.PointIn(vec3(1, -0x1p-30f, 0)));
}

TEST(Plane, Divides_distance_and_normal_by_the_length_of_the_normal) {
    for (const float d : {10.0f, -10.0f}) {
        Plane plane(vec3(0, -3, 4), d);
        plane.Normalize();
        ExpectNear(plane.Get(), vec4(0, -0.6f, 0.8f, d / 5)); // length 5
    }
}

TEST(Plane, Keeps_a_zero_normal_and_divides_d_by_zero_when_normalised) {
    Plane positive(vec3(0, 0, 0), 1);
    positive.Normalize();
    EXPECT_EQ(positive.Get().x, 0.0f);
    EXPECT_EQ(positive.Get().y, 0.0f);
    EXPECT_EQ(positive.Get().z, 0.0f);
    EXPECT_TRUE(std::isinf(positive.Get().w));
    Plane empty;
    empty.Normalize();
    EXPECT_TRUE(std::isnan(empty.Get().w));
}

TEST(Plane, Takes_its_normal_from_a_triangle_by_the_in_place_cross_product_and_d_from_its_p1) {
    const float half = static_cast<float>(std::sqrt(0.5));
    const float third = static_cast<float>(std::sqrt(1.0 / 3.0));
    struct Case {
        vec3 p2;
        vec4 plane;
    };
    // p1 = (3, 1, 5); normal = p3 - p1 = (0, 1, 0), crossed in place with p2 - p1.
    const Case cases[] = {
        // With (0, 0, 1): x = 1 * 1 - 0 * 0 = 1, y = 0 * 0 - 1 * 1 = -1, z = 1 * 0 - (-1) * 0 = 0.
        // Normalised by root 2; d = -(3 - 1) / root 2 = -2 half.
        {vec3(3, 1, 6), vec4(half, -half, 0, -2 * half)},
        // With (1, 0, 1): x = 1 * 1 - 0 * 0 = 1, y = 0 * 1 - 1 * 1 = -1, z = 1 * 0 - (-1) * 1 = 1.
        // Normalised by root 3; d = -(3 - 1 + 5) / root 3. This plane misses the other two points:
        // p2 would give 4 - 1 + 6 = 9, p3 3 - 2 + 5 = 6.
        {vec3(4, 1, 6), vec4(third, -third, third, -7 * third)},
    };
    for (const Case& c : cases) {
        Plane plane;
        EXPECT_EQ(&plane.SetFromTri(vec3(3, 1, 5), c.p2, vec3(3, 2, 5)), &plane);
        ExpectNear(plane.Get(), c.plane);
    }
}

TEST(Plane, Has_a_zero_normal_for_a_triangle_that_the_in_place_product_makes_vanish) {
    // (1, 0, 0) crossed in place with (0, 1, 0) is zero, although the triangle is not degenerate.
    Plane plane(vec3(1, 1, 1), 1);
    plane.SetFromTri(vec3(2, 2, 2), vec3(2, 3, 2), vec3(3, 2, 2));
    EXPECT_EQ(plane.Get(), vec4(0, 0, 0, 0));
}

/// The answer in so many words.
bool AnyOfEightIn(const Plane& plane, const vec3& a, const vec3& b) {
    for (int i = 0; i < 8; ++i)
        if (plane.PointIn(
                vec3((i & 1) != 0 ? b.x : a.x, (i & 2) != 0 ? b.y : a.y, (i & 4) != 0 ? b.z : a.z)))
            return true;
    return false;
}

TEST(Plane, Sees_a_box_by_any_one_of_its_corners) {
    // Its planes pass within a rounding of a corner as a rule; some numbers are none, or endless.
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    constexpr float endless = std::numeric_limits<float>::infinity();
    constexpr float special[] = {0.0f, -0.0f, 1.0f, none, endless, -endless, 1e-40f, 3e38f};
    std::mt19937 random(1);
    const auto number = [&] {
        return random() % 16 == 0 ? special[random() % 8]
                                  : static_cast<float>(random() % 2001) / 1000.0f - 1.0f;
    };
    int seen = 0;
    for (int i = 0; i < 100'000; ++i) {
        const vec3 normal(number(), number(), number());
        const vec3 a(number(), number(), number());
        const vec3 b(number(), number(), number());
        const float d = random() % 2 == 0 ? static_cast<float>(-normal.DotProduct(a)) : number();
        const Plane plane(normal, d);
        const bool expected = AnyOfEightIn(plane, a, b);
        ASSERT_EQ(plane.AnyCornerIn(a, b), expected) << i;
        seen += expected ? 1 : 0;
    }
    EXPECT_GT(seen, 30'000);
    EXPECT_LT(seen, 90'000);
}

} // namespace
