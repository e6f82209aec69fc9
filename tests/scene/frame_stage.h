#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/math/vec2.h"
#include "engine/math/vec3.h"
#include "engine/scene/scenemanager.h"
#include "tests/support/gl_test.h"
#include "tests/support/shapes.h"

#include <array>
#include <string>
#include <vector>

// The passes in which a node may be drawn, told apart by their targets and their state.
inline std::string CurrentPass(const Vell::ivec2& lightSize) {
    std::array<GLint, 4> viewport{};
    std::array<GLboolean, 4> mask{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    glGetBooleanv(GL_COLOR_WRITEMASK, mask.data());
    if (mask[0] == GL_FALSE)
        return viewport[2] == lightSize.x ? "light" : "wrong light target";
    if (viewport[2] == 512)
        return glIsEnabled(GL_CLIP_PLANE0) ? "reflection" : "refraction";
    return glGetHandle(GL_PROGRAM_OBJECT_ARB) != 0 ? "shadow" : "main";
}

// Draws a rectangle and notes in which pass it was asked to, with its name in front.
class NotingMesh : public RectangleMesh {
public:
    NotingMesh(const std::string& nodeName, const Rectangle& r, Rgba fill,
               std::vector<std::string>& noted)
        : RectangleMesh(r, fill), name(nodeName), notes(noted) {}

    void Draw() override {
        notes.push_back(name + " " + CurrentPass(lightSize));
        RectangleMesh::Draw();
    }

    void DrawShadow() override {
        notes.push_back(name + " shadow of " + CurrentPass(lightSize));
        RectangleMesh::DrawShadow();
    }

    Vell::ivec2 lightSize{64, 64};

private:
    std::string name;
    std::vector<std::string>& notes;
};

// Scenes seen with a field of view of 90 degrees.
class SceneFrame : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
    }

    static void LookAhead(Vell::SceneManager& scene) {
        scene.AddCamera(Vell::vec3(0, 4, 10), Vell::vec3(0, 4, 0));
    }
    static void LookAtTheSky(Vell::SceneManager& scene) {
        scene.AddCamera(Vell::vec3(0, 4, 10), Vell::vec3(0, 14, 9.9f));
    }

    // Water without bending that shows the reflection alone.
    static Vell::Water* AddMirror(Vell::SceneManager& scene) {
        Vell::Water* water = scene.AddWater();
        water->SetSize(Vell::ivec2(1024, 1024));
        water->SetBlend(0.0f);
        water->SetDeform(0.0f);
        return water;
    }

    static void AddWhiteSky(Vell::SceneManager& scene) {
        const std::string path = FreshName("sky", ".png");
        WritePicture(path, Picture(4, 4, {200, 210, 220, 255}));
        scene.AddSkyBox(path, path, path, path, path, path);
    }

    std::vector<std::string> notes;
};
