#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/textureunits.h"
#include "engine/env/water.h"
#include "engine/math/frustum.h"
#include "engine/scene/camera.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"
#include "tests/support/shapes.h"

#include <functional>

OPEN_PRIVATE(waterQuad, &Vell::Water::quad);
OPEN_PRIVATE(waterReflection, &Vell::Water::reflection);
OPEN_PRIVATE(waterRefraction, &Vell::Water::refraction);
OPEN_PRIVATE(waterShader, &Vell::Water::shader);
OPEN_PRIVATE(waterBindTextures, &Vell::Water::BindTextures);
OPEN_PRIVATE(waterDrawQuad, &Vell::Water::DrawQuad);
OPEN_PRIVATE(waterUnbindTextures, &Vell::Water::UnbindTextures);

namespace Vell {

struct WaterProbe {
    static const float* Quad(const Water& water) { return water.*waterQuad; }
    static FBO& Reflection(Water& water) { return water.*waterReflection; }
    static FBO& Refraction(Water& water) { return water.*waterRefraction; }
    static Shader& Program(Water& water) { return water.*waterShader; }

    // What Water::Draw() draws, at a time of the test's choice and whatever the frustum says.
    static void DrawAt(Water& water, float time) {
        (water.*waterBindTextures)();
        (water.*waterShader).Enable();
        (water.*waterShader).Send("time", time);
        (water.*waterDrawQuad)();
        (water.*waterShader).Disable();
        (water.*waterUnbindTextures)();
    }
};

} // namespace Vell

// A field of view of 90 degrees on a square screen: at distance d ahead, a point u units to the
// right or above is 64 u / d pixels from the middle of the 128 x 128 screen.
class WaterStage : public GlTest {
protected:
    static constexpr int size = screenSize;

    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
        // Where nothing is bound to unit 6 the shader reads depth 0, "everything is in shadow" for
        // z > 0. A depth of 1 there leaves the strip 0 <= x <= 1 lit up to z = 1.
        white = UploadTexture(Picture(1, 1, {255, 255, 255, 255}));
        BindShadowMap(white);
    }

    void TearDown() override {
        BindShadowMap(0);
        glDeleteTextures(1, &white);
        GlTest::TearDown();
    }

    static void BindShadowMap(GLuint texture) {
        glActiveTexture(GL_TEXTURE0 + Vell::TextureUnit::shadowmap);
        glBindTexture(GL_TEXTURE_2D, texture);
        glActiveTexture(GL_TEXTURE0);
    }

    void LookFrom(const Vell::vec3& position, const Vell::vec3& forward) {
        camera.Set(position, position + forward);
    }

    void UseView() {
        glLoadIdentity();
        camera.Draw();
        Vell::Frustum::GetInstance().MakePlane();
    }

    // The two passes before the main one, with the given things in the scene.
    void RenderImages(Vell::Water& water, const std::function<void()>& drawScene) {
        glLoadIdentity();
        water.BeginReflection(camera);
        drawScene();
        water.EndReflection();
        water.BeginRefraction(camera);
        drawScene();
        water.EndRefraction();
    }

    Picture DrawnOnScreen(Vell::Water& water) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        UseView();
        water.Draw();
        return ReadScreen(size, size);
    }

    Picture DrawnAt(Vell::Water& water, float time) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        UseView();
        Vell::WaterProbe::DrawAt(water, time);
        return ReadScreen(size, size);
    }

    Vell::Camera camera;
    GLuint white = 0;
};
