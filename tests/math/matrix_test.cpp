#include "engine/math/matrix.h"

#include <cmath>
#include <numbers>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;
using ::testing::ElementsAreArray;

namespace {

constexpr float quarterTurn = static_cast<float>(std::numbers::pi / 2);
constexpr float floatPrecision = 1e-6f;

std::vector<float> Elements(const Matrix& matrix) {
    return {matrix.Get(), matrix.Get() + 16};
}

/// 1 to 16, row by row.
Matrix Counting() {
    Matrix matrix;
    for (int i = 0; i < 16; ++i)
        matrix.Get()[i] = static_cast<float>(i + 1);
    return matrix;
}

void ExpectNear(const vec3& actual, const vec3& expected) {
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], floatPrecision) << "component " << i;
}

const float identity[] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

TEST(Matrix, Starts_as_the_identity) {
    EXPECT_THAT(Elements(Matrix()), ElementsAreArray(identity));
}

TEST(Matrix, Becomes_the_identity_again) {
    Matrix matrix = Counting();
    matrix.Identity();
    EXPECT_THAT(Elements(matrix), ElementsAreArray(identity));
}

TEST(Matrix, Is_copied_by_value) {
    Matrix original = Counting();
    Matrix copy(original);
    Matrix assigned;
    assigned = original;
    original.Identity();
    EXPECT_EQ(copy[6], 7.0f);
    EXPECT_EQ(assigned[6], 7.0f);
}

TEST(Matrix, Is_sixteen_floats_of_which_index_fifteen_is_the_last) {
    const Matrix matrix = Counting();
    EXPECT_EQ(sizeof(Matrix), 16 * sizeof(float));
    EXPECT_EQ(matrix[0], 1.0f);
    EXPECT_EQ(matrix[15], 16.0f);
    EXPECT_EQ(matrix(15), 16.0f);
    EXPECT_EQ(matrix(4 * 1 + 2), 7.0f); // row 1, column 2
    // Elements are handed out as copies.
    EXPECT_TRUE((std::is_same_v<decltype(Matrix()[0]), float>));
    EXPECT_TRUE((std::is_same_v<decltype(Matrix()(0)), float>));
}

TEST(Matrix, Moves_the_origin_by_its_translation) {
    Matrix matrix;
    matrix.Translate(vec3(1, 2, 3));
    EXPECT_EQ(matrix * vec3(0, 0, 0), vec3(1, 2, 3));
    EXPECT_EQ(matrix[3], 1.0f);
    EXPECT_EQ(matrix[7], 2.0f);
    EXPECT_EQ(matrix[11], 3.0f);
}

TEST(Matrix, Overwrites_the_translation_instead_of_adding_to_it) {
    Matrix matrix = Counting();
    matrix.Translate(vec3(-1, -2, -3));
    const float expected[] = {1, 2, 3, -1, 5, 6, 7, -2, 9, 10, 11, -3, 13, 14, 15, 16};
    EXPECT_THAT(Elements(matrix), ElementsAreArray(expected));
}

TEST(Matrix, Overwrites_the_diagonal_when_it_scales) {
    Matrix matrix = Counting();
    matrix.Scale(vec3(-1, -2, -3));
    const float expected[] = {-1, 2, 3, 4, 5, -2, 7, 8, 9, 10, -3, 12, 13, 14, 15, 16};
    EXPECT_THAT(Elements(matrix), ElementsAreArray(expected));
}

