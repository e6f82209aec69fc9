// The frame pipeline with every combination of what a scene may have, call by call.

#include "tests/recording/calls.h"
#include "tests/scene/noted_mesh.h"

#include "engine/env/shadowmapping.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/math/vec4.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"

#include <algorithm>
#include <memory>
#include <vector>

using Vell::SceneManager;
using Vell::vec3;
using Vell::vec4;

namespace {

enum class WaterIs { Absent, OutOfView, InView };

struct Scene {
    bool sky;
    WaterIs water;
    int terrains;
    bool shadow;
};

/// Only says when it ends.
struct NotedCamera : Vell::Camera {
    ~NotedCamera() override {
        const std::string arguments[] = {"camera"};
        gl.Note("End", arguments);
    }
};

class FrameCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        gl.NameTarget("scene");
        gl.NameTarget("spare");
        manager = std::make_unique<SceneManager>();
    }

    void TearDown() override {
        manager.reset();
        Calls::TearDown();
    }

    void Furnish(const Scene& scene) {
        NameEverything(scene);
        // The water lies at z >= 0: from z = -10 towards -z it is behind the camera.
        const float z = scene.water == WaterIs::OutOfView ? -10.0f : 10.0f;
        eye = scene.water == WaterIs::OutOfView ? "0, 2, -10" : "0, 2, 10";
        target = scene.water == WaterIs::OutOfView ? "0, 0, -20" : "0, 0, 0";
        manager->AddCamera(vec3(0, 2, z), vec3(0, 0, z - 10));
        if (scene.sky)
            manager->AddSkyBox(Missing(), Missing(), Missing(), Missing(), Missing(), Missing());
        for (int i = 0; i < scene.terrains; ++i)
            manager->AddTerrain(Missing(), 1);
        if (scene.water != WaterIs::Absent)
            manager->AddWater();
        if (scene.shadow)
            manager->AddShadowMapping(vec3(0, 2, z), vec3(0, 0, z - 10), 256, 0.5f);
        manager->AddSceneNode(&a, vec3(0, 0, z - 10));
        manager->AddSceneNode(&b, vec3(1, 0, z - 10));
        nodeZ = scene.water == WaterIs::OutOfView ? "-20" : "0";
        Forget();
    }

    // Each pass as it has to be.

    std::string LookThroughCamera() const {
        return "gluLookAt(" + eye + ", " + target + ", 0, 1, 0)\n";
    }

    std::string Nodes(const std::string& pass) const {
        const auto node = [&](const std::string& x, const std::string& mesh) {
            return "glPushMatrix(); glMultMatrixf(1 0 0 0 0 1 0 0 0 0 1 0 " + x + " 0 " + nodeZ +
                   " 1); " + pass + "(" + mesh + "); glPopMatrix()\n";
        };
        return node("0", "a") + node("1", "b");
    }

    static std::string Sky(bool mirrored, const std::string& place) {
        return "glPushMatrix()\n" + std::string(mirrored ? "glDisable(GL_CLIP_PLANE0)\n" : "") +
               "glTranslatef(" + place + ")\n" +
               "glDepthMask(GL_FALSE); glCallList(list 1); glDepthMask(GL_TRUE)\n" +
               (mirrored ? "glEnable(GL_CLIP_PLANE0)\n" : "") + "glPopMatrix()\n";
    }

    /// A terrain without a height map, which has no tiles.
    static std::string Terrain(const std::string& number) {
        return UnitOn(0) + BindTexture("0") + UnitOn(1) + BindTexture("0") +
               "glUseProgramObject(terrain " + number + ")\n" + R"(
            glEnableClientState(GL_VERTEX_ARRAY)
            glDisableClientState(GL_TEXTURE_COORD_ARRAY)
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices )" +
               number + R"()
            glGetError(); glIndexPointer(GL_UNSIGNED_INT, 0, 0); glGetError()
            glBindBuffer(GL_ARRAY_BUFFER, grid )" +
               number + R"()
            glVertexPointer(3, GL_FLOAT, 0, 0)
            glPushMatrix(); glPopMatrix()
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0); glBindBuffer(GL_ARRAY_BUFFER, 0)
            glDisableClientState(GL_VERTEX_ARRAY)
            glUseProgramObject(0)
            )" +
               UnitOff(1) + UnitOff(0);
    }

    static std::string Terrains(int count) {
        std::string calls;
        for (int i = 0; i < count; ++i)
            calls += Terrain(std::to_string(i));
        return calls;
    }

    /// Sky, terrains and nodes, as every pass of the scene but the shadow's begins and ends.
    std::string SkyAndTerrains(const Scene& scene, bool mirrored) const {
        std::string place = eye;
        if (mirrored)
            place.replace(3, 1, "-2");
        return (scene.sky ? Sky(mirrored, place) : "") + Terrains(scene.terrains);
    }

    std::string ShadowPass(const Scene& scene) const {
        return "-- shadow: into the light buffer\n" + EnableTarget("light", 256, 256) + R"(
            glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE)
            glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
            gluPerspective(120, 1, 1, 25000)
            glMatrixMode(GL_MODELVIEW); glPushMatrix()
            )" +
               LookThroughCamera() + // the light stands where the camera stands
               MakePlane() + "glClear(GL_DEPTH_BUFFER_BIT)\n" +
               "-- shadow: depth from the light\n" + Nodes("DrawShadow") +
               "-- shadow: from the light buffer to the shadow buffer\n" + PopUnitSquare() +
               "glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE)\n" + DisableTarget() +
               EnableTarget("shadow", 640, 480) + "glUseProgramObject(shadows)\n" +
               "glMatrixMode(GL_TEXTURE); glTranslated(0.5, 0.5, 0.5); glScaled(0.5, 0.5, 0.5)\n" +
               "glMultMatrixf(" + lightProjection + ")\nglMultMatrixf(" + lightModelview + ")\n" +
               "glMatrixMode(GL_MODELVIEW)\n" + UnitOn(6) + BindTexture("light depth") +
               "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)\n" +
               "-- shadow: the camera's view\n" + LookThroughCamera() + MakePlane() +
               "-- shadow: how much is shadowed\n" + Nodes("DrawShadow") +
               (scene.water != WaterIs::Absent ? Quad() : "") + "-- shadow: back to the screen\n" +
               UnitOff(6) + "glActiveTexture(GL_TEXTURE0)\n" +
               "glMatrixMode(GL_TEXTURE); glLoadIdentity()\n" + "glMatrixMode(GL_MODELVIEW)\n" +
               "glUseProgramObject(0)\n" + DisableTarget();
    }

    std::string WaterPasses(const Scene& scene) const {
        const std::string begin = "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)\n"
                                  "glPushMatrix()\n" +
                                  LookThroughCamera();
        return "-- reflection\n" + EnableTarget("reflection", 512, 512) + begin + R"(
            glScalef(1, -1, 1); glClipPlane(GL_CLIP_PLANE0, 0 1 0 0); glEnable(GL_CLIP_PLANE0)
            )" +
               MakePlane() + SkyAndTerrains(scene, true) + Nodes("Draw") +
               "glDisable(GL_CLIP_PLANE0); glPopMatrix()\n" + DisableTarget() + "-- refraction\n" +
               EnableTarget("refraction", 512, 512) + begin + MakePlane() +
               SkyAndTerrains(scene, false) + Nodes("Draw") + "glPopMatrix()\n" + DisableTarget();
    }

    static std::string Surface() {
        return "glPushMatrix()\n" + UnitOn(0) + BindTexture("0") + UnitOn(1) +
               BindTexture("reflection colour") + UnitOn(2) + BindTexture("refraction colour") +
               "glUseProgramObject(water)\n" + Send("water", "time", "1f", "0") + Quad() +
               "glUseProgramObject(0)\n" + UnitOff(0) + UnitOff(1) + UnitOff(2) +
               "glActiveTexture(GL_TEXTURE0)\n" + "glPopMatrix()\n";
    }

    static std::string Composite() {
        return PushUnitSquare() + R"(
            glDisable(GL_DEPTH_TEST); glUseProgramObject(composite)
            glEnable(GL_BLEND); glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
            )" +
               UnitOn(0) + BindTexture("shadow colour") + UnitOn(1) + BindTexture("scene depth") +
               Quad() + UnitOff(1) + UnitOff(0) + R"(
            glEnable(GL_DEPTH_TEST); glDisable(GL_BLEND); glUseProgramObject(0)
            glEnable(GL_DEPTH_TEST)
            )" +
               PopUnitSquare();
    }

    std::string MainPass(const Scene& scene) const {
        return "-- scene: its target\n" + EnableTarget("scene", 640, 480) +
               "-- scene: cleared, under a sky only in depth\n" +
               (scene.sky ? "glClear(GL_DEPTH_BUFFER_BIT)\n"
                          : "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)\n") +
               "-- scene: the camera's view\n" + LookThroughCamera() + MakePlane() +
               "-- scene: sky and terrains\n" + SkyAndTerrains(scene, false) +
               "-- scene: water after the terrains, before the nodes\n" +
               (scene.water == WaterIs::InView ? Surface() : "") + "-- scene: nodes\n" +
               Nodes("Draw") + "-- scene: shadows over it\n" + (scene.shadow ? Composite() : "") +
               "-- scene: back to the screen\n" + DisableTarget();
    }

    /// One frame; `seen` is whether the water was in view in the frame before.
    std::string Frame(const Scene& scene, bool seen) const {
        return "-- identity\nglMatrixMode(GL_MODELVIEW); glLoadIdentity()\n" +
               (scene.shadow ? ShadowPass(scene) : "") + (seen ? WaterPasses(scene) : "") +
               MainPass(scene);
    }

    /// Reads what the light's matrices were when it was placed.
    void ReadLight() {
        GLfloat matrix[16];
        glPushMatrix();
        glLoadIdentity();
        manager->GetCamera()->Draw();
        glGetFloatv(GL_MODELVIEW_MATRIX, matrix);
        glPopMatrix();
        lightModelview = Text(matrix);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        gluPerspective(120.0, 1.0, 1.0, 25000.0);
        glGetFloatv(GL_PROJECTION_MATRIX, matrix);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        lightProjection = Text(matrix);
        Forget();
    }

    NotedMesh a{"a"};
    NotedMesh b{"b"};
    std::unique_ptr<SceneManager> manager;

