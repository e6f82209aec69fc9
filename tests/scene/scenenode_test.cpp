#include "engine/scene/scenenode.h"

#include "engine/math/frustum.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"

#include <numbers>

OPEN_PRIVATE(sceneNodeTransform, &Vell::SceneNode::transform);
OPEN_PRIVATE(sceneNodeMesh, &Vell::SceneNode::mesh);

namespace Vell {

struct SceneNodeProbe {
    static const Matrix& Transform(const SceneNode& node) { return node.*sceneNodeTransform; }
    static std::vector<const void*> Fields(const SceneNode& n) {
        return {&(n.*sceneNodeTransform), &(n.*sceneNodeMesh)};
    }
};

} // namespace Vell

using namespace Vell;

namespace {

constexpr float pi = std::numbers::pi_v<float>;

/// A unit square from (0, 0) to (1, 1) that counts its passes and remembers under which model-view
/// matrix the last one ran.
struct Square : Mesh {
    Square() { bbox.Set(vec3(0.0f, 0.0f, 0.0f), vec3(1.0f, 1.0f, 0.0f)); }

    void Draw() override {
        ++drawn;
        Fill();
    }
    void DrawShadow() override {
        ++shadows;
        Fill();
    }
    void Fill() {
        float columns[16];
        glGetFloatv(GL_MODELVIEW_MATRIX, columns);
        for (int i = 0; i < 16; ++i)
            under.Get()[i] = columns[i];
        under.Transpose();
        glRectf(0.0f, 0.0f, 1.0f, 1.0f);
    }

    int drawn = 0;
    int shadows = 0;
    Matrix under; // rows first
};

/// Looks at x and y from -4 to 4, z from -10 to 10: 16 pixels a unit on the 128 pixel screen.
class SceneNodeTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        LookAt(-4.0, 4.0);
        node.SetMesh(&square);
    }

    static void LookAt(double left, double right) {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(left, right, -4.0, 4.0, -10.0, 10.0);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        Frustum::GetInstance().MakePlane();
    }

    const Matrix& Transform() { return SceneNodeProbe::Transform(node); }

    void ExpectMoves(const vec3& from, const vec3& to) {
        const vec3 moved = Transform() * from;
        EXPECT_NEAR(moved.x, to.x, 1e-6f); // the float cosine of pi / 2 is 4e-8, not 0
        EXPECT_NEAR(moved.y, to.y, 1e-6f);
        EXPECT_NEAR(moved.z, to.z, 1e-6f);
    }

    Square square;
    SceneNode node;
};

void ExpectSame(const Matrix& actual, const Matrix& expected) {
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-6f) << "element " << i;
}

} // namespace

TEST_F(SceneNodeTest, Starts_without_mesh_under_the_identity) {
    SceneNode fresh;
    EXPECT_EQ(fresh.GetMesh(), nullptr);
    ExpectSame(SceneNodeProbe::Transform(fresh), Matrix());
}

TEST_F(SceneNodeTest, Keeps_its_fields_and_operations_at_their_places) {
    EXPECT_TRUE(InOrder(SceneNodeProbe::Fields(node)));
    EXPECT_EQ(Slot(&SceneNode::SetPosition), 2u); // behind the destructor
    EXPECT_EQ(Slot(&SceneNode::SetRotation), 3u);
    EXPECT_EQ(Slot(&SceneNode::SetScale), 4u);
    EXPECT_EQ(Slot(&SceneNode::SetMesh), 5u);
    EXPECT_EQ(Slot(&SceneNode::GetMesh), 6u);
    EXPECT_EQ(Slot(&SceneNode::Draw), 7u);
    EXPECT_EQ(Slot(&SceneNode::DrawShadow), 8u);
}

TEST_F(SceneNodeTest, Returns_the_mesh_it_was_given) {
    EXPECT_EQ(node.GetMesh(), &square);
    Square other;
    node.SetMesh(&other);
    EXPECT_EQ(node.GetMesh(), &other);
}

TEST_F(SceneNodeTest, Leaves_its_mesh_alone_when_it_ends) {
    {
        SceneNode brief;
        brief.SetMesh(&square);
    }
    EXPECT_TRUE(node.Draw());
    EXPECT_EQ(square.drawn, 1);
}

TEST_F(SceneNodeTest, Draws_its_mesh_doubled_and_moved) {
    node.SetScale(vec3(2.0f, 2.0f, 2.0f));
    node.SetPosition(vec3(1.0f, 0.0f, 0.0f));
    EXPECT_TRUE(node.Draw());
    // x from 1 to 3 and y from 0 to 2, 16 pixels a unit, with the origin at pixel 64.
    const Picture expected = MakePicture(screenSize, screenSize, [](int x, int y) {
        const bool inside = x >= 80 && x < 112 && y >= 64 && y < 96;
        return inside ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    });
    EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize), expected));
}

