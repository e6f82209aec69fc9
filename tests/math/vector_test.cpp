// What all six vector types share. What only some have is tested in vec2_test, vec3_test,
// vec4_test.

#include "engine/math/vec2.h"
#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

using namespace Vell;

namespace {

template <class T>
using ScalarOf = std::remove_reference_t<decltype(std::declval<T&>().x)>;

template <class T>
constexpr int widthOf = sizeof(T) / sizeof(ScalarOf<T>);

/// The first two, three or four of the numbers, as many as T has components.
template <class T>
T Take(int a, int b, int c, int d) {
    const int numbers[] = {a, b, c, d};
    T result;
    for (int i = 0; i < widthOf<T>; ++i)
        result[i] = static_cast<ScalarOf<T>>(numbers[i]);
    return result;
}

template <class T>
class Vector : public ::testing::Test {};

using AllTypes = ::testing::Types<vec2, vec3, vec4, ivec2, ivec3, ivec4>;
TYPED_TEST_SUITE(Vector, AllTypes);

TYPED_TEST(Vector, Is_nothing_but_its_packed_components) {
    const TypeParam v = Take<TypeParam>(1, 2, 3, 4);
    const auto* packed = reinterpret_cast<const ScalarOf<TypeParam>*>(&v);
    for (int i = 0; i < widthOf<TypeParam>; ++i)
        EXPECT_EQ(packed[i], ScalarOf<TypeParam>(i + 1));
    EXPECT_TRUE(std::is_trivially_copyable_v<TypeParam>);
    EXPECT_TRUE(std::is_trivially_destructible_v<TypeParam>);
    EXPECT_EQ(sizeof(ScalarOf<TypeParam>), 4u);
}

TYPED_TEST(Vector, Is_zero_after_default_construction) {
    EXPECT_EQ(TypeParam(), Take<TypeParam>(0, 0, 0, 0));
}

TYPED_TEST(Vector, Takes_one_scalar_for_every_component) {
    EXPECT_EQ(TypeParam(7), Take<TypeParam>(7, 7, 7, 7));
    EXPECT_EQ(TypeParam(0), TypeParam());
}

TYPED_TEST(Vector, Never_turns_a_scalar_into_a_vector_by_itself) {
    EXPECT_FALSE((std::is_convertible_v<ScalarOf<TypeParam>, TypeParam>));
}

TYPED_TEST(Vector, Is_copied_by_value) {
    TypeParam original = Take<TypeParam>(1, 2, 3, 4);
    TypeParam copy(original);
    TypeParam assigned;
    EXPECT_EQ(&(assigned = original), &assigned);
    original.x = 9;
    EXPECT_EQ(copy, Take<TypeParam>(1, 2, 3, 4));
    EXPECT_EQ(assigned, Take<TypeParam>(1, 2, 3, 4));
}

TYPED_TEST(Vector, Gives_references_to_its_components_by_index) {
    TypeParam v;
    for (int i = 0; i < widthOf<TypeParam>; ++i) {
        v[i] = static_cast<ScalarOf<TypeParam>>(i + 1);
        EXPECT_EQ(&v(i), &v[i]);
    }
    EXPECT_EQ(v, Take<TypeParam>(1, 2, 3, 4));
    const TypeParam& constant = v;
    EXPECT_EQ(constant[1], ScalarOf<TypeParam>(2));
    EXPECT_EQ(constant(1), ScalarOf<TypeParam>(2));
}

TYPED_TEST(Vector, Answers_every_index_outside_the_range_with_the_last_component) {
    TypeParam v;
    auto* const last = &v[widthOf<TypeParam> - 1];
    for (int i : {-1000, -1, widthOf<TypeParam>, 7, 1000}) {
        EXPECT_EQ(&v[i], last) << "index " << i;
        EXPECT_EQ(&v(i), last) << "index " << i;
        EXPECT_EQ(&std::as_const(v)[i], last) << "index " << i;
        EXPECT_EQ(&std::as_const(v)(i), last) << "index " << i;
    }
}

TYPED_TEST(Vector, Is_equal_only_when_every_component_is) {
    const TypeParam v = Take<TypeParam>(1, 2, 3, 4);
    EXPECT_TRUE(v == v);
    EXPECT_FALSE(v != v);
    for (int i = 0; i < widthOf<TypeParam>; ++i) {
        TypeParam other = v;
        other[i] = 0;
        EXPECT_FALSE(v == other) << "component " << i;
    }
}

TYPED_TEST(Vector, Adds_and_subtracts_component_by_component) {
    const TypeParam a = Take<TypeParam>(1, 2, 3, 4);
    const TypeParam b = Take<TypeParam>(10, -20, 30, -40);
    EXPECT_EQ(a + b, Take<TypeParam>(11, -18, 33, -36));
    EXPECT_EQ(a - b, Take<TypeParam>(-9, 22, -27, 44));
    TypeParam v = a;
    EXPECT_EQ(&(v += b), &v);
    EXPECT_EQ(v, Take<TypeParam>(11, -18, 33, -36));
    EXPECT_EQ(&(v -= b), &v);
    EXPECT_EQ(v, a);
}

TYPED_TEST(Vector, Scales_every_component) {
    TypeParam v = Take<TypeParam>(1, -2, 3, -4);
    EXPECT_EQ(v * 3, Take<TypeParam>(3, -6, 9, -12));
    EXPECT_EQ(&(v *= 3), &v);
    EXPECT_EQ(v, Take<TypeParam>(3, -6, 9, -12));
}

TYPED_TEST(Vector, May_stand_behind_its_scale_or_a_minus_sign) {
    const TypeParam v = Take<TypeParam>(1, -2, 3, -4);
    EXPECT_EQ(3 * v, Take<TypeParam>(3, -6, 9, -12));
    EXPECT_EQ(-v, Take<TypeParam>(-1, 2, -3, 4));
}

TYPED_TEST(Vector, Scales_by_one_of_its_own_components) {
    TypeParam v = Take<TypeParam>(2, 3, 4, 5);
    v *= v.x;
    EXPECT_EQ(v, Take<TypeParam>(4, 6, 8, 10));
}

TYPED_TEST(Vector, Multiplies_vectors_component_by_component) {
    EXPECT_EQ(Take<TypeParam>(1, 2, 3, 4) * Take<TypeParam>(5, 6, -7, 8),
              Take<TypeParam>(5, 12, -21, 32));
}

TYPED_TEST(Vector, Divides_by_a_scalar) {
    TypeParam v = Take<TypeParam>(6, -9, 12, 15);
    EXPECT_EQ(v / 3, Take<TypeParam>(2, -3, 4, 5));
    EXPECT_EQ(&(v /= 3), &v);
    EXPECT_EQ(v, Take<TypeParam>(2, -3, 4, 5));
}

TYPED_TEST(Vector, Is_zero_after_a_division_by_a_zero_scalar) {
    EXPECT_EQ(Take<TypeParam>(4, 6, 8, 10) / 0, TypeParam());
}

TYPED_TEST(Vector, Stays_as_it_is_when_divided_in_place_by_zero) {
    TypeParam v = Take<TypeParam>(4, 6, 8, 10);
    EXPECT_EQ(&(v /= 0), &v);
    EXPECT_EQ(v, Take<TypeParam>(4, 6, 8, 10));
}

TYPED_TEST(Vector, Divides_by_a_vector_component_by_component) {
    EXPECT_EQ(Take<TypeParam>(6, -8, 10, 12) / Take<TypeParam>(3, 2, -5, 4),
              Take<TypeParam>(2, -4, -2, 3));
}

TYPED_TEST(Vector, Is_zero_after_a_division_by_a_vector_with_a_zero_in_x_y_or_z) {
    const int guarded = std::min(widthOf<TypeParam>, 3);
    for (int i = 0; i < guarded; ++i) {
        TypeParam divisor(2);
        divisor[i] = 0;
        EXPECT_EQ(TypeParam(8) / divisor, TypeParam()) << "component " << i;
    }
}

TYPED_TEST(Vector, Min_caps_from_above) {
    TypeParam v = Take<TypeParam>(5, -3, 1, 2);
    v.Min(1);
    EXPECT_EQ(v, Take<TypeParam>(1, -3, 1, 1));
}

TYPED_TEST(Vector, Max_raises_from_below) {
    TypeParam v = Take<TypeParam>(-1, 2, 0, -7);
    v.Max(0);
    EXPECT_EQ(v, Take<TypeParam>(0, 2, 0, 0));
}

TYPED_TEST(Vector, Min_and_Max_reach_every_component) {
    for (int i = 0; i < widthOf<TypeParam>; ++i) {
        TypeParam capped(0), raised(3), expectedCap(0), expectedFloor(3);
        capped[i] = 5;
        expectedCap[i] = 1;
        capped.Min(1);
        EXPECT_EQ(capped, expectedCap) << "component " << i;
        raised[i] = -2;
        expectedFloor[i] = 1;
        raised.Max(1);
        EXPECT_EQ(raised, expectedFloor) << "component " << i;
    }
}

TYPED_TEST(Vector, Has_the_root_of_its_summed_squares_for_length) {
    EXPECT_FLOAT_EQ(Take<TypeParam>(3, 4, 0, 0).Length(), 5.0f);
    // 2 * 2 per component: root of 8, 12 or 16.
    EXPECT_FLOAT_EQ(TypeParam(-2).Length(),
                    static_cast<float>(std::sqrt(4.0 * widthOf<TypeParam>)));
    EXPECT_EQ(TypeParam().Length(), 0.0f);
}

TYPED_TEST(Vector, Stays_zero_when_normalised) {
    TypeParam v;
    EXPECT_EQ(&v.Normalize(), &v);
    EXPECT_EQ(v, TypeParam());
}

template <class T>
class FloatVector : public ::testing::Test {};

using FloatTypes = ::testing::Types<vec2, vec3, vec4>;
TYPED_TEST_SUITE(FloatVector, FloatTypes);

TYPED_TEST(FloatVector, Has_length_one_after_Normalize) {
    TypeParam v = Take<TypeParam>(3, 4, 0, 0);
    EXPECT_EQ(&v.Normalize(), &v);
    // 3 / 5 and 4 / 5, rounded to float.
    EXPECT_EQ(v.x, 0.6f);
    EXPECT_EQ(v.y, 0.8f);
    // All components alike: each is 1 over the root of their number.
    TypeParam diagonal(-2.0f);
    diagonal.Normalize();
    for (int i = 0; i < widthOf<TypeParam>; ++i)
        EXPECT_FLOAT_EQ(diagonal[i], static_cast<float>(-1.0 / std::sqrt(widthOf<TypeParam>)));
}

TYPED_TEST(FloatVector, Is_normalised_by_its_length_as_a_float) {
    // The root of 41 is 6.403124237, as a float 6.403124332. 5 through that is 0.7808687977, just
    // below the middle (0.7808687985) of two floats; the root itself, or the float's reciprocal
    // times 5, ends above it.
    TypeParam v = Take<TypeParam>(5, 4, 0, 0);
    EXPECT_EQ(v.Normalize().x, 0.7808687687f);
}

TYPED_TEST(FloatVector, Measures_lengths_whose_squares_no_float_can_hold) {
    // 3e30 squared is 9e60; the largest float is about 3.4e38.
    TypeParam v;
    v.x = 3e30f;
    v.y = 4e30f;
    EXPECT_FLOAT_EQ(v.Length(), 5e30f);
}

TYPED_TEST(FloatVector, Takes_negative_zero_for_a_zero_divisor) {
    EXPECT_EQ(TypeParam(1.0f) / -0.0f, TypeParam());
}

TYPED_TEST(FloatVector, Takes_no_divisor_but_zero_for_zero) {
    // 2^-100 / 2^-120 = 2^20.
    const TypeParam v(0x1p-100f);
    const TypeParam quotient(0x1p20f);
    EXPECT_EQ(v / 0x1p-120f, quotient);
    EXPECT_EQ(v / TypeParam(0x1p-120f), quotient);
    TypeParam inPlace = v;
    EXPECT_EQ(inPlace /= 0x1p-120f, quotient);
}

TYPED_TEST(FloatVector, Keeps_a_zero_of_the_other_sign_which_is_neither_greater_nor_less) {
    TypeParam negative(-0.0f), positive(0.0f);
    negative.Max(0.0f);
    positive.Min(-0.0f);
    for (int i = 0; i < widthOf<TypeParam>; ++i) {
        EXPECT_TRUE(std::signbit(negative[i])) << "component " << i;
        EXPECT_FALSE(std::signbit(positive[i])) << "component " << i;
    }
}

TYPED_TEST(FloatVector, Rounds_one_operation_as_float_arithmetic_does) {
    // None of the three results is a float: each is rounded, by way of double or at once.
    const float a = 0.1f, b = 3.3f;
    EXPECT_EQ(TypeParam(a) + TypeParam(b), TypeParam(a + b));
    EXPECT_EQ(TypeParam(a) * TypeParam(b), TypeParam(a * b));
    EXPECT_EQ(TypeParam(a) / b, TypeParam(a / b));
}

TYPED_TEST(FloatVector, Compares_without_tolerance) {
    TypeParam next(1.0f);
    next.y = std::nextafter(1.0f, 2.0f);
    EXPECT_FALSE(TypeParam(1.0f) == next);
}

TYPED_TEST(FloatVector, Compares_numbers_and_not_their_bits) {
    EXPECT_TRUE(TypeParam(-0.0f) == TypeParam(0.0f));
    const TypeParam noNumber(std::nanf(""));
    EXPECT_FALSE(noNumber == noNumber);
}

TYPED_TEST(FloatVector, Has_a_dot_product_over_all_its_components) {
    // 1 * 5 + 2 * 6 = 17, + 3 * -7 = -4, + 4 * 8 = 28.
    const float expected[] = {17.0f, -4.0f, 28.0f};
    EXPECT_EQ(Dot(Take<TypeParam>(1, 2, 3, 4), Take<TypeParam>(5, 6, -7, 8)),
              expected[widthOf<TypeParam> - 2]);
}

TYPED_TEST(FloatVector, Sums_its_cheap_dot_product_in_float) {
    static_assert(std::is_same_v<decltype(Dot(TypeParam(), TypeParam())), float>);
    // 4097 * 4097 - 4096 * 4098 = 16785409 - 16785408 = 1; the first product needs 25 bits, one
    // more than a float has, and becomes the second.
    EXPECT_EQ(Dot(Take<TypeParam>(4097, 4096, 0, 0), Take<TypeParam>(4097, -4098, 0, 0)), 0.0f);
}

TYPED_TEST(FloatVector, Has_the_root_of_the_dot_product_with_itself_for_its_cheap_length) {
    EXPECT_EQ(Length(Take<TypeParam>(3, -4, 0, 0)), 5.0f);
    EXPECT_EQ(Length(TypeParam()), 0.0f);
    // 3e30 squared is 9e60; the largest float is about 3.4e38.
    EXPECT_TRUE(std::isinf(Length(Take<TypeParam>(1, 0, 0, 0) * 3e30f)));
}

TYPED_TEST(FloatVector, Is_copied_by_Normalized_and_left_as_it_is) {
    const TypeParam v = Take<TypeParam>(3, -4, 0, 0);
    TypeParam expected;
    expected.x = 0.6f; // 3 / 5 and -4 / 5, rounded to float
    expected.y = -0.8f;
    EXPECT_EQ(Normalized(v), expected);
    EXPECT_EQ(Normalized(TypeParam()), TypeParam());
}

TYPED_TEST(FloatVector, Lies_between_two_others_by_Lerp_and_beyond_them) {
    const TypeParam a = Take<TypeParam>(0, 2, 4, 8), b = Take<TypeParam>(4, 6, 0, -8);
    EXPECT_EQ(Lerp(a, b, 0.0f), a);
    EXPECT_EQ(Lerp(a, b, 1.0f), b);
    EXPECT_EQ(Lerp(a, b, 0.25f), Take<TypeParam>(1, 3, 3, 4));
    EXPECT_EQ(Lerp(a, b, 2.0f), Take<TypeParam>(8, 10, -4, -24));
}

template <class T>
class IntVector : public ::testing::Test {};

using IntTypes = ::testing::Types<ivec2, ivec3, ivec4>;
TYPED_TEST_SUITE(IntVector, IntTypes);

constexpr int greatestInt = std::numeric_limits<int>::max();
constexpr int leastInt = std::numeric_limits<int>::min();

TYPED_TEST(IntVector, Truncates_quotients_toward_zero) {
    EXPECT_EQ(Take<TypeParam>(7, -7, 5, -1) / 2, Take<TypeParam>(3, -3, 2, 0));
    EXPECT_EQ(Take<TypeParam>(7, -7, 5, -1) / TypeParam(2), Take<TypeParam>(3, -3, 2, 0));
}

TYPED_TEST(IntVector, Normalises_by_the_length_truncated_to_an_integer) {
    EXPECT_EQ(Take<TypeParam>(3, 4, 0, 0).Normalize(), Take<TypeParam>(0, 0, 0, 0)); // by 5
    EXPECT_EQ(Take<TypeParam>(10, 0, 0, 0).Normalize(), Take<TypeParam>(1, 0, 0, 0));
    EXPECT_EQ(Take<TypeParam>(1, 1, 0, 0).Normalize(), Take<TypeParam>(1, 1, 0, 0)); // by 1.41 -> 1
    EXPECT_EQ(Take<TypeParam>(2, 2, 0, 0).Normalize(), Take<TypeParam>(1, 1, 0, 0)); // by 2.83 -> 2
}

TYPED_TEST(IntVector, Wraps_the_sum_of_squares_at_32_bits) {
    // 65536 squared is 2^32, which wraps to 0.
    EXPECT_EQ(Take<TypeParam>(65536, 3, 0, 0).Length(), 3.0f);
    // 50000 squared is 2.5e9, which wraps to a negative number.
    EXPECT_TRUE(std::isnan(Take<TypeParam>(50000, 0, 0, 0).Length()));
}

TYPED_TEST(IntVector, Stays_as_it_is_when_normalised_by_a_length_that_is_no_number) {
    EXPECT_EQ(Take<TypeParam>(50000, 0, 0, 0).Normalize(), Take<TypeParam>(50000, 0, 0, 0));
}

TYPED_TEST(IntVector, Wraps_sums_products_and_quotients_at_32_bits) {
    EXPECT_EQ(TypeParam(greatestInt) + TypeParam(1), TypeParam(leastInt));
    EXPECT_EQ(TypeParam(leastInt) - TypeParam(1), TypeParam(greatestInt));
    EXPECT_EQ(TypeParam(65536) * 65536, TypeParam(0));
    EXPECT_EQ(TypeParam(leastInt) / -1, TypeParam(leastInt));
}

} // namespace