private:
    /// A picture that is not there. The registry remembers it beyond this test: a new one each
    /// time.
    static std::string Missing() {
        static int count = 0;
        return std::to_string(++count) + ".png";
    }

    static void NameEverything(const Scene& scene) {
        for (int i = 0; i < scene.terrains; ++i) {
            const std::string n = std::to_string(i);
            const std::string buffers[] = {"grid " + n, "indices " + n};
            gl.Name("buffer", buffers);
            gl.NameProgram("terrain " + n);
        }
        if (scene.water != WaterIs::Absent) {
            gl.NameTarget("reflection");
            gl.NameTarget("refraction");
            gl.NameProgram("water");
        }
        if (scene.shadow) {
            gl.NameTarget("light");
            gl.NameTarget("shadow");
            gl.NameProgram("shadows");
            gl.NameProgram("composite");
        }
    }

    /// As a recorded glMultMatrixf writes it.
    static std::string Text(const GLfloat* matrix) {
        Forget();
        glPushMatrix();
        glMultMatrixf(matrix);
        glPopMatrix();
        const std::string call = gl.Take().at(1);
        const std::size_t open = call.find('(') + 1;
        return call.substr(open, call.size() - open - 1);
    }

    std::string eye;
    std::string target;
    std::string nodeZ;
    std::string lightProjection;
    std::string lightModelview;
};

} // namespace

