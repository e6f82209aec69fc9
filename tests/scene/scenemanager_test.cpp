// Contents and ownership; what a frame consists of is in scenemanager_frame_test.cpp.
#include "engine/scene/scenemanager.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/logmanager.h"
#include "engine/core/ressourcemanager.h"
#include "engine/env/shadowmapping.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/math/vec2.h"
#include "engine/post/postprocess.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"
#include "tests/support/shapes.h"

#include <array>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>

OPEN_PRIVATE(sceneManagerSky, &Vell::SceneManager::sky);
OPEN_PRIVATE(sceneManagerCamera, &Vell::SceneManager::camera);
OPEN_PRIVATE(sceneManagerWater, &Vell::SceneManager::water);
OPEN_PRIVATE(sceneManagerPostProcess, &Vell::SceneManager::postProcess);
OPEN_PRIVATE(sceneManagerNodes, &Vell::SceneManager::nodes);
OPEN_PRIVATE(sceneManagerMeshes, &Vell::SceneManager::meshes);
OPEN_PRIVATE(sceneManagerTerrains, &Vell::SceneManager::terrains);
OPEN_PRIVATE(sceneManagerFbo, &Vell::SceneManager::fbo);
OPEN_PRIVATE(sceneManagerShadow, &Vell::SceneManager::shadow);
OPEN_PRIVATE(sceneManagerFogDensity, &Vell::SceneManager::fogDensity);
OPEN_PRIVATE(sceneManagerFogColor, &Vell::SceneManager::fogColor);

namespace Vell {

struct SceneManagerProbe {
    static std::vector<const void*> Fields(const SceneManager& m) {
        return {&(m.*sceneManagerSky),         &(m.*sceneManagerCamera),  &(m.*sceneManagerWater),
                &(m.*sceneManagerPostProcess), &(m.*sceneManagerNodes),   &(m.*sceneManagerMeshes),
                &(m.*sceneManagerTerrains),    &(m.*sceneManagerFbo),     &(m.*sceneManagerShadow),
                &(m.*sceneManagerFogDensity),  &(m.*sceneManagerFogColor)};
    }
};

} // namespace Vell

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vell::ivec2;
using Vell::SceneManager;
using Vell::vec3;
using Vell::vec4;

namespace {

// Writes a log row when it goes, so that its place among the "FREE" rows shows.
class LoggingCamera : public Vell::Camera {
public:
    ~LoggingCamera() override { Vell::Log::GetInstance().Write("Camera", "FREE", "camera"); }
};

// A mesh of one triangle, without textures.
std::string TriangleFile() {
    std::string path = FreshName("triangle", ".xt3dstatic");
    WriteFile(path, "XT3DSTATIC 1 ./ 0\n"
                    "NULL NULL NULL 3\n"
                    "0 0 0  0 0 1  0 0\n"
                    "1 0 0  0 0 1  1 0\n"
                    "0 1 0  0 0 1  0 1\n");
    return path;
}

std::string PictureFile(const std::string& base) {
    std::string path = FreshName(base, ".png");
    WritePicture(path, Picture(32, 32, {50, 60, 70, 255}));
    return path;
}

const Rectangle anywhere{vec3(-1, -1, -5), vec3(2, 0, 0), vec3(0, 2, 0)};

std::array<float, 4> FogColour() {
    std::array<float, 4> colour{};
    glGetFloatv(GL_FOG_COLOR, colour.data());
    return colour;
}

float FogDensity() {
    float density = -1.0f;
    glGetFloatv(GL_FOG_DENSITY, &density);
    return density;
}

} // namespace

class SceneManagerTest : public GlTest {};

TEST_F(SceneManagerTest, Begins_empty_with_a_camera_that_looks_along_z) {
    SceneManager scene;
    EXPECT_EQ(scene.GetCamera()->GetPosition(), vec3(0, 0, 0));
    EXPECT_EQ(scene.GetCamera()->GetTarget(), vec3(0, 0, 1));
    EXPECT_EQ(scene.GetShadowMap(), nullptr);
    EXPECT_NE(scene.GetPostProcess(), nullptr);
    EXPECT_EQ(scene.GetFBO()->GetSize(), ivec2(128, 128)); // the screen's
}

