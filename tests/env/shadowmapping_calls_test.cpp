// Shadow mapping, call by call.

#include "tests/recording/calls.h"

#include "engine/core/core.h"
#include "engine/env/shadowmapping.h"

#include <memory>

using Vell::ivec2;
using Vell::ShadowMapping;
using Vell::vec3;

namespace {

class ShadowCalls : public Calls {
protected:
    static std::unique_ptr<ShadowMapping> Make() {
        gl.NameTarget("light");
        gl.NameTarget("shadow");
        gl.NameProgram("shadows");
        gl.NameProgram("composite");
        return std::make_unique<ShadowMapping>();
    }

    static std::unique_ptr<ShadowMapping> Made1024() {
        auto shadow = Make();
        Forget();
        return shadow;
    }

    static std::string SetUniform(const std::string& program, const std::string& uniform,
                                  const std::string& kind, const std::string& value) {
        return "glUseProgramObject(" + program + ")\n" + Send(program, uniform, kind, value) +
               "glUseProgramObject(0)\n";
    }
};

} // namespace

TEST_F(ShadowCalls, Construction_builds_both_shaders_and_sizes_both_buffers) {
    const auto shadow = Make();
    EXPECT_TRUE(
        Made("-- both buffers\n" + NewTarget("light") + NewTarget("shadow") +
             "-- the program of the shadow pass\n" + NewProgram("shadows") +
             "glUseProgramObject(shadows)\n" + Send("shadows", "texture0", "1i", "0") +
             Send("shadows", "lightbuffer", "1i", "6") + Send("shadows", "pass", "1i", "1") +
             Send("shadows", "offset", "1f", "0.0009765625") + "glUseProgramObject(0)\n" +
             "-- the program of the composite\n" + NewProgram("composite") +
             "glUseProgramObject(composite)\n" + Send("composite", "texture0", "1i", "0") +
             Send("composite", "depthmap", "1i", "1") + Send("composite", "offset", "1f", "0.01") +
             Send("composite", "intensity", "1f", "0.5") + "glUseProgramObject(0)\n" +
             "-- the shadow buffer as large as the screen\n" + SizeTarget("shadow", 640, 480) +
             "-- the light buffer at its default size\n" + SizeTarget("light", 1024, 1024) +
             SetUniform("shadows", "offset", "1f", "0.0009765625")));
}

TEST_F(ShadowCalls, Setters_send_at_once_whatever_they_are_given) {
    const auto shadow = Made1024();
    for (const auto& [size, offset] : {std::pair{512, "0.001953125"}, {1000, "0.001"}, {1, "1"}}) {
        shadow->SetSize(size);
        EXPECT_TRUE(
            Made(SizeTarget("light", size, size) + SetUniform("shadows", "offset", "1f", offset)));
        EXPECT_EQ(shadow->GetSize(), size);
    }
    for (const int pass : {3, 0, 20}) {
        shadow->SetBlurPass(pass);
        EXPECT_TRUE(Made(SetUniform("shadows", "pass", "1i", std::to_string(pass))));
    }
    for (const auto& [intensity, sent] : {std::pair{0.75f, "0.75"}, {2.0f, "2"}, {-1.0f, "-1"}}) {
        shadow->SetIntensity(intensity);
        EXPECT_TRUE(Made(SetUniform("composite", "intensity", "1f", sent)));
        EXPECT_EQ(shadow->GetIntensity(), intensity);
    }
}