TEST_F(FrameCalls, Every_combination_of_sky_water_terrain_and_shadow) {
    for (const bool sky : {false, true})
        for (const WaterIs water : {WaterIs::Absent, WaterIs::OutOfView, WaterIs::InView})
            for (const int terrains : {0, 2})
                for (const bool shadow : {false, true}) {
                    SCOPED_TRACE(::testing::Message()
                                 << "sky " << sky << ", water " << static_cast<int>(water)
                                 << ", terrains " << terrains << ", shadow " << shadow);
                    manager.reset();
                    SetUp();
                    const Scene scene = {sky, water, terrains, shadow};
                    Furnish(scene);
                    ReadLight();
                    // The first frame knows of no frame before it in which the water was seen.
                    manager->Compute();
                    EXPECT_TRUE(Made(Frame(scene, false)));
                    manager->Compute();
                    EXPECT_TRUE(Made(Frame(scene, water == WaterIs::InView)));
                }
}

TEST_F(FrameCalls, Water_that_leaves_the_view_is_mirrored_for_one_more_frame) {
    const Scene scene = {false, WaterIs::InView, 0, false};
    Furnish(scene);
    manager->Compute();
    // The nodes stay in view, the water goes out of it.
    manager->GetCamera()->Set(vec3(0, 2, -10), vec3(0, 0, -20));
    Forget();
    manager->Compute();
    std::vector<std::string> calls = gl.Take();
    EXPECT_EQ(
        std::count(calls.begin(), calls.end(), "glBindFramebufferEXT(GL_FRAMEBUFFER, reflection)"),
        1);
    manager->Compute();
    calls = gl.Take();
    EXPECT_EQ(
        std::count(calls.begin(), calls.end(), "glBindFramebufferEXT(GL_FRAMEBUFFER, reflection)"),
        0);
}

