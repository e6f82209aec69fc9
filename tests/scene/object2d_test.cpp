#include "engine/scene/object2d.h"

#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"
#include "tests/support/private_member.h"

#include <array>

OPEN_PRIVATE(object2DMatrix, &Vell::Object2D::matrix);
OPEN_PRIVATE(object2DDebug, &Vell::Object2D::debug);
OPEN_PRIVATE(object2DName, &Vell::Object2D::name);

namespace Vell {

struct Object2DProbe {
    static Matrix& GetMatrix(Object2D& object) { return object.*object2DMatrix; }
    static bool Debug(const Object2D& object) { return object.*object2DDebug; }
    static std::vector<const void*> Fields(const Object2D& object) {
        return {&(object.*object2DMatrix), &(object.*object2DName), &(object.*object2DDebug)};
    }
    static std::string& Name(Object2D& object) { return object.*object2DName; }
};

} // namespace Vell

using namespace Vell;

namespace {

/// A flat object that notes the matrix it would draw under.
struct Note : Object2D {
    void Draw() override {
        glPushMatrix();
        ApplyMatrix();
        glGetFloatv(GL_MODELVIEW_MATRIX, columns.data());
        glPopMatrix();
    }

    std::array<float, 16> columns{};
};

using Elements = std::array<float, 16>;

/// Row by row.
Elements Rows(Object2D& object) {
    Elements rows{};
    for (int i = 0; i < 16; ++i)
        rows[static_cast<std::size_t>(i)] = Object2DProbe::GetMatrix(object)[i];
    return rows;
}

class Object2DTest : public GlTest {};

} // namespace

TEST_F(Object2DTest, Starts_nameless_unmoved_and_not_debugged) {
    Note note;
    EXPECT_EQ(note.GetName(), "");
    EXPECT_FALSE(Object2DProbe::Debug(note));
    EXPECT_EQ(Rows(note), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST_F(Object2DTest, Keeps_its_fields_and_operations_at_their_places) {
    EXPECT_TRUE(InOrder(Object2DProbe::Fields(Note())));
    EXPECT_EQ(Slot(&Object2D::SetPosition), 2u); // behind the destructor
    EXPECT_EQ(Slot(&Object2D::SetRotation), 3u);
    EXPECT_EQ(Slot(&Object2D::SetScale), 4u);
    EXPECT_EQ(Slot(&Object2D::ShowDebug), 5u);
    EXPECT_EQ(Slot(&Object2D::Draw), 6u);
}

TEST_F(Object2DTest, Hands_out_a_copy_of_its_name) {
    Note note;
    Object2DProbe::Name(note) = "logo";
    const std::string& copy = note.GetName();
    Object2DProbe::Name(note) = "other";
    EXPECT_EQ(copy, "logo");
}

TEST_F(Object2DTest, Is_flattened_by_a_scale) {
    Note note;
    note.SetScale(vec2(2.0f, 3.0f));
    EXPECT_EQ(Rows(note), (Elements{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
    note.SetScale(vec2(5.0f, 7.0f));
    EXPECT_EQ(Rows(note), (Elements{5, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}))
        << "a scale replaces the one before";
}

TEST_F(Object2DTest, Keeps_its_scale_when_it_is_moved) {
    Note note;
    note.SetScale(vec2(2.0f, 3.0f));
    note.SetPosition(vec2(0.25f, 0.5f));
    EXPECT_EQ(Rows(note), (Elements{2, 0, 0, 0.25f, 0, 3, 0, 0.5f, 0, 0, 0, 0, 0, 0, 0, 1}));
    note.SetPosition(vec2(1.0f, 1.0f));
    EXPECT_EQ(Rows(note), (Elements{2, 0, 0, 1, 0, 3, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1}))
        << "a position replaces the one before";
}

TEST_F(Object2DTest, Goes_left_and_down_and_is_mirrored_by_negative_numbers) {
    Note note;
    note.SetPosition(vec2(-0.25f, -0.5f));
    note.SetScale(vec2(-2.0f, -3.0f));
    EXPECT_EQ(Rows(note), (Elements{-2, 0, 0, -0.25f, 0, -3, 0, -0.5f, 0, 0, 0, 0, 0, 0, 0, 1}));
}

TEST_F(Object2DTest, Does_not_turn) {
    Note note;
    note.SetRotation(vec2(1.0f, 2.0f));
    EXPECT_EQ(Rows(note), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST_F(Object2DTest, Remembers_that_it_should_be_debugged) {
    Note note;
    note.ShowDebug(true);
    EXPECT_TRUE(Object2DProbe::Debug(note));
    note.ShowDebug(false);
    EXPECT_FALSE(Object2DProbe::Debug(note));
}

TEST_F(Object2DTest, Hands_OpenGL_its_matrix_column_by_column_and_keeps_its_own) {
    Note note;
    note.SetPosition(vec2(0.25f, 0.5f));
    const Elements before = Rows(note);
    note.Draw();
    EXPECT_EQ(note.columns, (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.25f, 0.5f, 0, 1}));
    EXPECT_EQ(Rows(note), before);
}