TEST_F(SceneManagerTest, Keeps_its_fields_at_their_places_without_virtual_operations) {
    const SceneManager scene;
    EXPECT_TRUE(InOrder(Vell::SceneManagerProbe::Fields(scene)));
    EXPECT_FALSE(std::is_polymorphic_v<SceneManager>);
}

TEST_F(SceneManagerTest, Begins_with_white_fog_of_no_density_and_fixed_fog_off) {
    glFogf(GL_FOG_DENSITY, 0.5f);
    SceneManager scene;
    EXPECT_EQ(scene.GetFogDensity(), 0.0f);
    EXPECT_EQ(scene.GetFogColor(), vec4(1, 1, 1, 1));
    EXPECT_EQ(FogDensity(), 0.0f);
    EXPECT_THAT(FogColour(), ElementsAre(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_FALSE(glIsEnabled(GL_FOG));
}

TEST_F(SceneManagerTest, Fog_setters_store_and_set_opengl_s_fog) {
    SceneManager scene;
    scene.SetFogColor(vec4(0.25f, 0.5f, 0.75f, 0.125f));
    scene.SetFogDensity(0.125f);
    EXPECT_EQ(scene.GetFogColor(), vec4(0.25f, 0.5f, 0.75f, 0.125f));
    EXPECT_EQ(scene.GetFogDensity(), 0.125f);
    EXPECT_EQ(FogDensity(), 0.125f);
    EXPECT_THAT(FogColour(), ElementsAre(0.25f, 0.5f, 0.75f, 0.125f));
}

TEST_F(SceneManagerTest, New_camera_stands_where_it_was_asked_to) {
    SceneManager scene;
    Vell::Camera* camera = scene.AddCamera(vec3(50, 51, 52), vec3(1, 2, 3));
    EXPECT_EQ(scene.GetCamera(), camera);
    EXPECT_EQ(camera->GetPosition(), vec3(50, 51, 52));
    EXPECT_EQ(camera->GetTarget(), vec3(1, 2, 3));
}

TEST_F(SceneManagerTest, Camera_that_is_handed_in_is_owned_and_deleted_when_replaced) {
    SceneManager scene;
    auto* handedIn = new LoggingCamera;
    const LogWatch log;
    scene.AddCamera(handedIn);
    EXPECT_EQ(scene.GetCamera(), handedIn);
    EXPECT_THAT(log.NewRows(), IsEmpty());
    scene.AddCamera(vec3(0), vec3(1));
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"Camera", "FREE", "camera"}));
}

TEST_F(SceneManagerTest, Current_camera_is_deleted_before_the_new_one_is_stored_even_the_same) {
    // Why callers must not hand in the current camera. This one survives it because its memory is
    // not freed and the test puts a new camera there at once.
    struct Undying : Vell::Camera {
        static void operator delete(void*) { ++Deletions(); }
        static int& Deletions() {
            static int count = 0;
            return count;
        }
    };
    alignas(Undying) static std::array<std::byte, sizeof(Undying)> memory;
    Undying::Deletions() = 0;
    {
        SceneManager scene;
        Vell::Camera* camera = ::new (memory.data()) Undying;
        scene.AddCamera(camera);
        EXPECT_EQ(Undying::Deletions(), 0);
        scene.AddCamera(camera);
        EXPECT_EQ(Undying::Deletions(), 1);
        EXPECT_EQ(static_cast<void*>(scene.GetCamera()), static_cast<void*>(memory.data()));
        ::new (memory.data()) Undying; // the manager now has a living camera again
    }
    EXPECT_EQ(Undying::Deletions(), 2);
}

TEST_F(SceneManagerTest, Camera_of_another_kind_sets_the_view_itself) {
    struct Counting : Vell::Camera {
        void Draw() override {
            ++drawn;
            Camera::Draw();
        }
        int drawn = 0;
    };
    SceneManager scene;
    auto* camera = new Counting;
    camera->Set(vec3(0, 0, 10), vec3(0, 0, 0));
    scene.AddCamera(camera);
    scene.Compute();
    EXPECT_EQ(camera->drawn, 1);
}

TEST_F(SceneManagerTest, Node_gets_its_mesh_and_does_not_own_it) {
    RectangleMesh mesh(anywhere, {255, 0, 0, 255});
    {
        SceneManager scene;
        Vell::SceneNode* node = scene.AddSceneNode(&mesh, vec3(1, 2, 3));
        EXPECT_EQ(node->GetMesh(), &mesh);
    }
    EXPECT_TRUE(mesh.GetShadow()); // still alive
}