TEST_F(FrameCalls, Drawing_shows_the_frame_through_the_chain) {
    const Scene scene = {false, WaterIs::Absent, 0, false};
    Furnish(scene);
    manager->Draw();
    EXPECT_TRUE(Made(Frame(scene, false) + PushUnitSquare() + "glDisable(GL_DEPTH_TEST)\n" +
                     UnitOn(0) + BindTexture("scene colour") + Quad() + R"(
        glDisable(GL_TEXTURE_2D)
        glEnable(GL_DEPTH_TEST)
        )" + PopUnitSquare()));
}

TEST_F(FrameCalls, Construction_makes_the_target_the_chain_and_the_fog) {
    gl.NameTarget("scene");
    gl.NameTarget("spare");
    Forget();
    const SceneManager another;
    EXPECT_TRUE(Made(NewTarget("scene") + SizeTarget("scene", 640, 480) + NewTarget("spare") +
                     SizeTarget("spare", 640, 480) + R"(
        glFogf(GL_FOG_DENSITY, 0)
        glFogfv(GL_FOG_COLOR, 1 1 1 1)
        )"));
}

TEST_F(FrameCalls, Fog_is_set_at_once) {
    Forget();
    manager->SetFogColor(vec4(0.25f, 0.5f, 0.75f, 0.5f));
    manager->SetFogDensity(0.125f);
    EXPECT_TRUE(Made("glFogfv(GL_FOG_COLOR, 0.25 0.5 0.75 0.5); glFogf(GL_FOG_DENSITY, 0.125)"));
}

TEST_F(FrameCalls, Shadow_mapping_is_made_once_and_then_configured_in_order) {
    Furnish({false, WaterIs::Absent, 0, true});
    for (const char* const call : {"second", "third, with the same size"}) {
        SCOPED_TRACE(call);
        manager->AddShadowMapping(vec3(1, 2, 3), vec3(4, 5, 6), 128, 0.75f);
        EXPECT_TRUE(Made(SizeTarget("light", 128, 128) + "glUseProgramObject(shadows)\n" +
                         Send("shadows", "offset", "1f", "0.0078125") + "glUseProgramObject(0)\n" +
                         "glUseProgramObject(composite)\n" +
                         Send("composite", "intensity", "1f", "0.75") + R"(
        glUseProgramObject(0)
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        gluPerspective(120, 1, 1, 25000)
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        gluLookAt(1, 2, 3, 4, 5, 6, 0, 1, 0)
        )" + MakePlane() +
                         PopUnitSquare()));
    }
}

TEST_F(FrameCalls, End_goes_from_terrains_and_meshes_to_shadow_sky_camera_water_chain_and_target) {
    Furnish({true, WaterIs::InView, 1, true});
    manager->AddCamera(new NotedCamera);
    const std::string buffers[] = {"positions", "texcoords", "lightmap texcoords", "normals"};
    gl.Name("buffer", buffers);
    WriteFile("end.xt3dstatic", "XT3DSTATIC 1 ./ 0 NULL NULL NULL 1 0 0 0 0 0 1 0 0");
    manager->GetMesh("end.xt3dstatic");
    Forget();
    manager.reset();
    EXPECT_TRUE(
        Made(R"(
        -- terrain, with five pictures
        glDeleteBuffers(1, grid 0); glDeleteBuffers(1, indices 0)
        glDeleteTextures(1, 0); glDeleteTextures(1, 0); glDeleteTextures(1, 0)
        glDeleteTextures(1, 0); glDeleteTextures(1, 0)
        )" + DeleteProgram("terrain 0") +
             R"(
        -- mesh, which without a light map keeps the buffer of its coordinates
        glDeleteBuffers(1, positions); glDeleteBuffers(1, texcoords); glDeleteBuffers(1, normals)
        )" + "-- shadow mapping\n" +
             DeleteProgram("composite") + DeleteProgram("shadows") + DeleteTarget("shadow") +
             DeleteTarget("light") + "-- sky\nglDeleteLists(list 1, 1)\n" +
             "glDeleteTextures(1, 0); glDeleteTextures(1, 0); glDeleteTextures(1, 0)\n" +
             "glDeleteTextures(1, 0); glDeleteTextures(1, 0); glDeleteTextures(1, 0)\n" +
             "-- camera\nEnd(camera)\n" + "-- water\n" + "glDeleteTextures(1, 0)\n" +
             DeleteProgram("water") + DeleteTarget("refraction") + DeleteTarget("reflection") +
             "-- chain\n" + DeleteTarget("spare") + "-- target\n" + DeleteTarget("scene")));
}
