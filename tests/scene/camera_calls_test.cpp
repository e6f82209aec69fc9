// The camera, call by call.

#include "tests/recording/calls.h"

#include "engine/scene/camera.h"

using Vell::Camera;
using Vell::vec3;

namespace {

class CameraCalls : public Calls {};

} // namespace

TEST_F(CameraCalls, Looks_with_y_up) {
    Camera camera;
    camera.Set(vec3(1.5f, -2.25f, 3.125f), vec3(4.5f, 5.75f, -6.5f));
    camera.Draw();
    EXPECT_TRUE(Made("gluLookAt(1.5, -2.25, 3.125, 4.5, 5.75, -6.5, 0, 1, 0)"));
}
