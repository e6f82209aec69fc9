#include "engine/scene/camera.h"

#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"

#include <array>
#include <memory>

using namespace Vell;

namespace {

class CameraTest : public GlTest {
protected:
    /// The model-view matrix as OpenGL keeps it, column by column.
    static std::array<float, 16> ModelView() {
        std::array<float, 16> matrix{};
        glGetFloatv(GL_MODELVIEW_MATRIX, matrix.data());
        return matrix;
    }

    static void ExpectModelView(const std::array<float, 16>& expected) {
        const std::array<float, 16> actual = ModelView();
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_FLOAT_EQ(actual[i], expected[i]) << "element " << i;
    }
};

} // namespace

TEST_F(CameraTest, Stands_at_the_origin_and_looks_at_it_until_it_is_set) {
    const Camera camera;
    EXPECT_EQ(camera.GetPosition(), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(camera.GetTarget(), vec3(0.0f, 0.0f, 0.0f));
}

TEST_F(CameraTest, Keeps_its_fields_and_operations_at_their_places) {
    struct Open : Camera {
        std::vector<const void*> Fields() const { return {&position, &target}; }
    };
    EXPECT_TRUE(InOrder(Open().Fields()));
    EXPECT_EQ(Slot(&Camera::Draw), 2u); // behind the destructor
}

TEST_F(CameraTest, Draws_a_collapsed_view_without_harm_until_it_is_set) {
    Camera camera;
    camera.Draw();
    // No direction: the three axes of the view are zero vectors, and only w is left.
    ExpectModelView({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1});
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(CameraTest, Keeps_position_and_target_apart) {
    Camera camera;
    camera.Set(vec3(1.0f, 2.0f, 3.0f), vec3(4.0f, 5.0f, 6.0f));
    EXPECT_EQ(camera.GetPosition(), vec3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(camera.GetTarget(), vec3(4.0f, 5.0f, 6.0f));
    camera.SetPosition(vec3(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(camera.GetPosition(), vec3(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(camera.GetTarget(), vec3(4.0f, 5.0f, 6.0f));
    camera.SetTarget(vec3(-1.0f, -2.0f, -3.0f));
    EXPECT_EQ(camera.GetPosition(), vec3(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(camera.GetTarget(), vec3(-1.0f, -2.0f, -3.0f));
}

TEST_F(CameraTest, Hands_out_copies) {
    Camera camera;
    camera.GetPosition() += vec3(1.0f, 1.0f, 1.0f);
    camera.GetTarget() += vec3(1.0f, 1.0f, 1.0f);
    EXPECT_EQ(camera.GetPosition(), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(camera.GetTarget(), vec3(0.0f, 0.0f, 0.0f));
}

TEST_F(CameraTest, Only_moves_the_world_when_it_looks_along_minus_z) {
    Camera camera;
    camera.Set(vec3(1.0f, 2.0f, 3.0f), vec3(1.0f, 2.0f, -7.0f));
    camera.Draw();
    ExpectModelView({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1});
}

TEST_F(CameraTest, Keeps_y_up_when_it_looks_along_x) {
    Camera camera;
    camera.Set(vec3(0.0f, 0.0f, 0.0f), vec3(10.0f, 0.0f, 0.0f));
    camera.Draw();
    // Right is forward x up = (1,0,0) x (0,1,0) = (0,0,1), up (0,1,0), backward (-1,0,0): the rows
    // of the view, so x lands on -z and z on x.
    ExpectModelView({0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1});
}

TEST_F(CameraTest, Multiplies_its_view_onto_the_current_matrix) {
    Camera camera;
    camera.Set(vec3(1.0f, 2.0f, 3.0f), vec3(1.0f, 2.0f, -7.0f));
    glScalef(2.0f, 2.0f, 2.0f);
    camera.Draw();
    ExpectModelView({2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, -2, -4, -6, 1});
}

TEST_F(CameraTest, Can_be_specialised) {
    struct Still : Camera {
        explicit Still(int* ended) : count(ended) {}
        ~Still() override { ++*count; }
        void Draw() override { ++*count; }
        int* count;
    };
    int calls = 0;
    std::unique_ptr<Camera> camera = std::make_unique<Still>(&calls);
    camera->Draw();
    EXPECT_EQ(calls, 1) << "the derived Draw";
    camera.reset();
    EXPECT_EQ(calls, 2) << "the derived destructor";
}
