// What a frame consists of; contents and ownership are in scenemanager_test.cpp.
#include "engine/scene/scenemanager.h"

#include "engine/core/GLExtensions.h"
#include "engine/env/shadowmapping.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/math/frustum.h"
#include "engine/math/vec2.h"
#include "engine/post/postprocess.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"
#include "tests/scene/frame_stage.h"
#include "tests/support/gl_state.h"
#include "tests/support/pixels.h"

#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::SceneManager;
using Vell::vec3;
using Vell::vec4;

namespace {

constexpr int size = 128;

// 10 units ahead of a camera at (0, 4, 10) that looks along -z; 2 x 2 units, the field of view
// being 90 degrees: 64 +- 6.4 pixels.
const Rectangle ahead{vec3(-1, 3, 0), vec3(2, 0, 0), vec3(0, 2, 0)};
constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba green{0, 255, 0, 255};

Picture SceneTarget(SceneManager& scene) {
    return ReadTexture(scene.GetFBO()->GetColor());
}

} // namespace

TEST_F(SceneFrame, Empty_scene_shows_the_clear_colour) {
    glClearColor(0.2f, 0.4f, 0.6f, 1.0f); // 51, 102, 153
    SceneManager scene;
    scene.Draw();
    EXPECT_TRUE(Matches(SceneTarget(scene), Picture(size, size, {51, 102, 153, 255})));
    EXPECT_TRUE(Matches(ReadScreen(size, size), Picture(size, size, {51, 102, 153, 255})));
}

TEST_F(SceneFrame, Node_is_drawn_at_its_position_into_the_scene_target_and_shown) {
    SceneManager scene;
    LookAhead(scene);
    RectangleMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(3, 2, 0)); // 19.2 pixels right, 12.8 up: 76.8..89.6, 70.4..83.2
    scene.Draw();
    for (const Picture& picture : {SceneTarget(scene), ReadScreen(size, size)}) {
        EXPECT_TRUE(Near(picture.At(78, 72), red));
        EXPECT_TRUE(Near(picture.At(88, 82), red));
        EXPECT_EQ(picture.At(75, 76).r, 0);
        EXPECT_EQ(picture.At(83, 68).r, 0);
        EXPECT_EQ(picture.At(91, 76).r, 0);
    }
}

TEST_F(SceneFrame, Nodes_out_of_view_are_not_drawn) {
    SceneManager scene;
    LookAhead(scene);
    NotingMesh behind("behind", ahead, red, notes);
    NotingMesh seen("seen", ahead, red, notes);
    scene.AddSceneNode(&behind, vec3(0, 0, 40));
    scene.AddSceneNode(&seen, vec3(0));
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("seen main"));
}

TEST_F(SceneFrame, Plain_frame_draws_every_node_once_in_order) {
    SceneManager scene;
    LookAhead(scene);
    NotingMesh first("first", ahead, red, notes);
    NotingMesh second("second", ahead, green, notes);
    scene.AddSceneNode(&first, vec3(0));
    scene.AddSceneNode(&second, vec3(0));
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("first main", "second main"));
}

TEST_F(SceneFrame, Water_in_view_adds_reflection_and_refraction_from_the_second_frame_on) {
    SceneManager scene;
    LookAhead(scene);
    NotingMesh mesh("node", ahead, red, notes);
    scene.AddSceneNode(&mesh, vec3(0));
    Vell::Water* water = scene.AddWater();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node main"));
    EXPECT_TRUE(water->GetInFrustum());
    notes.clear();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node reflection", "node refraction", "node main"));
}

TEST_F(SceneFrame, Water_out_of_view_costs_no_pass_but_is_still_asked_to_draw) {
    SceneManager scene;
    LookAtTheSky(scene);
    NotingMesh mesh("node", Rectangle{vec3(-1, 14, 8), vec3(2, 0, 0), vec3(0, 0, 2)}, red, notes);
    scene.AddSceneNode(&mesh, vec3(0));
    Vell::Water* water = scene.AddWater();
    scene.Draw();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node main", "node main"));
    EXPECT_FALSE(water->GetInFrustum());

    // That Draw() is called shows when the water comes into view: it alone finds that out.
    LookAhead(scene);
    scene.Draw();
    EXPECT_TRUE(water->GetInFrustum());
}