TEST_F(SceneNodeTest, Keeps_the_view_and_puts_its_transform_on_top_of_it) {
    glTranslatef(0.0f, 0.0f, -5.0f);
    node.SetPosition(vec3(1.0f, 2.0f, 3.0f));
    node.SetRotation(vec3(0.0f, 0.0f, pi / 2.0f));
    node.Draw();
    Matrix expected; // z by a quarter turn: x to y, y to -x; then moved to (1, 2, 3 - 5)
    expected.RotateZ(pi / 2.0f);
    expected.Translate(vec3(1.0f, 2.0f, -2.0f));
    ExpectSame(square.under, expected);
}

TEST_F(SceneNodeTest, Leaves_the_state_and_its_own_transform_as_they_were) {
    node.SetPosition(vec3(1.0f, 2.0f, 3.0f));
    const Matrix before = Transform();
    const GlState state = CaptureGlState();
    node.Draw();
    node.DrawShadow();
    EXPECT_EQ(Differences(state, CaptureGlState()), "");
    ExpectSame(Transform(), before);
}

TEST_F(SceneNodeTest, May_be_moved_by_its_mesh_while_it_is_drawn) {
    struct Mover : Square {
        void Draw() override { node->SetPosition(vec3(1.0f, 2.0f, 3.0f)); }
        void DrawShadow() override { Draw(); }
        SceneNode* node = nullptr;
    };
    Mover mover;
    mover.node = &node;
    node.SetMesh(&mover);
    Matrix expected;
    expected.Translate(vec3(1.0f, 2.0f, 3.0f));
    for (bool (SceneNode::*pass)() : {&SceneNode::Draw, &SceneNode::DrawShadow}) {
        node.SetPosition(vec3(0.0f, 0.0f, 0.0f));
        EXPECT_TRUE((node.*pass)());
        ExpectSame(Transform(), expected);
    }
}

TEST_F(SceneNodeTest, Is_not_drawn_behind_the_camera) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(70.0, 1.0, 0.1, 100.0);
    glMatrixMode(GL_MODELVIEW);
    Frustum::GetInstance().MakePlane(); // from the origin along -z
    node.SetPosition(vec3(0.0f, 0.0f, 5.0f));
    EXPECT_FALSE(node.Draw());
    EXPECT_FALSE(node.DrawShadow());
    EXPECT_EQ(square.drawn, 0);
    EXPECT_EQ(square.shadows, 0);
    node.SetPosition(vec3(0.0f, 0.0f, -5.0f));
    EXPECT_TRUE(node.Draw());
    EXPECT_EQ(square.drawn, 1);
}

TEST_F(SceneNodeTest, Draws_shadows_with_the_mesh_s_shadow_pass) {
    node.SetPosition(vec3(2.0f, 0.0f, 0.0f));
    EXPECT_TRUE(node.DrawShadow());
    EXPECT_EQ(square.shadows, 1);
    EXPECT_EQ(square.drawn, 0);
    EXPECT_FLOAT_EQ(square.under[3], 2.0f);
}

TEST_F(SceneNodeTest, Leaves_it_to_its_mesh_to_be_hidden_and_to_cast_no_shadow) {
    square.SetShow(false);
    EXPECT_TRUE(node.Draw());
    EXPECT_TRUE(node.DrawShadow());
    EXPECT_EQ(square.drawn, 1);
    EXPECT_EQ(square.shadows, 1);
}

TEST_F(SceneNodeTest, Is_culled_exactly_where_its_box_ends_along_every_axis) {
    struct Case {
        double low, high; // of the view along the axis
        bool drawn;
    };
    const Case cases[] = {
        {1.25, 5.25, true}, {1.5, 5.5, false}, {-3.25, 0.75, true}, {-3.5, 0.5, false}};
    square.GetBBox()->Set(vec3(0.0f, 0.0f, 0.0f), vec3(1.0f, 1.0f, 1.0f));
    node.SetPosition(vec3(0.5f, 0.5f, 0.5f)); // the box lies from 0.5 to 1.5
    for (int axis = 0; axis < 3; ++axis)
        for (const Case& c : cases) {
            double low[] = {-4.0, -4.0, -4.0}, high[] = {4.0, 4.0, 4.0};
            low[axis] = c.low;
            high[axis] = c.high;
            glMatrixMode(GL_PROJECTION);
            glLoadIdentity();
            glOrtho(low[0], high[0], low[1], high[1], -high[2], -low[2]); // it looks along -z
            glMatrixMode(GL_MODELVIEW);
            Frustum::GetInstance().MakePlane();
            EXPECT_EQ(node.Draw(), c.drawn)
                << "axis " << axis << ", view from " << c.low << " to " << c.high;
        }
}