TEST_F(SceneManagerTest, Mesh_is_loaded_once_and_shared_by_path) {
    const std::string path = TriangleFile();
    const LogWatch log;
    {
        SceneManager scene;
        Vell::Mesh* first = scene.GetMesh(path);
        Vell::Mesh* second = scene.GetMesh(path);
        EXPECT_EQ(first, second);
        EXPECT_NE(dynamic_cast<Vell::XT3DStatic*>(first), nullptr);
        EXPECT_EQ(scene.GetStaticMesh(path), first);
        EXPECT_EQ(first->GetBBox()->GetMax(), vec3(1, 1, 0));
        EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"XT3DStatic", "LOADED", path}));
    }
    // Deleted once.
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"XT3DStatic", "LOADED", path},
                                           LogRow{"XT3DStatic", "FREE", path}));
}

TEST_F(SceneManagerTest, Meshes_of_two_paths_are_two_and_both_owned) {
    const std::string one = TriangleFile(), other = TriangleFile();
    const LogWatch log;
    {
        SceneManager scene;
        EXPECT_NE(scene.GetMesh(one), scene.GetMesh(other));
    }
    EXPECT_THAT(log.NewRows(),
                ::testing::UnorderedElementsAre(
                    LogRow{"XT3DStatic", "LOADED", one}, LogRow{"XT3DStatic", "LOADED", other},
                    LogRow{"XT3DStatic", "FREE", one}, LogRow{"XT3DStatic", "FREE", other}));
}

TEST_F(SceneManagerTest, Mesh_that_fails_to_load_is_returned_empty_and_shared_as_well) {
    const std::string missing = FreshName("missing", ".xt3dstatic");
    const LogWatch log;
    {
        SceneManager scene;
        Vell::Mesh* mesh = scene.GetMesh(missing);
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(scene.GetMesh(missing), mesh);
        EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"XT3DStatic", "ERROR", missing}));
        mesh->Draw(); // draws nothing
    }
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"XT3DStatic", "ERROR", missing},
                                           LogRow{"XT3DStatic", "FREE", missing}))
        << "owned like any other";
}

TEST_F(SceneManagerTest, Mesh_that_another_loaded_is_found_but_not_owned) {
    const std::string path = TriangleFile();
    Vell::XT3DStatic elsewhere;
    elsewhere.Load(path);
    const LogWatch log;
    {
        SceneManager scene;
        EXPECT_EQ(scene.GetMesh(path), &elsewhere);
    }
    EXPECT_THAT(log.NewRows(), IsEmpty());
}

TEST_F(SceneManagerTest, What_was_registered_without_a_kind_is_returned_unseen) {
    Vell::XT3DStatic mesh;
    Vell::RessourceManager::GetInstance().Register(&mesh, "by hand");
    const LogWatch log;
    SceneManager scene;
    EXPECT_EQ(scene.GetMesh("by hand"), &mesh);
    EXPECT_THAT(log.NewRows(), IsEmpty()) << "nothing is loaded over it";
}

TEST_F(SceneManagerTest, Shadow_mapping_is_made_once_and_configured_at_every_call) {
    SceneManager scene;
    Vell::ShadowMapping* shadow = scene.AddShadowMapping(vec3(4, 10, 0), vec3(0, 0, 1), 256, 0.25f);
    EXPECT_EQ(scene.GetShadowMap(), shadow);
    EXPECT_EQ(shadow->GetSize(), 256);
    EXPECT_EQ(shadow->GetIntensity(), 0.25f);
    EXPECT_EQ(scene.AddShadowMapping(vec3(1, 2, 3), vec3(4, 4, 9), 64, 0.75f), shadow);
    EXPECT_EQ(shadow->GetSize(), 64);
    EXPECT_EQ(shadow->GetIntensity(), 0.75f);
}

TEST_F(SceneManagerTest, Second_water_replaces_the_first) {
    const std::string normals = PictureFile("normals");
    SceneManager scene;
    Vell::Water* first = scene.AddWater();
    first->SetNormalMap(normals);
    const LogWatch log;
    Vell::Water* second = scene.AddWater();
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"Image", "FREE", normals}));
    EXPECT_EQ(second->GetNormalMap().GetID(), 0u);
}