TEST_F(SceneFrame, Water_that_went_out_of_view_has_its_passes_for_one_more_frame) {
    SceneManager scene;
    LookAhead(scene);
    NotingMesh overhead("node", Rectangle{vec3(-1, 14, 8), vec3(2, 0, 0), vec3(0, 0, 2)}, red,
                        notes);
    scene.AddSceneNode(&overhead, vec3(0));
    scene.AddWater();
    scene.Draw();
    LookAtTheSky(scene);
    notes.clear();
    scene.Draw(); // the frame before saw the water
    EXPECT_THAT(notes, ::testing::Contains("node refraction"));
    notes.clear();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node main"));
}

TEST_F(SceneFrame, Shadows_draw_every_node_twice_before_its_passes) {
    SceneManager scene;
    LookAhead(scene);
    NotingMesh mesh("node", ahead, red, notes);
    scene.AddSceneNode(&mesh, vec3(0));
    scene.AddShadowMapping(vec3(0, 8, 8), vec3(0, 4, 0), 64, 0.5f);
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node shadow of light", "node shadow of shadow", "node main"));

    scene.AddWater();
    scene.Draw();
    notes.clear();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("node shadow of light", "node shadow of shadow",
                                   "node reflection", "node refraction", "node main"));
}

TEST_F(SceneFrame, Mirror_image_of_a_node_appears_in_the_water) {
    // 3 to 5 above the surface, 10 ahead, the eye 4 above: the image is 3 to 5 below the surface,
    // 7 to 9 below the eye: rows 64 - 57.6 = 6.4 to 64 - 44.8 = 19.2.
    SceneManager scene;
    scene.AddCamera(vec3(-20, 4, 10), vec3(-20, 4, 0)); // off the strip 0 <= x <= 1
    RectangleMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(-20, 0, 0));
    AddMirror(scene);
    scene.Draw();
    scene.Draw();
    const Picture screen = ReadScreen(size, size);
    EXPECT_TRUE(Near(screen.At(64, 60), red)); // the node itself
    for (int y : {8, 12, 17})
        EXPECT_TRUE(Near(screen.At(64, y), red)) << y;
    for (int y : {4, 21, 50})
        EXPECT_TRUE(Near(screen.At(64, y), {0, 0, 0, 255})) << y;
}

TEST_F(SceneFrame, Reflection_and_refraction_show_the_scene_of_the_same_frame) {
    SceneManager scene;
    scene.AddCamera(vec3(-20, 4, 10), vec3(-20, 4, 0));
    RectangleMesh mesh(ahead, red);
    Vell::SceneNode* node = scene.AddSceneNode(&mesh, vec3(-20, 0, 0));
    AddMirror(scene);
    scene.Draw();
    scene.Draw();
    node->SetPosition(vec3(-17, 0, 0)); // 19.2 pixels further right
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(83, 12), red));
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 12), {0, 0, 0, 255}));
}

TEST_F(SceneFrame, Sky_is_mirrored_in_the_reflection_only) {
    // Brown below the horizon, blue above. Seen from 400 above the water, row 30 looks down by
    // 33.5 / 64; its mirror ray meets the sky that much above the horizon, in the blue. A sky that
    // is centred on the eye instead of its mirror image is 800 higher: brown there.
    const std::string face = FreshName("half", ".png");
    WritePicture(face, MakePicture(64, 64, [](int, int y) {
                     return y < 32 ? Rgba{100, 50, 0, 255} : Rgba{0, 0, 250, 255};
                 }));
    SceneManager scene;
    scene.AddSkyBox(face, face, face, face, face, face);
    scene.AddCamera(vec3(-20, 400, -10), vec3(-20, 400, -20));
    Vell::Water* water = AddMirror(scene);
    scene.Draw();
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 100), {0, 0, 250, 255}, 1));
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 30), {0, 0, 250, 255}, 1));
    water->SetBlend(1.0f);
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 30), {100, 50, 0, 255}, 1));
}

