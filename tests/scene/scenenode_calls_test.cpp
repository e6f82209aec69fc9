// Scene nodes, the camera and the view frustum, call by call.

#include "tests/recording/calls.h"
#include "tests/scene/noted_mesh.h"

#include "engine/math/frustum.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"

using Vell::Camera;
using Vell::SceneNode;
using Vell::vec3;

namespace {

class NodeCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        Vell::Frustum::GetInstance().MakePlane(); // from the origin along -z
        Forget();
        node.SetMesh(&mesh);
    }

    NotedMesh mesh{"mesh"};
    SceneNode node;
};

} // namespace

TEST_F(NodeCalls, Node_in_view_draws_its_mesh_under_its_transform) {
    node.SetScale(vec3(2, 3, 4));
    node.SetPosition(vec3(0.5f, 0, -10));
    EXPECT_TRUE(node.Draw());
    EXPECT_TRUE(Made(R"(
        glPushMatrix()
        glMultMatrixf(2 0 0 0 0 3 0 0 0 0 4 0 0.5 0 -10 1)
        Draw(mesh)
        glPopMatrix()
        )"));
    EXPECT_TRUE(node.DrawShadow());
    EXPECT_TRUE(Made(R"(
        glPushMatrix()
        glMultMatrixf(2 0 0 0 0 3 0 0 0 0 4 0 0.5 0 -10 1)
        DrawShadow(mesh)
        glPopMatrix()
        )"));
}

TEST_F(NodeCalls, Node_behind_the_camera_calls_nothing) {
    node.SetPosition(vec3(0, 0, 10));
    EXPECT_FALSE(node.Draw());
    EXPECT_FALSE(node.DrawShadow());
    EXPECT_TRUE(Made(""));
}

TEST_F(NodeCalls, Camera_looks_with_y_up) {
    Camera camera;
    camera.Set(vec3(1.5f, -2.25f, 3.125f), vec3(4.5f, 5.75f, -6.5f));
    camera.Draw();
    EXPECT_TRUE(Made("gluLookAt(1.5, -2.25, 3.125, 4.5, 5.75, -6.5, 0, 1, 0)"));
}

TEST_F(NodeCalls, Frustum_reads_model_view_and_then_projection) {
    Vell::Frustum::GetInstance().MakePlane();
    EXPECT_TRUE(Made("glGetFloatv(GL_MODELVIEW_MATRIX); glGetFloatv(GL_PROJECTION_MATRIX)"));
}
