#include "engine/math/bbox.h"

#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;

namespace {

BoundingBox Box(const vec3& min, const vec3& max) {
    BoundingBox box;
    box.Set(min, max);
    return box;
}

TEST(BoundingBox, Is_all_zero_until_it_is_set) {
    BoundingBox box;
    EXPECT_EQ(box.GetMin(), vec3());
    EXPECT_EQ(box.GetMax(), vec3());
    EXPECT_EQ(box.GetCenter(), vec3());
    EXPECT_EQ(box.GetSize(), vec3());
    EXPECT_FALSE(box.Hit(vec3(0, 0, 0)));
}

TEST(BoundingBox, Is_min_max_center_and_size_in_this_order) {
    BoundingBox box;
    const void* const fields[] = {&box.GetMin(), &box.GetMax(), &box.GetCenter(), &box.GetSize()};
    EXPECT_EQ(fields[0], &box);
    EXPECT_TRUE(std::is_sorted(std::begin(fields), std::end(fields)));
    EXPECT_EQ(sizeof(BoundingBox), 4 * sizeof(vec3));
}

TEST(BoundingBox, Stores_min_plus_center_for_its_size) {
    struct Case {
        vec3 min, max, center, size;
    };
    const Case cases[] = {
        {vec3(2, 2, 2), vec3(4, 4, 4), vec3(3, 3, 3), vec3(5, 5, 5)},
        {vec3(0, 0, 0), vec3(2, 2, 2), vec3(1, 1, 1), vec3(1, 1, 1)},
        {vec3(-1, -1, -1), vec3(1, 1, 1), vec3(0, 0, 0), vec3(-1, -1, -1)},
        {vec3(-4, 1, 10), vec3(2, 5, 11), vec3(-1, 3, 10.5f), vec3(-5, 4, 20.5f)},
    };
    for (const Case& c : cases) {
        BoundingBox box = Box(c.min, c.max);
        EXPECT_EQ(box.GetMin(), c.min);
        EXPECT_EQ(box.GetMax(), c.max);
        EXPECT_EQ(box.GetCenter(), c.center);
        EXPECT_EQ(box.GetSize(), c.size);
    }
}

TEST(BoundingBox, Keeps_corners_in_the_order_given) {
    BoundingBox box = Box(vec3(4, 4, 4), vec3(2, 2, 2));
    EXPECT_EQ(box.GetMin(), vec3(4, 4, 4));
    EXPECT_EQ(box.GetMax(), vec3(2, 2, 2));
}

TEST(BoundingBox, Is_copied_with_all_its_fields) {
    BoundingBox original = Box(vec3(2, 2, 2), vec3(4, 4, 4));
    BoundingBox copy(original);
    BoundingBox assigned;
    assigned = original;
    original.Set(vec3(), vec3());
    for (BoundingBox* box : {&copy, &assigned}) {
        EXPECT_EQ(box->GetMin(), vec3(2, 2, 2));
        EXPECT_EQ(box->GetMax(), vec3(4, 4, 4));
        EXPECT_EQ(box->GetCenter(), vec3(3, 3, 3));
        EXPECT_EQ(box->GetSize(), vec3(5, 5, 5));
    }
}

TEST(BoundingBox, Hands_out_its_fields_by_reference) {
    BoundingBox box;
    box.GetSize().y = 3.0f;
    EXPECT_EQ(box.GetSize(), vec3(0, 3, 0));
}

TEST(BoundingBox, Is_hit_strictly_inside_in_x_and_y_whatever_z_is) {
    const BoundingBox box = Box(vec3(-1, 2, -3), vec3(5, 4, 3));
    struct Case {
        vec3 point;
        bool hit;
    };
    const Case cases[] = {
        {vec3(2, 3, 0), true},      {vec3(4.99f, 3.99f, 0), true}, {vec3(-0.99f, 2.01f, 0), true},
        {vec3(2, 3, 1000), true},   {vec3(2, 3, -1000), true},     {vec3(5, 3, 0), false},
        {vec3(-1, 3, 0), false},    {vec3(2, 4, 0), false},        {vec3(2, 2, 0), false},
        {vec3(-1.5f, 3, 0), false}, {vec3(5.5f, 3, 0), false},     {vec3(2, 1.5f, 0), false},
        {vec3(2, 4.5f, 0), false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(box.Hit(c.point), c.hit) << c.point.x << ' ' << c.point.y << ' ' << c.point.z;
}

/// What OpenGL's feedback reports of a drawing: window positions and colours of all line ends.
struct LineEnds {
    std::vector<vec3> positions;
    std::vector<vec4> colours;
};

constexpr int floatsPerVertex = 7; // GL_3D_COLOR: x, y, z, red, green, blue, alpha

LineEnds DrawInFeedback(const BoundingBox& box, const vec4& colour) {
    std::vector<GLfloat> buffer(4096);
    glFeedbackBuffer(static_cast<GLsizei>(buffer.size()), GL_3D_COLOR, buffer.data());
    glRenderMode(GL_FEEDBACK);
    box.Draw(colour);
    const int count = glRenderMode(GL_RENDER);
    LineEnds ends;
    for (int i = 0; i < count; i += 1 + 2 * floatsPerVertex) {
        const auto token = static_cast<GLint>(buffer[i]);
        EXPECT_TRUE(token == GL_LINE_TOKEN || token == GL_LINE_RESET_TOKEN) << token;
        for (const GLfloat* v : {&buffer[i + 1], &buffer[i + 1 + floatsPerVertex]}) {
            ends.positions.emplace_back(v[0], v[1], v[2]);
            ends.colours.emplace_back(v[3], v[4], v[5], v[6]);
        }
    }
    return ends;
}

class BoundingBoxDraw : public GlTest {
protected:
    /// Window position = world position + 64 in x and y, seen from +z.
    void SetUp() override {
        GlTest::SetUp();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-64, 64, -64, 64, -64, 64);
        glMatrixMode(GL_MODELVIEW);
    }

    struct Extent {
        vec3 low = vec3(1000);
        vec3 high = vec3(-1000);

        void Add(int axis, float position) {
            low[axis] = std::min(low[axis], position);
            high[axis] = std::max(high[axis], position);
        }
    };

    /// World corners of what a box draws, taken from two views: depth itself is no measure, for the
    /// polygon offset pulls faces that are seen edge-on all the way to the front.
    static Extent DrawnExtent(const BoundingBox& box) {
        Extent extent;
        for (const vec3& window : DrawInFeedback(box, vec4(1)).positions) {
            extent.Add(0, window.x - 64);
            extent.Add(1, window.y - 64);
        }
        glRotatef(90, 0, 1, 0); // world z points to the right
        for (const vec3& window : DrawInFeedback(box, vec4(1)).positions)
            extent.Add(2, window.x - 64);
        glLoadIdentity();
        return extent;
    }

    static void ExpectNear(const vec3& actual, const vec3& expected) {
        constexpr float windowPrecision = 1e-3f; // floats of window positions up to 128
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(actual[i], expected[i], windowPrecision) << "component " << i;
    }
};

TEST_F(BoundingBoxDraw, Draws_center_plus_and_minus_size_so_an_offset_box_is_too_large) {
    struct Case {
        vec3 min, max, low, high;
    };
    const Case cases[] = {
        {vec3(-1, -1, -1), vec3(1, 1, 1), vec3(-1, -1, -1), vec3(1, 1, 1)},
        {vec3(0, 0, 0), vec3(2, 2, 2), vec3(0, 0, 0), vec3(2, 2, 2)},
        // center 3, size 5: 3 - 5 to 3 + 5.
        {vec3(2, 2, 2), vec3(4, 4, 4), vec3(-2, -2, -2), vec3(8, 8, 8)},
        {vec3(0, 0, 0), vec3(10, 20, 30), vec3(0, 0, 0), vec3(10, 20, 30)},
    };
    for (const Case& c : cases) {
        const Extent drawn = DrawnExtent(Box(c.min, c.max));
        ExpectNear(drawn.low, c.low);
        ExpectNear(drawn.high, c.high);
    }
}

TEST_F(BoundingBoxDraw, Draws_every_edge_in_the_given_colour) {
    const vec4 colour(0.25f, 0.5f, 0.75f, 0.125f);
    const LineEnds ends = DrawInFeedback(Box(vec3(0, 0, 0), vec3(2, 2, 2)), colour);
    EXPECT_EQ(ends.positions.size(), 6u * 4u * 2u); // six faces of four edges with two ends each
    EXPECT_THAT(ends.colours, ::testing::Each(colour));
}

TEST_F(BoundingBoxDraw, Sends_the_cube_face_by_face) {
    Box(vec3(0, 0, 0), vec3(2, 2, 2)).Draw(vec4(1));
    const float cube[24 * 3] = {
        -1, -1, 1,  1,  -1, 1,  1,  1,  1,  -1, 1,  1,  // front
        -1, -1, -1, -1, 1,  -1, 1,  1,  -1, 1,  -1, -1, // back
        -1, 1,  -1, -1, 1,  1,  1,  1,  1,  1,  1,  -1, // top
        -1, -1, -1, 1,  -1, -1, 1,  -1, 1,  -1, -1, 1,  // bottom
        1,  -1, -1, 1,  1,  -1, 1,  1,  1,  1,  -1, 1,  // right
        -1, -1, -1, -1, -1, 1,  -1, 1,  1,  -1, 1,  -1, // left
    };
    GLvoid* sent = nullptr;
    glGetPointerv(GL_VERTEX_ARRAY_POINTER, &sent);
    ASSERT_NE(sent, nullptr);
    EXPECT_THAT(std::vector<float>(static_cast<float*>(sent), static_cast<float*>(sent) + 24 * 3),
                ::testing::ElementsAreArray(cube));
}

TEST_F(BoundingBoxDraw, Shows_lines_and_no_faces) {
    Box(vec3(0, 0, 0), vec3(40, 40, 40)).Draw(vec4(0, 0, 1, 1));
    const Picture screen = ReadScreen(screenSize, screenSize);
    int blue = 0;
    for (int x = 60; x < 108; ++x) // across the left edge at x = 64 at half the height, y = 84
        blue += screen.At(x, 84) == Rgba{0, 0, 255, 255} ? 1 : 0;
    EXPECT_GE(blue, 1);
    EXPECT_LE(blue, 4); // two edges, each on at most two pixels
    EXPECT_EQ(screen.At(84, 84).b, 0);
}

TEST_F(BoundingBoxDraw, Wins_against_the_face_that_it_outlines) {
    // A white face at the depth of the box's front (z = 40), drawn first with the usual depth test.
    glBegin(GL_QUADS);
    glVertex3f(-60, -60, 40);
    glVertex3f(60, -60, 40);
    glVertex3f(60, 60, 40);
    glVertex3f(-60, 60, 40);
    glEnd();
    Box(vec3(0, 0, 0), vec3(40, 40, 40)).Draw(vec4(0, 0, 1, 1));
    const Picture screen = ReadScreen(screenSize, screenSize);
    bool seen = false;
    for (int x = 60; x < 68; ++x)
        seen = seen || screen.At(x, 84) == Rgba{0, 0, 255, 255};
    EXPECT_TRUE(seen);
}

TEST_F(BoundingBoxDraw, Leaves_white_filled_polygons_and_texturing_disabled) {
    const BoundingBox box = Box(vec3(0, 0, 0), vec3(2, 2, 2));
    box.Draw(vec4(1)); // so that the vertex array is already the one that Draw leaves
    glColor4f(1, 1, 1, 1);
    const GlState before = CaptureGlState();
    glEnable(GL_TEXTURE_2D);
    box.Draw(vec4(0.25f, 0.5f, 0.75f, 0.5f));
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_FALSE(glIsEnabled(GL_POLYGON_OFFSET_LINE));
    GLint modes[2] = {};
    glGetIntegerv(GL_POLYGON_MODE, modes);
    EXPECT_EQ(modes[0], GL_FILL);
    EXPECT_EQ(modes[1], GL_FILL);
    GLfloat factor = 0, units = 0;
    glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &factor);
    glGetFloatv(GL_POLYGON_OFFSET_UNITS, &units);
    EXPECT_EQ(factor, -1.0f);
    EXPECT_EQ(units, -2.0f);
}

} // namespace