TEST_F(SceneFrame, Every_pass_culls_by_its_own_view) {
    // Looking down by 45 degrees the camera sees from straight down to the horizon, and the
    // mirrored one from the horizon to straight up; `high` is 8 above the water. The light looks
    // along +z, at `behind`, which is behind the camera.
    SceneManager scene;
    scene.AddCamera(vec3(0, 4, 10), vec3(0, 3, 9));
    NotingMesh high("high", Rectangle{vec3(-1, 8, -2), vec3(2, 0, 0), vec3(0, 2, 0)}, red, notes);
    NotingMesh behind("behind", Rectangle{vec3(-1, 3, 30), vec3(2, 0, 0), vec3(0, 2, 0)}, red,
                      notes);
    scene.AddSceneNode(&high, vec3(0));
    scene.AddSceneNode(&behind, vec3(0));
    AddMirror(scene);
    scene.AddShadowMapping(vec3(0, 4, 10), vec3(0, 4, 20), 64, 0.5f);
    scene.Draw();
    notes.clear();
    scene.Draw();
    EXPECT_THAT(notes, ElementsAre("behind shadow of light", "high reflection"));
}

TEST_F(SceneFrame, Scene_target_is_cleared_of_depth_only_under_a_sky) {
    SceneManager scene;
    AddWhiteSky(scene);
    LookAhead(scene);
    RectangleMesh nearMesh(ahead, red);
    RectangleMesh farMesh(Rectangle{vec3(-5, -1, -20), vec3(10, 0, 0), vec3(0, 10, 0)}, green);
    Vell::SceneNode* nearNode = scene.AddSceneNode(&nearMesh, vec3(0));
    scene.AddSceneNode(&farMesh, vec3(0));
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), red));
    nearNode->SetPosition(vec3(0, 1000, 0));
    scene.Draw(); // the depth of the near node is gone, and so is its colour, under the sky
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), green));
    EXPECT_TRUE(Near(ReadScreen(size, size).At(10, 100), {200, 210, 220, 255}, 1));
}

TEST_F(SceneFrame, Water_is_drawn_after_the_terrain_and_before_the_nodes) {
    // A node without depth of its own, at the water's place: it lies over the water.
    class OverlayMesh : public RectangleMesh {
    public:
        using RectangleMesh::RectangleMesh;
        void Draw() override {
            std::array<GLubyte, 4> pixel{};
            glReadPixels(20, 20, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
            underneath.push_back(pixel[1]);
        }
        std::vector<int> underneath;
    };
    SceneManager scene;
    LookAhead(scene);
    OverlayMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(0));
    scene.AddWater();
    scene.SetFogColor(vec4(0, 1, 0, 1));
    scene.SetFogDensity(10.0f); // all green: the water shows the fog
    scene.Draw();
    EXPECT_THAT(mesh.underneath, ElementsAre(255));
}

TEST_F(SceneFrame, Terrain_is_drawn_in_the_main_pass_and_under_fog) {
    // The first tile: x 32..33, z 32..40 at y = 60 - 10 = 50, seen from above. Fog all over it.
    const std::string heights = FreshName("heights", ".png");
    WritePicture(heights, Picture(32, 32, {60, 0, 0, 255}));
    SceneManager scene;
    Vell::Terrain* terrain = scene.AddTerrain(heights, 1);
    terrain->SetScale(vec3(1));
    scene.SetFogColor(vec4(0, 0, 1, 1));
    scene.SetFogDensity(10.0f);
    scene.AddCamera(vec3(32.5f, 54, 36), vec3(32.5f, 50, 35.99f));
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), {0, 0, 255, 255}));
    EXPECT_EQ(ReadScreen(size, size).At(10, 64).b, 0); // beside the strip
}

TEST_F(SceneFrame, Shadow_darkens_the_finished_picture) {
    // A light above a square at half its height, both seen from above: the floor's shadow is -2..2
    // around the origin, the square -1..1. Seen from 20 up, 64 / 20 = 3.2 pixels per unit of floor.
    SceneManager scene;
    RectangleMesh ground(Rectangle{vec3(-30, 0, -30), vec3(60, 0, 0), vec3(0, 0, 60)},
                         {200, 100, 50, 255});
    RectangleMesh square(Rectangle{vec3(-1, 5, -1), vec3(2, 0, 0), vec3(0, 0, 2)},
                         {0, 200, 0, 255});
    scene.AddSceneNode(&ground, vec3(0));
    scene.AddSceneNode(&square, vec3(0));
    scene.AddCamera(vec3(0, 20, 0), vec3(0, 0, -0.02f));
    scene.AddShadowMapping(vec3(4, 10, 0), vec3(4, 0, -0.01f), 1024, 0.5f);
    scene.Draw();
    const Picture screen = ReadScreen(size, size);
    // The light stands 4 aside: the shadow reaches from -6 to -2, columns 44.8 to 57.6.
    EXPECT_TRUE(Near(screen.At(51, 64), {100, 50, 25, 255}, 1));
    EXPECT_TRUE(Near(screen.At(51, 80), {200, 100, 50, 255}, 1));
    EXPECT_TRUE(Near(screen.At(100, 64), {200, 100, 50, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, 64), {0, 200, 0, 255}, 1)); // the square itself is lit
}