TEST_F(SceneNodeTest, Is_culled_by_its_place_when_its_mesh_has_no_box) {
    square.GetBBox()->Set(vec3(0.0f, 0.0f, 0.0f), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_TRUE(node.Draw());
    node.SetPosition(vec3(4.5f, 0.0f, 0.0f)); // the view ends at 4
    EXPECT_FALSE(node.Draw());
}

TEST_F(SceneNodeTest, Is_culled_by_the_box_between_its_two_turned_corners_alone) {
    // A box of +-1 turned by 45 degrees reaches from x = -1.41 to 1.41, but its corners (-1, -1)
    // and (1, 1) both land on x = 0: with a view that begins at x = 0.5 the node is culled.
    square.GetBBox()->Set(vec3(-1.0f, -1.0f, -1.0f), vec3(1.0f, 1.0f, 1.0f));
    LookAt(0.5, 4.0);
    EXPECT_TRUE(node.Draw()) << "unturned, the box reaches x = 1";
    node.SetRotation(vec3(0.0f, 0.0f, pi / 4.0f));
    EXPECT_FALSE(node.Draw());
}

TEST_F(SceneNodeTest, Is_drawn_when_its_two_turned_corners_together_reach_into_the_view) {
    // Turned by a quarter, the corners (-1, -1) and (1, 1) of the box land on (1, -1) and (-1, 1);
    // by a quarter the other way round they change places.
    struct Case {
        const char* what;
        double left, right;
        float turn;
    };
    const Case cases[] = {
        {"the smallest corner alone is in view", 0.5, 4.0, pi / 2.0f},
        {"the largest corner alone is in view", 0.5, 4.0, -pi / 2.0f},
        {"no corner is, the view lies between them", -0.5, 0.5, pi / 2.0f},
    };
    square.GetBBox()->Set(vec3(-1.0f, -1.0f, -1.0f), vec3(1.0f, 1.0f, 1.0f));
    for (const Case& c : cases) {
        LookAt(c.left, c.right);
        SceneNode turned;
        turned.SetMesh(&square);
        turned.SetRotation(vec3(0.0f, 0.0f, c.turn));
        EXPECT_TRUE(turned.Draw()) << c.what;
        EXPECT_TRUE(turned.DrawShadow()) << c.what;
    }
}

TEST_F(SceneNodeTest, Turns_by_a_full_turn_after_two_half_turns_since_rotations_accumulate) {
    node.SetRotation(vec3(0.0f, pi, 0.0f));
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(-1.0f, 0.0f, 0.0f));
    node.SetRotation(vec3(0.0f, pi, 0.0f));
    ExpectSame(Transform(), Matrix());
}

TEST_F(SceneNodeTest, Multiplies_the_x_turn_before_the_y_turn) {
    node.SetRotation(vec3(pi / 2.0f, pi / 2.0f, 0.0f));
    // Rx * Ry: y turns x to +z, then x turns z to -y. The other order would end on +z.
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(0.0f, -1.0f, 0.0f));
}

TEST_F(SceneNodeTest, Multiplies_the_y_turn_before_the_z_turn) {
    node.SetRotation(vec3(0.0f, pi / 2.0f, pi / 2.0f));
    // Ry * Rz: z turns x to y, which y leaves alone. The other order would end on +z.
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(0.0f, 1.0f, 0.0f));
}

TEST_F(SceneNodeTest, Takes_its_position_at_any_time) {
    node.SetPosition(vec3(9.0f, 9.0f, 9.0f));
    node.SetRotation(vec3(0.0f, 0.0f, pi / 2.0f));
    node.SetPosition(vec3(1.0f, 2.0f, 3.0f));
    // The turn takes (1, 0, 0) to (0, 1, 0); the last position alone is added.
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(1.0f, 3.0f, 3.0f));
}

TEST_F(SceneNodeTest, Replaces_the_turned_diagonal_when_it_is_scaled_after_a_turn) {
    node.SetRotation(vec3(0.0f, 0.0f, pi / 2.0f));
    node.SetScale(vec3(2.0f, 3.0f, 4.0f));
    // Rows (2, -1, 0), (1, 3, 0), (0, 0, 4): the sines stay, the cosines are gone.
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(2.0f, 1.0f, 0.0f));
    ExpectMoves(vec3(0.0f, 1.0f, 0.0f), vec3(-1.0f, 3.0f, 0.0f));
    ExpectMoves(vec3(0.0f, 0.0f, 1.0f), vec3(0.0f, 0.0f, 4.0f));
}

TEST_F(SceneNodeTest, Turns_what_was_scaled_before) {
    node.SetScale(vec3(2.0f, 3.0f, 4.0f));
    node.SetRotation(vec3(0.0f, 0.0f, pi / 2.0f));
    // diag(2, 3, 4) * Rz: x turns to y, which is scaled by 3.
    ExpectMoves(vec3(1.0f, 0.0f, 0.0f), vec3(0.0f, 3.0f, 0.0f));
}
