// web/gl draws areas as triangles or as their outlines.

#include "web/gl/primitives.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace WebGL;

TEST(Primitives, Quad_is_cut_from_its_second_corner_to_its_fourth) {
    EXPECT_THAT(Triangles(GL_QUADS, {4, 5, 6, 7}), ElementsAre(4, 5, 7, 5, 6, 7));
}

TEST(Primitives, Quad_strip_goes_to_and_fro_and_is_cut_from_its_first_corner_to_its_last) {
    // Corners 0 1 / 2 3: the quad runs 2 0 1 3. Colours between its corners depend on the cut,
    // which Mesa makes from 0 to 3.
    EXPECT_THAT(Triangles(GL_QUAD_STRIP, {0, 1, 2, 3}), ElementsAre(2, 0, 3, 0, 1, 3));
}

TEST(Primitives, Polygon_is_a_fan_round_its_first_corner) {
    EXPECT_THAT(Triangles(GL_POLYGON, {0, 1, 2, 3, 4}), ElementsAre(0, 1, 2, 0, 2, 3, 0, 3, 4));
}

TEST(Primitives, Corners_too_few_for_another_one_are_left_out) {
    EXPECT_THAT(Triangles(GL_QUADS, {0, 1, 2, 3, 4, 5}), ElementsAre(0, 1, 3, 1, 2, 3));
    EXPECT_THAT(Triangles(GL_POLYGON, {0, 1}), IsEmpty());
}

TEST(Primitives, Outline_of_a_quad_has_four_edges_and_no_diagonal) {
    EXPECT_THAT(Outlines(GL_QUADS, {0, 1, 2, 3}), ElementsAre(0, 1, 1, 2, 2, 3, 3, 0));
}

TEST(Primitives, Outline_of_a_strip_has_those_of_its_triangles) {
    EXPECT_THAT(Outlines(GL_TRIANGLE_STRIP, {0, 1, 2, 3}),
                ElementsAre(0, 1, 1, 2, 2, 0, 2, 1, 1, 3, 3, 2));
}