TEST_F(SceneFrame, Water_takes_shadows_like_the_nodes) {
    // As above, with fog all over the water instead of the floor. Columns 64 to 67 are the strip
    // 0 <= x <= 1 that the water itself darkens.
    SceneManager scene;
    RectangleMesh square(Rectangle{vec3(-1, 5, -1), vec3(2, 0, 0), vec3(0, 0, 2)}, green);
    scene.AddSceneNode(&square, vec3(0));
    scene.AddWater();
    scene.SetFogColor(vec4(1, 0, 0, 1));
    scene.SetFogDensity(10.0f);
    scene.AddCamera(vec3(0, 20, 0), vec3(0, 0, -0.02f));
    scene.AddShadowMapping(vec3(4, 10, 0), vec3(4, 0, -0.01f), 1024, 0.5f);
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(51, 64), {128, 0, 0, 255}, 1));
    EXPECT_TRUE(Near(ReadScreen(size, size).At(51, 80), red, 1));
}

TEST_F(SceneFrame, Frustum_is_the_main_camera_s_after_the_frame) {
    SceneManager scene;
    LookAhead(scene);
    scene.AddWater();
    scene.AddShadowMapping(vec3(4, 10, 0), vec3(0, 0, 1), 64, 0.5f);
    scene.Draw();
    scene.Draw();
    EXPECT_TRUE(Vell::Frustum::GetInstance().PointIn(vec3(0, 4, 0)));
    EXPECT_TRUE(Vell::Frustum::GetInstance().PointIn(vec3(0, 8, 0)));
    EXPECT_FALSE(Vell::Frustum::GetInstance().PointIn(vec3(0, 4, 20)));
    EXPECT_FALSE(Vell::Frustum::GetInstance().PointIn(vec3(0, 15, 0)));
}

TEST_F(SceneFrame, Compute_leaves_the_screen_alone_and_draw_shows_the_result) {
    SceneManager scene;
    LookAhead(scene);
    RectangleMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(0));
    scene.Compute();
    EXPECT_EQ(ReadScreen(size, size).At(64, 64).r, 0);
    EXPECT_TRUE(Near(SceneTarget(scene).At(64, 64), red));
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), red));
}

TEST_F(SceneFrame, Effects_of_its_chain_work_on_the_scene) {
    class Darkening : public Vell::PostEffect {
    public:
        void Process(Vell::FBO* in, Vell::FBO* out) override {
            EXPECT_TRUE(Near(ReadTexture(in->GetColor()).At(64, 64), red));
            Fill(*out, Picture(size, size, {9, 8, 7, 255}));
        }
    };
    SceneManager scene;
    LookAhead(scene);
    RectangleMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(0));
    Darkening effect;
    scene.GetPostProcess()->AddPostEffect(&effect);
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), {9, 8, 7, 255}));
}

TEST_F(SceneFrame, Leaves_no_state_behind_with_everything_in_the_scene) {
    SceneManager scene;
    LookAhead(scene);
    AddWhiteSky(scene);
    scene.AddWater();
    scene.AddShadowMapping(vec3(4, 10, 0), vec3(0, 0, 1), 64, 0.5f);
    const std::string heights = FreshName("heights", ".png");
    WritePicture(heights, Picture(32, 32, {60, 0, 0, 255}));
    scene.AddTerrain(heights, 1)->SetScale(vec3(1));
    RectangleMesh mesh(ahead, red);
    scene.AddSceneNode(&mesh, vec3(0));
    scene.Draw(); // leaves its bindings, its blend function and the client arrays
    const GlState before = CaptureGlState();
    scene.Draw();
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}