TEST(Matrix, Replaces_the_cosines_and_leaves_the_sines_when_it_scales_after_a_turn) {
    constexpr float angle = 0.5f;
    Matrix matrix;
    matrix.RotateZ(angle);
    matrix.Scale(vec3(2, 2, 2));
    const float sine = static_cast<float>(std::sin(0.5));
    const float expected[] = {2, -sine, 0, 0, sine, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    EXPECT_THAT(Elements(matrix), ElementsAreArray(expected));
}

TEST(Matrix, Turns_by_a_quarter_about_each_axis) {
    const vec3 x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    Matrix aboutX, aboutY, aboutZ;
    aboutX.RotateX(quarterTurn);
    aboutY.RotateY(quarterTurn);
    aboutZ.RotateZ(quarterTurn);
    ExpectNear(aboutX * y, z);
    ExpectNear(aboutX * z, y * -1);
    ExpectNear(aboutZ * x, y);
    ExpectNear(aboutZ * y, x * -1);
    ExpectNear(aboutX * x, x);
    ExpectNear(aboutY * y, y);
    ExpectNear(aboutZ * z, z);
}

TEST(Matrix, Turns_x_toward_z_about_y_against_the_sense_of_the_other_axes) {
    Matrix matrix;
    matrix.RotateY(quarterTurn);
    ExpectNear(matrix * vec3(1, 0, 0), vec3(0, 0, 1));
    ExpectNear(matrix * vec3(0, 0, 1), vec3(-1, 0, 0));
}

TEST(Matrix, Stores_sine_and_cosine_rounded_from_double_in_four_places) {
    struct Angle {
        float radians, sine, cosine;
    };
    // Taken in floats, the cosine of 10.5 and the sine of 34 come out as a neighbour of the float
    // that is nearest to the true value, which is written here.
    const Angle angles[] = {
        {0.5f, 0.479425538604f, 0.877582561890f},
        {-0.5f, -0.479425538604f, 0.877582561890f},
        {10.5f, -0.879695759972f, -0.475536927996f},
        {34.0f, 0.529082686120f, -0.848570274785f},
    };
    for (const auto& [angle, s, c] : angles) {
        struct {
            void (Matrix::*rotate)(float);
            std::vector<float> expected;
        } const turns[] = {
            {&Matrix::RotateX, {1, 0, 0, 0, 0, c, -s, 0, 0, s, c, 0, 0, 0, 0, 1}},
            {&Matrix::RotateY, {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1}},
            {&Matrix::RotateZ, {c, -s, 0, 0, s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
        };
        for (const auto& turn : turns) {
            Matrix matrix;
            (matrix.*turn.rotate)(angle);
            EXPECT_THAT(Elements(matrix), ElementsAreArray(turn.expected)) << angle;
        }
    }
}

TEST(Matrix, Applies_a_later_turn_first) {
    // this * R: the point is turned before it is moved, so the way it is moved is not turned.
    struct Case {
        void (Matrix::*rotate)(float);
        vec3 point, moved;
    };
    const Case cases[] = {
        {&Matrix::RotateX, vec3(0, 1, 0), vec3(4, 5, 7)}, // y to z
        {&Matrix::RotateY, vec3(1, 0, 0), vec3(4, 5, 7)}, // x to z
        {&Matrix::RotateZ, vec3(1, 0, 0), vec3(4, 6, 6)}, // x to y
    };
    for (const Case& c : cases) {
        Matrix matrix;
        matrix.Translate(vec3(4, 5, 6));
        (matrix.*c.rotate)(quarterTurn);
        ExpectNear(matrix * c.point, c.moved);
    }
}

TEST(Matrix, Multiplies_rows_by_columns) {
    Matrix b;
    b.Scale(vec3(2, 3, 4));
    b.Translate(vec3(1, 0, -1));
    // Column j of the product: columns of 1..16 times 2, 3, 4, and the fourth column
    // c0 * 1 + c2 * -1 + c3: 1 - 3 + 4 = 2, 5 - 7 + 8 = 6, 9 - 11 + 12 = 10, 13 - 15 + 16 = 14.
    const float expected[] = {2, 6, 12, 2, 10, 18, 28, 6, 18, 30, 44, 10, 26, 42, 60, 14};
    EXPECT_THAT(Elements(Counting() * b), ElementsAreArray(expected));
    Matrix inPlace = Counting();
    inPlace *= b;
    EXPECT_THAT(Elements(inPlace), ElementsAreArray(expected));
}

TEST(Matrix, Multiplies_itself_in_place) {
    // Row (a, b, c, d) times the columns of 1 .. 16: with s = a + b + c + d and
    // t = 4 (b + 2 c + 3 d), column j gives s (j + 1) + t. Rows: s = 10, 26, 42, 58 and
    // t = 80, 176, 272, 368.
    Matrix matrix = Counting();
    matrix *= matrix;
    const float expected[] = {90,  100, 110, 120, 202, 228, 254, 280,
                              314, 356, 398, 440, 426, 484, 542, 600};
    EXPECT_THAT(Elements(matrix), ElementsAreArray(expected));
}

TEST(Matrix, Sums_products_in_double) {
    // Row 0 is (2^24, 1, -2^24, 0), column 0 of b is (1, 1, 1, 0): in floats the 1 is lost.
    Matrix a, b;
    a.Get()[0] = 16777216.0f;
    a.Get()[1] = 1.0f;
    a.Get()[2] = -16777216.0f;
    b.Get()[4] = 1.0f;
    b.Get()[8] = 1.0f;
    EXPECT_EQ((a * b)[0], 1.0f);
    EXPECT_EQ((a * vec3(1, 1, 1)).x, 1.0f);
}

TEST(Matrix, Transposes_all_but_the_diagonal) {
    Matrix matrix = Counting();
    matrix.Transpose();
    const float expected[] = {1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16};
    EXPECT_THAT(Elements(matrix), ElementsAreArray(expected));
}

TEST(Matrix, Is_itself_again_after_two_transpositions) {
    Matrix matrix = Counting();
    matrix.Transpose();
    matrix.Transpose();
    EXPECT_EQ(Elements(matrix), Elements(Counting()));
}

TEST(Matrix, Transforms_a_point_without_looking_at_the_bottom_row) {
    // 1 * 1 + 2 * 2 + 3 * 3 + 4 = 18, 5 + 12 + 21 + 8 = 46, 9 + 20 + 33 + 12 = 74; the bottom row
    // 13 .. 16 would give w = 102.
    EXPECT_EQ(Counting() * vec3(1, 2, 3), vec3(18, 46, 74));
}

} // namespace
