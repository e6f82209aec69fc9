// The end of a loaded scene. A file of its own, since a process can load the demo's files only
// once: the resource registry goes on naming what was freed.

#include "demo/scene1.h"

#include "demo/post_water.h"
#include "tests/support/demo_data.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/scene_stage.h"

#include <gmock/gmock.h>

#include <memory>

using ::testing::Contains;

namespace {

class SceneEnd : public GlTest {};

/// "FREE" rows a complete scene must leave: what was loaded, wisp shaders once per mesh.
const std::vector<LogRow> freed = {
    {"Shader", "FREE", "Data/Gfx/City/shader.vert Data/Gfx/City/shader.frag"},
    {"XT3DStatic", "FREE", "Data/Gfx/City/city.xt3dstatic"},
    {"Shader", "FREE", "Data/Gfx/Wisp/billboard.vert Data/Gfx/Wisp/billboard.frag"},
    {"XT3DStatic", "FREE", "Data/Gfx/Wisp/green.xt3dstatic"},
    {"XT3DStatic", "FREE", "Data/Gfx/Wisp/red.xt3dstatic"},
    {"XT3DStatic", "FREE", "Data/Gfx/Wisp/blue.xt3dstatic"},
    {"XT3DStatic", "FREE", "Data/Gfx/Fish/fish.xt3dstatic"},
    {"Image", "FREE", "Data/Gfx/City/sky/xpos.jpg"},
    {"Image", "FREE", "Data/Gfx/City/sky/xneg.jpg"},
    {"Image", "FREE", "Data/Gfx/City/sky/ypos.jpg"},
    {"Image", "FREE", "Data/Gfx/City/sky/yneg.jpg"},
    {"Image", "FREE", "Data/Gfx/City/sky/zpos.jpg"},
    {"Image", "FREE", "Data/Gfx/City/sky/zneg.jpg"},
    {"Image", "FREE", "Data/Gfx/water.jpg"},
    {"Image", "FREE", "Data/Gfx/Logo/logo.jpg"},
};

} // namespace

TEST_F(SceneEnd, Frees_everything_it_loaded_the_logo_last_and_leaves_the_ripple_alive) {
    MakeDemoData();
    auto scene = std::make_unique<Scene1>();
    PostWater* ripple = &Scene1Probe::Ripple(*scene);
    scene->Load();
    scene->Draw(0.02f);

    const LogWatch log;
    scene.reset();
    const std::vector<LogRow> rows = log.NewRows();
    for (const LogRow& row : freed)
        EXPECT_THAT(rows, Contains(row));
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.back(), freed.back());

    ripple->SetEnable(true); // the sanitizer build reports this if the object is gone
    EXPECT_TRUE(IsOn(*ripple));
    delete ripple;
}
