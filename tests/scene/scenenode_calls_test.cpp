// Scene nodes, call by call: in view and out of it.

#include "tests/recording/calls.h"
#include "tests/scene/noted_mesh.h"

#include "engine/math/frustum.h"
#include "engine/scene/scenenode.h"

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