TEST_F(ShadowCalls, Light_is_captured_between_two_pushes) {
    const auto shadow = Made1024();
    shadow->SetLight(vec3(1, 2, 3), vec3(4, 5, 6));
    EXPECT_TRUE(Made(R"(
        -- the light's projection: 640 / 480 = 1
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        gluPerspective(120, 1, 1, 25000)
        -- the light's view
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        gluLookAt(1, 2, 3, 4, 5, 6, 0, 1, 0)
        -- both matrices read back
        glGetFloatv(GL_MODELVIEW_MATRIX)
        glGetFloatv(GL_PROJECTION_MATRIX)
        -- as it was found
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        )"));
}

TEST_F(ShadowCalls, Aspect_is_an_integer_quotient_of_the_screen) {
    Vell::SetScreen(ivec2(100, 40)); // 100 / 40 = 2
    const auto shadow = Made1024();
    shadow->SetLight(vec3(1, 2, 3), vec3(4, 5, 6));
    const std::vector<std::string> calls = gl.Take();
    EXPECT_EQ(calls.at(3), "gluPerspective(120, 2, 1, 25000)");
}

TEST_F(ShadowCalls, Light_pass_draws_depth_only) {
    const auto shadow = Made1024();
    shadow->SetLight(vec3(1, 2, 3), vec3(4, 5, 6));
    Forget();
    shadow->BeginLightDraw();
    EXPECT_TRUE(
        Made("-- the light buffer, without colour\n" + EnableTarget("light", 1024, 1024) + R"(
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE)
        -- the light's projection
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        gluPerspective(120, 1, 1, 25000)
        -- the light's view, without the identity
        glMatrixMode(GL_MODELVIEW); glPushMatrix()
        gluLookAt(1, 2, 3, 4, 5, 6, 0, 1, 0)
        )"));
    shadow->EndLightDraw();
    EXPECT_TRUE(Made(R"(
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE)
        )" + DisableTarget()));
}

TEST_F(ShadowCalls, Shadow_map_is_bound_with_the_lights_matrices_as_they_were_read) {
    const auto shadow = Made1024();
    // From (1, 2, 3) along -z, so the view is the translation by (-1, -2, -3). cot 60 =
    // 0.57735026, (25000 + 1) / (1 - 25000) = -1.00008, 2 * 25000 / (1 - 25000) = -2.00008.
    shadow->SetLight(vec3(1, 2, 3), vec3(1, 2, 2));
    Forget();
    shadow->BindShadowMap();
    EXPECT_TRUE(Made("-- the shadow buffer\n" + EnableTarget("shadow", 640, 480) + R"(
        glUseProgramObject(shadows)
        -- the look-up matrix
        glMatrixMode(GL_TEXTURE)
        glTranslated(0.5, 0.5, 0.5)
        glScaled(0.5, 0.5, 0.5)
        glMultMatrixf(0.57735026 0 0 0 0 0.57735026 0 0 0 0 -1.00008 -1 0 0 -2.00008 0)
        glMultMatrixf(1 0 0 0 0 1 0 0 0 0 1 0 -1 -2 -3 1)
        glMatrixMode(GL_MODELVIEW)
        -- the light buffer's depth: unit 6 stays active
        glActiveTexture(GL_TEXTURE6); glEnable(GL_TEXTURE_2D)
        glBindTexture(GL_TEXTURE_2D, light depth)
        )"));
    shadow->UnBindShadowMap();
    EXPECT_TRUE(Made(R"(
        glActiveTexture(GL_TEXTURE6); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE0)
        glMatrixMode(GL_TEXTURE); glLoadIdentity()
        glMatrixMode(GL_MODELVIEW)
        glUseProgramObject(0)
        )" + DisableTarget()));
}

TEST_F(ShadowCalls, Composite_blends_the_shadow_over_the_scene) {
    const auto shadow = Made1024();
    gl.NameTarget("scene");
    Vell::FBO scene;
    Forget();
    shadow->Draw(&scene);
    EXPECT_TRUE(Made(R"(
        -- a unit square
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        glOrtho(0, 1, 0, 1, -1, 1)
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        -- mixed over the scene by alpha
        glDisable(GL_DEPTH_TEST)
        glUseProgramObject(composite)
        glEnable(GL_BLEND)
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
        -- the shadow and the scene's depth
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
        glBindTexture(GL_TEXTURE_2D, shadow colour)
        glActiveTexture(GL_TEXTURE1); glEnable(GL_TEXTURE_2D)
        glBindTexture(GL_TEXTURE_2D, scene depth)
        -- the quad
        glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
        -- as it was found
        glActiveTexture(GL_TEXTURE1); glDisable(GL_TEXTURE_2D)
        glActiveTexture(GL_TEXTURE0); glDisable(GL_TEXTURE_2D)
        glEnable(GL_DEPTH_TEST)
        glDisable(GL_BLEND)
        glUseProgramObject(0)
        glEnable(GL_DEPTH_TEST)
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        )"));
    EXPECT_EQ(gl.Drawn(), (std::vector<float>{1, 1, 1, 1, 0, //
                                              0, 1, 0, 1, 0, //
                                              1, 0, 1, 0, 0, //
                                              0, 0, 0, 0, 0}));
}

TEST_F(ShadowCalls, End_releases_both_shaders_and_both_buffers) {
    auto shadow = Made1024();
    shadow.reset();
    EXPECT_TRUE(Made(DeleteProgram("composite") + DeleteProgram("shadows") +
                     DeleteTarget("shadow") + DeleteTarget("light")));
}