TEST_F(SceneManagerTest, Second_sky_box_replaces_the_first_and_takes_its_faces_in_order) {
    const auto add = [](SceneManager& scene, const std::vector<std::string>& p) {
        return scene.AddSkyBox(p[0], p[1], p[2], p[3], p[4], p[5]);
    };
    std::vector<std::string> faces[2];
    for (std::vector<std::string>& paths : faces)
        for (const char* face : {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"})
            paths.push_back(PictureFile(face));

    SceneManager scene;
    const LogWatch loading;
    EXPECT_NE(add(scene, faces[0]), nullptr);
    ASSERT_EQ(loading.NewRows().size(), 6u);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(loading.NewRows()[i], (LogRow{"Image", "LOADED", faces[0][i]}));

    const LogWatch replacing;
    add(scene, faces[1]);
    const std::vector<LogRow> rows = replacing.NewRows();
    ASSERT_EQ(rows.size(), 12u);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(rows[i].status, "FREE"); // the first goes before the second comes
        EXPECT_EQ(rows[6 + i], (LogRow{"Image", "LOADED", faces[1][i]}));
    }
}

TEST_F(SceneManagerTest, Sky_box_finds_its_faces_side_by_side_in_a_folder) {
    SceneManager scene;
    const LogWatch log; // nothing lies there
    scene.AddSkyBox("nowhere/", ".png");
    std::vector<LogRow> rows;
    for (const char* face : {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"})
        rows.push_back({"Image", "ERROR", "nowhere/" + std::string(face) + ".png"});
    EXPECT_EQ(log.NewRows(), rows);
}

TEST_F(SceneManagerTest, Terrain_gets_its_level_and_its_height_map) {
    const std::string heights = PictureFile("heights");
    const LogWatch log;
    SceneManager scene;
    Vell::Terrain* terrain = scene.AddTerrain(heights, 3);
    EXPECT_EQ(terrain->GetLevel(), 3);
    EXPECT_EQ(terrain->GetHeightmap().GetSize(), ivec2(32, 32));
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"Image", "LOADED", heights},
                                           LogRow{"Terrain", "LOADED", heights}));
}

TEST_F(SceneManagerTest, Debug_reaches_the_water_and_every_node_s_mesh) {
    struct Own : RectangleMesh { // switches its box itself
        using RectangleMesh::RectangleMesh;
        void SetDebug(bool on) override { debugged = on; }
        bool GetDebug() const override { return debugged; }
        bool debugged = false;
    };
    SceneManager scene;
    Own mesh(anywhere, {255, 0, 0, 255});
    RectangleMesh other(anywhere, {255, 0, 0, 255});
    scene.AddSceneNode(&mesh, vec3(0));
    scene.AddSceneNode(nullptr, vec3(0)); // passed over
    scene.AddSceneNode(&other, vec3(0));
    scene.SetDebug(true); // without water
    EXPECT_TRUE(mesh.GetDebug() && other.GetDebug());
    Vell::Water* water = scene.AddWater();
    scene.SetDebug(true);
    EXPECT_TRUE(water->GetDebug());
    scene.SetDebug(false);
    EXPECT_FALSE(mesh.GetDebug() || other.GetDebug() || water->GetDebug());
}

TEST_F(SceneManagerTest, Deletes_its_contents_in_a_fixed_order) {
    const std::string heights = PictureFile("heights");
    const std::string triangle = TriangleFile();
    const std::string face = PictureFile("sky");
    const std::string normals = PictureFile("normals");
    auto scene = std::make_unique<SceneManager>();
    // Made in another order than they are deleted in.
    scene->AddWater()->SetNormalMap(normals);
    scene->AddCamera(new LoggingCamera);
    scene->AddSkyBox(face, face, face, face, face, face); // one picture, shared
    scene->AddSceneNode(scene->GetMesh(triangle), vec3(0));
    scene->AddTerrain(heights, 1);
    scene->AddShadowMapping(vec3(4, 10, 0), vec3(0, 0, 1), 64, 0.5f);

    const LogWatch log;
    scene.reset();
    EXPECT_THAT(log.NewRows(),
                ElementsAre(LogRow{"Terrain", "FREE", heights}, LogRow{"Image", "FREE", heights},
                            LogRow{"XT3DStatic", "FREE", triangle}, LogRow{"Image", "FREE", face},
                            LogRow{"Camera", "FREE", "camera"}, LogRow{"Image", "FREE", normals}));
}
