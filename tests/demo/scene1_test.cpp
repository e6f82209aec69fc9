#include "demo/scene1.h"

#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/post/post_bloom.h"
#include "engine/post/postprocess.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"
#include "tests/support/log_page.h"
#include "tests/support/scene_stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

using ::testing::ElementsAreArray;
using Vell::vec3;
using Vell::XT3DStatic;

namespace {

// What the engine keeps to itself and this file wants to see. An explicit instantiation may name
// private members, and defines the function declared before it.
Vell::Water* WaterOf(Vell::SceneManager& manager);
const std::vector<Vell::PostEffect*>& EffectsOf(Vell::PostProcess& chain);

template <auto member>
struct OpenManager {
    friend Vell::Water* WaterOf(Vell::SceneManager& manager) { return manager.*member; }
};
template struct OpenManager<&Vell::SceneManager::water>;

template <auto member>
struct OpenChain {
    friend const std::vector<Vell::PostEffect*>& EffectsOf(Vell::PostProcess& chain) {
        return chain.*member;
    }
};
template struct OpenChain<&Vell::PostProcess::effects>;

std::vector<const void*> FieldsOf(const Scene1& scene);

template <auto... fields>
struct OpenScene {
    friend std::vector<const void*> FieldsOf(const Scene1& scene) { return {&(scene.*fields)...}; }
};
template struct OpenScene<&Scene1::spectrum, &Scene1::pulse, &Scene1::manager, &Scene1::viewCamera,
                          &Scene1::sceneClock, &Scene1::bloom, &Scene1::rgb, &Scene1::ripple,
                          &Scene1::path, &Scene1::blueWisp, &Scene1::greenWisp, &Scene1::redWisp,
                          &Scene1::city, &Scene1::fish, &Scene1::cityShader, &Scene1::logo>;

/// A scene that was constructed and not loaded: there can be any number of them.
class NewScene : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        scene = std::make_unique<Scene1>();
        ripple = &Scene1Probe::Ripple(*scene);
    }
    void TearDown() override {
        scene.reset();
        delete ripple; // the scene leaves it behind on purpose
        GlTest::TearDown();
    }

    std::unique_ptr<Scene1> scene;
    PostWater* ripple = nullptr;
};

/// Rows of the log that the scene's own list of files explains; a mesh's textures are its own.
std::vector<LogRow> RowsOfDemoFiles(const std::vector<LogRow>& rows) {
    std::vector<LogRow> ours;
    for (const LogRow& row : rows)
        for (const std::string& file : DemoFiles())
            if (row.file == file || row.file.rfind(file + " ", 0) == 0)
                ours.push_back(row);
    return ours;
}

XT3DStatic& MeshOf(Vell::SceneNode* node) {
    return *static_cast<XT3DStatic*>(node->GetMesh());
}

/// The loaded scene, at demo time 0; nothing in this file draws a later time.
class LoadedScene : public SceneStage {};

} // namespace

