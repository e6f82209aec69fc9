// Matrices of web/gl: columns after each other, as OpenGL has them.

#include "web/gl/derivedmatrices.h"
#include "web/gl/matrix.h"
#include "web/gl/matrixstacks.h"

#include <gtest/gtest.h>

using namespace WebGL;

namespace {

void ExpectNear(const Matrix4& actual, const Matrix4& expected) {
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-6f) << "element " << i;
}

} // namespace

TEST(WebGlMatrix, Translation_lies_in_the_last_column) {
    const Vector4 moved = Product(Translation(1, 2, 3), Vector4{10, 20, 30, 1});
    EXPECT_EQ(moved, (Vector4{11, 22, 33, 1}));
}

TEST(WebGlMatrix, Product_does_the_right_one_first) {
    // (1, 0, 0) scaled by 2 is (2, 0, 0), then moved by 5 is 7; the other way round 12.
    const Vector4 point{1, 0, 0, 1};
    EXPECT_EQ(Product(Product(Translation(5, 0, 0), Scaling(2, 2, 2)), point)[0], 7);
    EXPECT_EQ(Product(Product(Scaling(2, 2, 2), Translation(5, 0, 0)), point)[0], 12);
}

TEST(WebGlMatrix, Rotation_is_counter_clockwise_against_its_axis) {
    const Vector4 turned = Product(Rotation(90, 0, 0, 7), Vector4{1, 0, 0, 1}); // any length
    EXPECT_NEAR(turned[0], 0, 1e-6f);
    EXPECT_NEAR(turned[1], 1, 1e-6f);
}

TEST(WebGlMatrix, Inverse_leads_back) {
    const Matrix4 there =
        Product(Translation(3, -4, 5), Product(Rotation(30, 1, 2, 3), Scaling(2, 1, -1)));
    ExpectNear(Product(Inverse(there), there), identity);
}

TEST(WebGlMatrix, Inverse_of_what_has_none_is_the_identity) {
    EXPECT_EQ(Inverse(Scaling(1, 1, 0)), identity);
}

TEST(WebGlMatrix, Normals_shrink_where_the_scene_is_stretched) {
    const Matrix3 normal = NormalMatrix(Scaling(2, 4, 1)); // 1/2, 1/4, 1
    EXPECT_EQ(normal, (Matrix3{0.5f, 0, 0, 0, 0.25f, 0, 0, 0, 1}));
}

TEST(WebGlMatrix, Orthographic_view_maps_its_box_to_minus_one_to_one) {
    const Matrix4 view = Orthographic(0, 4, 0, 2, -1, 1);
    EXPECT_EQ(Product(view, Vector4{4, 0, 0, 1}), (Vector4{1, -1, 0, 1}));
}

TEST(WebGlMatrix, Perspective_view_has_depth_minus_one_at_the_near_plane) {
    // Near 1, far 3: z = -1 gives (3 + 1) / 2 - 3 = -1 over w = 1.
    const Vector4 corner = Product(Perspective(-1, 1, -1, 1, 1, 3), Vector4{1, 1, -1, 1});
    EXPECT_EQ(corner, (Vector4{1, 1, -1, 1}));
}

TEST(WebGlMatrix, Stack_gives_back_what_was_pushed_and_refuses_the_last) {
    MatrixStack stack(2);
    stack.Set(Scaling(2, 2, 2));
    EXPECT_TRUE(stack.Push());
    EXPECT_FALSE(stack.Push());
    stack.Set(Translation(1, 0, 0));
    EXPECT_TRUE(stack.Pop());
    EXPECT_EQ(stack.Top(), Scaling(2, 2, 2));
    EXPECT_FALSE(stack.Pop());
}

TEST(WebGlMatrix, Stack_counts_a_version_only_when_its_top_changes) {
    MatrixStack stack(4);
    const unsigned before = stack.Version();
    stack.Set(identity);
    stack.Push();
    stack.Pop();
    EXPECT_EQ(stack.Version(), before);
    stack.Set(Scaling(2, 2, 2));
    EXPECT_NE(stack.Version(), before);
}

TEST(WebGlMatrix, Derived_ones_follow_both_stacks) {
    MatrixStacks stacks;
    DerivedMatrices derived(stacks);
    const auto product = [&] {
        return derived.Get(DerivedMatrices::ModelviewProjection, DerivedMatrices::Plain);
    };
    EXPECT_EQ(product(), identity);
    stacks.projection.Set(Scaling(2, 2, 2));
    EXPECT_EQ(product(), Scaling(2, 2, 2));
    stacks.modelview.Set(Translation(1, 0, 0));
    EXPECT_EQ(product()[12], 2); // 2 * 1
}
