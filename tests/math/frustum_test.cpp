#include "engine/math/frustum.h"

#include "tests/support/gl_test.h"
#include "tests/support/private_member.h"

#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

OPEN_PRIVATE(frustumPlanes, &Vell::Frustum::planes);

using namespace Vell;

namespace {

const float half = static_cast<float>(std::sqrt(0.5)); // sine and cosine of 45 degrees

class FrustumTest : public GlTest {
protected:
    Frustum& frustum = Frustum::GetInstance();

    /// A right angle in both directions, from 1 to 10 along the view.
    static void UseRightAngle() {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(90.0, 1.0, 1.0, 10.0);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    vec4 PlaneAt(int i) const { return (frustum.*frustumPlanes)[i].Get(); }

    void ExpectPlanes(const vec4 (&expected)[6]) const {
        constexpr float precision = 1e-5f; // the matrices come back from OpenGL as floats
        static constexpr const char* names[] = {"right", "left", "bottom", "top", "far", "near"};
        for (int i = 0; i < 6; ++i)
            for (int c = 0; c < 4; ++c)
                EXPECT_NEAR(PlaneAt(i)[c], expected[i][c], precision)
                    << names[i] << ", component " << c;
    }
};

TEST_F(FrustumTest, Is_one_instance) {
    EXPECT_EQ(&Frustum::GetInstance(), &Frustum::GetInstance());
    EXPECT_EQ(sizeof(Frustum), 6 * sizeof(Plane));
}

// In a process of its own, for the one instance that there is keeps what other tests put into it.
TEST(FrustumDeathTest, Has_nothing_inside_before_its_planes_are_made) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto insideNothing = [] {
        const Frustum& fresh = Frustum::GetInstance();
        return !fresh.PointIn(vec3(0, 0, 0)) && !fresh.PointIn(vec3(1, 2, 3));
    };
    EXPECT_EXIT(std::exit(insideNothing() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

TEST_F(FrustumTest, Takes_the_cube_from_minus_one_to_one_from_identity_matrices) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    frustum.MakePlane();
    // Column 3 is (0, 0, 0, 1), columns 0 to 2 the axes.
    ExpectPlanes({vec4(-1, 0, 0, 1), vec4(1, 0, 0, 1), vec4(0, 1, 0, 1), vec4(0, -1, 0, 1),
                  vec4(0, 0, -1, 1), vec4(0, 0, 1, 1)});
}

TEST_F(FrustumTest, Takes_normalised_planes_from_a_perspective) {
    UseRightAngle();
    frustum.MakePlane();
    // Seen from the origin along -z, sides at 45 degrees through the eye: right is -x - z > 0.
    // Near: -z - 1 > 0; far: z + 10 > 0.
    ExpectPlanes({vec4(-half, 0, -half, 0), vec4(half, 0, -half, 0), vec4(0, half, -half, 0),
                  vec4(0, -half, -half, 0), vec4(0, 0, 1, 10), vec4(0, 0, -1, -1)});
}

TEST_F(FrustumTest, Follows_the_camera_into_world_space) {
    UseRightAngle();
    gluLookAt(10, 0, 0, 0, 0, 0, 0, 1, 0);
    frustum.MakePlane();
    // Eye at x = 10 looking along -x; its right is -z. Depth along the view is 10 - x, so with
    // right = -z: right plane depth + z > 0, left depth - z > 0, bottom depth + y > 0, top
    // depth - y > 0, near depth - 1 > 0, far 10 - depth > 0.
    const float d = 10 * half;
    ExpectPlanes({vec4(-half, 0, half, d), vec4(-half, 0, -half, d), vec4(-half, half, 0, d),
                  vec4(-half, -half, 0, d), vec4(1, 0, 0, 0), vec4(-1, 0, 0, 9)});
}

TEST_F(FrustumTest, Follows_an_eye_that_stands_aside_and_up) {
    UseRightAngle();
    gluLookAt(3, 4, 0, 3, 4, -1, 0, 1, 0);
    frustum.MakePlane();
    // As from the origin, with x - 3 for x and y - 4 for y: right is -(x - 3) - z > 0.
    ExpectPlanes({vec4(-half, 0, -half, 3 * half), vec4(half, 0, -half, -3 * half),
                  vec4(0, half, -half, -4 * half), vec4(0, -half, -half, 4 * half),
                  vec4(0, 0, 1, 10), vec4(0, 0, -1, -1)});
}

TEST_F(FrustumTest, Keeps_its_planes_until_they_are_made_again) {
    UseRightAngle();
    frustum.MakePlane();
    const vec4 before = PlaneAt(0);
    glTranslatef(0, 0, 100);
    EXPECT_EQ(PlaneAt(0), before);
    frustum.MakePlane();
    EXPECT_FALSE(PlaneAt(0) == before);
}

TEST_F(FrustumTest, Leaves_the_matrices_as_they_are) {
    UseRightAngle();
    glTranslatef(1, 2, 3);
    frustum.MakePlane();
    GLint mode = 0;
    GLfloat matrix[16] = {};
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
    EXPECT_EQ(mode, GL_MODELVIEW);
    EXPECT_EQ(matrix[12], 1.0f);
    EXPECT_EQ(matrix[13], 2.0f);
    EXPECT_EQ(matrix[14], 3.0f);
}

TEST_F(FrustumTest, Has_a_point_inside_only_when_all_six_planes_do) {
    UseRightAngle();
    frustum.MakePlane();
    struct Case {
        vec3 point;
        bool inside;
    };
    const Case cases[] = {
        {vec3(0, 0, -5), true},       {vec3(4.9f, 0, -5), true},  {vec3(5.1f, 0, -5), false},
        {vec3(-5.1f, 0, -5), false},  {vec3(0, 5.1f, -5), false}, {vec3(0, -5.1f, -5), false},
        {vec3(0, 0, -0.99f), false},  {vec3(0, 0, -1.01f), true}, {vec3(0, 0, -9.99f), true},
        {vec3(0, 0, -10.01f), false}, {vec3(0, 0, 5), false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(frustum.PointIn(c.point), c.inside)
            << c.point.x << ' ' << c.point.y << ' ' << c.point.z;
}

TEST_F(FrustumTest, Has_a_point_on_a_plane_outside) {
    frustum.MakePlane(); // identity matrices: the cube from -1 to 1, exact in floats
    EXPECT_FALSE(frustum.PointIn(vec3(1, 0, 0)));
    EXPECT_FALSE(frustum.PointIn(vec3(0, -1, 0)));
    EXPECT_TRUE(frustum.PointIn(vec3(0.999f, 0, 0)));
}

struct BoxCase {
    const char* what;
    vec3 min, max;
    bool visible;
};

TEST_F(FrustumTest, Sees_boxes_that_no_single_plane_shuts_out) {
    UseRightAngle();
    frustum.MakePlane();
    const BoxCase cases[] = {
        {"inside", vec3(-1, -1, -6), vec3(1, 1, -4), true},
        {"around the whole frustum", vec3(-99, -99, -99), vec3(99, 99, 99), true},
        {"a point in view", vec3(0, 0, -5), vec3(0, 0, -5), true},
        {"a point out of view", vec3(0, 0, 5), vec3(0, 0, 5), false},
        {"across the right plane", vec3(4, -1, -6), vec3(99, 1, -4), true},
        {"across the near plane", vec3(-1, -1, -2), vec3(1, 1, 2), true},
        {"right of it", vec3(20, -1, -6), vec3(22, 1, -4), false},
        {"left of it", vec3(-22, -1, -6), vec3(-20, 1, -4), false},
        {"below it", vec3(-1, -22, -6), vec3(1, -20, -4), false},
        {"above it", vec3(-1, 20, -6), vec3(1, 22, -4), false},
        {"behind the far plane", vec3(-1, -1, -30), vec3(1, 1, -11), false},
        {"between the eye and the near plane", vec3(-0.1f, -0.1f, -0.9f), vec3(0.1f, 0.1f, -0.5f),
         false},
        {"behind the eye", vec3(-1, -1, 1), vec3(1, 1, 3), false},
    };
    for (const BoxCase& c : cases)
        EXPECT_EQ(frustum.BBoxIn(c.min, c.max), c.visible) << c.what;
}

TEST_F(FrustumTest, Sees_a_box_by_any_one_of_its_eight_corners) {
    for (int corner = 0; corner < 8; ++corner) {
        const vec3 side((corner & 1) != 0 ? 1.0f : -1.0f, (corner & 2) != 0 ? 1.0f : -1.0f,
                        (corner & 4) != 0 ? 1.0f : -1.0f);
        // The right plane cuts off corners: its inside is side . p > -1. The others are far away.
        const GLfloat view[16] = {-side.x, 0, 0,    0, -side.y, 0.1f, 0, 0,
                                  -side.z, 0, 0.1f, 0, 0,       0,    0, 1};
        glLoadMatrixf(view);
        frustum.MakePlane();
        // Edges of 2 around -side: this corner lies on the origin, inside; its neighbours lie two
        // units off along one axis, at side . p = -2, and the rest farther out.
        const vec3 center = side * -1.0f;
        EXPECT_TRUE(frustum.BBoxIn(center - vec3(1), center + vec3(1))) << "corner " << corner;
        const vec3 apart = side * -2.0f; // the corner lies on -side: side . p = -3
        EXPECT_FALSE(frustum.BBoxIn(apart - vec3(1), apart + vec3(1))) << "corner " << corner;
    }
}

TEST_F(FrustumTest, Culls_a_box_that_touches_a_plane_from_outside) {
    frustum.MakePlane(); // the cube from -1 to 1
    EXPECT_FALSE(frustum.BBoxIn(vec3(1, -0.5f, -0.5f), vec3(2, 0.5f, 0.5f)));
    EXPECT_TRUE(frustum.BBoxIn(vec3(0.999f, -0.5f, -0.5f), vec3(2, 0.5f, 0.5f)));
    // Flat on the plane itself: all eight corners touch it.
    EXPECT_FALSE(frustum.BBoxIn(vec3(1, -0.5f, -0.5f), vec3(1, 0.5f, 0.5f)));
}

TEST_F(FrustumTest, Reports_a_box_beyond_a_far_corner_as_visible_although_it_is_not) {
    UseRightAngle();
    frustum.MakePlane();
    // Inside needs x < -z and z > -10, so x < 10; this box starts at 10.5. Yet its corners at
    // z = -11 are inside the right plane (10.5 < 11) and those at z = -9 inside the far plane.
    EXPECT_TRUE(frustum.BBoxIn(vec3(10.5f, -1, -11), vec3(15, 1, -9)));
}

TEST_F(FrustumTest, Tests_unsorted_corners_just_the_same) {
    UseRightAngle();
    frustum.MakePlane();
    EXPECT_TRUE(frustum.BBoxIn(vec3(1, 1, -4), vec3(-1, -1, -6)));
    EXPECT_FALSE(frustum.BBoxIn(vec3(22, 1, -4), vec3(20, -1, -6)));
}

} // namespace