TEST_F(LoadedScene, Logged_every_file_once_in_the_order_of_the_script) {
    const std::vector<LogRow> expected = {
        {"XT3DStatic", "LOADED", "Data/Gfx/City/city.xt3dstatic"},
        {"Shader", "LOADED", "Data/Gfx/City/shader.vert Data/Gfx/City/shader.frag"},
        {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/green.xt3dstatic"},
        {"Shader", "LOADED", "Data/Gfx/Wisp/billboard.vert Data/Gfx/Wisp/billboard.frag"},
        {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/red.xt3dstatic"},
        {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/blue.xt3dstatic"},
        {"XT3DStatic", "LOADED", "Data/Gfx/Fish/fish.xt3dstatic"},
        {"Image", "LOADED", "Data/Gfx/City/sky/xpos.jpg"},
        {"Image", "LOADED", "Data/Gfx/City/sky/xneg.jpg"},
        {"Image", "LOADED", "Data/Gfx/City/sky/ypos.jpg"},
        {"Image", "LOADED", "Data/Gfx/City/sky/yneg.jpg"},
        {"Image", "LOADED", "Data/Gfx/City/sky/zpos.jpg"},
        {"Image", "LOADED", "Data/Gfx/City/sky/zneg.jpg"},
        {"Image", "LOADED", "Data/Gfx/water.jpg"},
        {"Image", "LOADED", "Data/Gfx/Logo/logo.jpg"},
    };
    EXPECT_THAT(RowsOfDemoFiles(TheLoading().rows), ElementsAreArray(expected));
}

TEST_F(NewScene, Keeps_its_fields_in_this_order) {
    const std::vector<const void*> fields = FieldsOf(*scene);
    EXPECT_EQ(fields.front(), scene.get()) << "no virtual table stands before them";
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
}

TEST_F(NewScene, Has_no_spectrum_no_pulse_and_no_nodes) {
    EXPECT_EQ(Scene1Probe::Spectrum(*scene), nullptr);
    EXPECT_EQ(Scene1Probe::Pulse(*scene), 0.0f);
    EXPECT_EQ(Scene1Probe::BlueWisp(*scene), nullptr);
    EXPECT_EQ(Scene1Probe::GreenWisp(*scene), nullptr);
    EXPECT_EQ(Scene1Probe::RedWisp(*scene), nullptr);
    EXPECT_EQ(Scene1Probe::City(*scene), nullptr);
    EXPECT_EQ(Scene1Probe::CityShader(*scene), nullptr);
    EXPECT_NE(Scene1Probe::Fish(*scene), nullptr);
    EXPECT_TRUE(CameraProbe::Paths(Scene1Probe::Path(*scene)).empty());
    EXPECT_EQ(Scene1Probe::Logo(*scene).GetName(), "");
    EXPECT_EQ(Scene1Probe::Logo(*scene).GetSize(), Vell::vec2(0, 0));
}

TEST_F(NewScene, Counts_its_time_from_construction_on) {
    const FakeTimeScope time(100.0);
    Scene1 another;
    SetFakeTime(102.0);
    EXPECT_EQ(Scene1Probe::SceneClock(another).GetElapsedTime(), 2.0f);
    delete &Scene1Probe::Ripple(another); // no longer used: the scene's end leaves it alone
}

TEST_F(NewScene, Looks_from_50_50_50_at_the_origin_through_the_managers_camera) {
    Vell::Camera& view = Scene1Probe::ViewCamera(*scene);
    EXPECT_EQ(&view, Scene1Probe::Manager(*scene).GetCamera());
    EXPECT_EQ(view.GetPosition(), vec3(50, 50, 50));
    EXPECT_EQ(view.GetTarget(), vec3(0, 0, 0));
}

TEST_F(NewScene, Glows_a_little_everywhere_and_splits_and_ripples_nothing) {
    EXPECT_EQ(Scene1Probe::Bloom(*scene).GetThreshold(), 0.0f);
    EXPECT_EQ(Scene1Probe::Bloom(*scene).GetIntensity(), 0.25f);
    EXPECT_EQ(Scene1Probe::Rgb(*scene).GetOffset(), 0.0f);
    EXPECT_FALSE(IsOn(*ripple));
    EXPECT_TRUE(ripple->GetEnabled()) << "the chain still runs it, as a plain copy";
}

TEST_F(NewScene, Runs_bloom_then_colour_split_then_ripple) {
    const std::vector<Vell::PostEffect*> expected = {&Scene1Probe::Bloom(*scene),
                                                     &Scene1Probe::Rgb(*scene), ripple};
    EXPECT_EQ(EffectsOf(*Scene1Probe::Manager(*scene).GetPostProcess()), expected);
}

TEST_F(NewScene, Leaves_its_ripple_effect_alive_when_destroyed) {
    scene.reset();
    ripple->SetEnable(true); // the sanitizer build reports this if the object is gone
    EXPECT_TRUE(IsOn(*ripple));
}

TEST_F(NewScene, Keeps_the_pointer_to_the_spectrum_and_nothing_else) {
    float spectrum[64] = {};
    scene->SetSpectrum(spectrum);
    EXPECT_EQ(Scene1Probe::Spectrum(*scene), spectrum);
    EXPECT_EQ(Scene1Probe::Pulse(*scene), 0.0f);
    EXPECT_THAT(spectrum, ::testing::Each(0.0f));
}

TEST_F(LoadedScene, City_stands_20_units_low) {
    EXPECT_EQ(TheLoading().city, vec3(0, -20, 0));
}

TEST_F(LoadedScene, Parks_the_wisps_far_above) {
    Scene1& scene = TheScene();
    for (Vell::SceneNode* wisp :
         {Scene1Probe::BlueWisp(scene), Scene1Probe::GreenWisp(scene), Scene1Probe::RedWisp(scene)})
        EXPECT_EQ(PositionOf(*wisp), vec3(0, 1000, 0));
}

TEST_F(LoadedScene, Parks_the_lights_with_the_wisps_the_red_one_at_z_1) {
    Vell::Shader& shader = *Scene1Probe::CityShader(TheScene());
    EXPECT_EQ(Uniform(shader, "posred"), vec3(0, 1000, 1));
    EXPECT_EQ(Uniform(shader, "posgreen"), vec3(0, 1000, 0));
    EXPECT_EQ(Uniform(shader, "posblue"), vec3(0, 1000, 0));
}

TEST_F(LoadedScene, Left_no_error_and_no_missing_file) {
    for (const LogRow& row : TheLoading().rows)
        EXPECT_NE(row.status, "ERROR") << row.section << ' ' << row.file;
}

TEST_F(LoadedScene, Time_and_the_first_flight_start_at_the_end_of_loading) {
    // The last thing that loading does is to start the scene's clock, one reading ago; just before
    // that it started the flight, now three readings ago: 10 units * 3 s / 13.912 s along -z.
    EXPECT_EQ(TheLoading().sceneTime, 1.0f);
    ExpectPoint(TheLoading().eye, vec3(0, 1, -2.156412f));
}

TEST_F(LoadedScene, Water_has_the_parameters_of_the_script) {
    Vell::Water* water = WaterOf(Scene1Probe::Manager(TheScene()));
    ASSERT_NE(water, nullptr);
    EXPECT_EQ(water->GetNormalMap().GetName(), "Data/Gfx/water.jpg");
    EXPECT_EQ(water->GetBlend(), 0.0f);
    EXPECT_EQ(water->GetDeform(), 0.02f);
    EXPECT_EQ(water->GetSize(), Vell::ivec2(25000, 25000));
    EXPECT_EQ(water->GetUVRepeat(), Vell::vec2(10.0f, 10.0f));
    EXPECT_EQ(water->GetSpeed(), Vell::vec2(0.01f, 0.0f));
}

TEST_F(LoadedScene, Hides_sixty_small_fish_far_away) {
    Vell::SceneNode** fish = Scene1Probe::Fish(TheScene());
    std::set<Vell::SceneNode*> nodes;
    for (int i = 0; i < 60; ++i) {
        nodes.insert(fish[i]);
        EXPECT_EQ(PositionOf(*fish[i]), vec3(10000));
        EXPECT_EQ(ScaleOf(*fish[i]), vec3(0.1f));
    }
    EXPECT_EQ(nodes.size(), 60u);
}

TEST_F(LoadedScene, Fish_share_one_mesh) {
    Scene1& scene = TheScene();
    Vell::SceneNode** fish = Scene1Probe::Fish(scene);
    Vell::Mesh* mesh = Scene1Probe::Manager(scene).GetMesh("Data/Gfx/Fish/fish.xt3dstatic");
    for (int i = 0; i < 60; ++i)
        EXPECT_EQ(fish[i]->GetMesh(), mesh);
    EXPECT_EQ(MeshOf(fish[0]).GetMaterialShader(), nullptr);
    EXPECT_FALSE(MeshOf(fish[0]).GetBlend());
}

TEST_F(LoadedScene, Wisps_have_meshes_of_their_own_that_blend_and_share_one_program) {
    Scene1& scene = TheScene();
    XT3DStatic& green = MeshOf(Scene1Probe::GreenWisp(scene));
    XT3DStatic& red = MeshOf(Scene1Probe::RedWisp(scene));
    XT3DStatic& blue = MeshOf(Scene1Probe::BlueWisp(scene));
    Vell::SceneManager& manager = Scene1Probe::Manager(scene);
    EXPECT_EQ(&green, manager.GetMesh("Data/Gfx/Wisp/green.xt3dstatic"));
    EXPECT_EQ(&red, manager.GetMesh("Data/Gfx/Wisp/red.xt3dstatic"));
    EXPECT_EQ(&blue, manager.GetMesh("Data/Gfx/Wisp/blue.xt3dstatic"));
    for (XT3DStatic* mesh : {&green, &red, &blue}) {
        EXPECT_TRUE(mesh->GetBlend());
        ASSERT_NE(mesh->GetMaterialShader(), nullptr);
        EXPECT_NE(ProgramOf(*mesh->GetMaterialShader()), 0u);
        EXPECT_EQ(ProgramOf(*mesh->GetMaterialShader()), ProgramOf(*green.GetMaterialShader()));
    }
}

TEST_F(LoadedScene, City_has_the_shader_that_the_scene_keeps_and_does_not_blend) {
    Scene1& scene = TheScene();
    XT3DStatic& mesh = MeshOf(Scene1Probe::City(scene));
    EXPECT_EQ(mesh.GetMaterialShader(), Scene1Probe::CityShader(scene));
    EXPECT_NE(ProgramOf(*Scene1Probe::CityShader(scene)), 0u);
    EXPECT_FALSE(mesh.GetBlend());
}

TEST_F(LoadedScene, Logo_has_the_size_of_its_picture) {
    Vell::Sprite& logo = Scene1Probe::Logo(TheScene());
    EXPECT_EQ(logo.GetName(), "Data/Gfx/Logo/logo.jpg");
    if (!DemoDataIsReal()) {
        EXPECT_EQ(logo.GetSize(), Vell::vec2(1, 1)); // 128 pixels on a screen of 128
    }
}

TEST_F(LoadedScene, Narrowed_the_field_of_view_to_25_degrees) {
    EXPECT_EQ(TheLoading().fieldOfView, 25.0f);
}

TEST_F(LoadedScene, Records_eight_flights_that_last_as_long_as_the_demo) {
    const std::vector<CameraPath>& paths = CameraProbe::Paths(Scene1Probe::Path(TheScene()));
    const std::vector<CameraPath> expected = {
        {vec3(0, 1, 0), vec3(0, 1, -10), 13.912f},
        {vec3(50, 1, -50), vec3(50, 10, -100), 13.912f},
        {vec3(30, -4, -100), vec3(30, -2, -50), 13.912f},
        {vec3(40, 8, 5), vec3(40, 10, 15), 13.912f},
        {vec3(25, 0.5f, 34), vec3(10, 3, 58), 20.868f},
        {vec3(7, 2, -5), vec3(17, 2, 4), 13.912f},
        {vec3(5, 8, 12), vec3(25, 5, 12), 13.912f},
        {vec3(20, 6, 5), vec3(30, 6, 4), 13.912f},
    };
    ASSERT_EQ(paths.size(), expected.size());
    double sum = 0.0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(paths[i].start, expected[i].start);
        EXPECT_EQ(paths[i].end, expected[i].end);
        EXPECT_EQ(paths[i].duration, expected[i].duration);
        sum += paths[i].duration;
    }
    EXPECT_NEAR(sum, 118.252, 1e-5); // 7 * 13.912 + 20.868; each duration is rounded to a float
}

TEST_F(LoadedScene, First_frame_looks_along_flight_1_from_its_start) {
    TheScene().Draw(5.0f);
    // The target is a tenth of the flight's 10 units ahead.
    ExpectView(0.0, vec3(0, 1, -1));
    EXPECT_EQ(Scene1Probe::ViewCamera(TheScene()).GetPosition(), vec3(0, 1, 0));
    EXPECT_EQ(PositionOf(*Scene1Probe::City(TheScene())), vec3(0, -20, 0));
    for (Vell::SceneNode* wisp :
         {Scene1Probe::BlueWisp(TheScene()), Scene1Probe::GreenWisp(TheScene()),
          Scene1Probe::RedWisp(TheScene())})
        EXPECT_EQ(PositionOf(*wisp), vec3(0, 1000, 0));
    for (int i = 0; i < 60; ++i)
        EXPECT_EQ(PositionOf(*Scene1Probe::Fish(TheScene())[i]), vec3(10000)) << i;
}
