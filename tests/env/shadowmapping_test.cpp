// Interface, matrices, state and composite; what the shadow program computes is in
// shadowmapping_shader_test.cpp.
#include "tests/env/shadow_scene.h"

#include "engine/core/core.h"
#include "engine/math/vec2.h"
#include "tests/support/bound_program.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"

#include <array>

#include <gmock/gmock.h>

using namespace ShadowScene;
using Vell::ivec2;
using Vell::ShadowMapping;
using Vell::ShadowMappingProbe;
using Vell::vec3;

namespace {

constexpr int size = 128;

float TextureMatrix(int i) {
    std::array<GLfloat, 16> m{};
    glGetFloatv(GL_TEXTURE_MATRIX, m.data());
    return m[static_cast<std::size_t>(i)];
}

} // namespace

class ShadowMappingTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
    }
};

TEST_F(ShadowMappingTest, Begins_with_1024_texels_the_screen_and_full_intensity) {
    ShadowMapping shadow;
    EXPECT_EQ(shadow.GetSize(), 1024);
    EXPECT_EQ(shadow.GetLightBuffer().GetSize(), ivec2(1024, 1024));
    EXPECT_EQ(shadow.GetShadowBuffer().GetSize(), ivec2(size, size));
    EXPECT_EQ(shadow.GetIntensity(), 1.0f);
}

TEST_F(ShadowMappingTest, Shadow_program_is_clean_and_begins_with_its_defaults) {
    ShadowMapping shadow;
    ShadowMappingProbe::ShadowProgram(shadow).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture0"), 0);
    EXPECT_EQ(BoundUniformInt("lightbuffer"), 6);
    EXPECT_EQ(BoundUniformInt("pass"), 1);
    EXPECT_EQ(BoundUniform("offset")[0], 0.0009765625f);
    ShadowMappingProbe::ShadowProgram(shadow).Disable();
}

TEST_F(ShadowMappingTest, Composite_program_is_clean_and_begins_at_half_intensity) {
    // The field says 1.0 from the start; the program follows at the first SetIntensity().
    ShadowMapping shadow;
    ShadowMappingProbe::CompositeProgram(shadow).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture0"), 0);
    EXPECT_EQ(BoundUniform("intensity")[0], 0.5f);
    for (const char* absent : {"depthmap", "offset"}) // sent, but there is nobody to take them
        EXPECT_EQ(glGetUniformLocation(BoundProgram(), absent), -1) << absent;
    shadow.SetIntensity(0.75f);
    EXPECT_EQ(BoundProgram(), 0u);
    EXPECT_EQ(shadow.GetIntensity(), 0.75f);
    ShadowMappingProbe::CompositeProgram(shadow).Enable();
    EXPECT_EQ(BoundUniform("intensity")[0], 0.75f);
    ShadowMappingProbe::CompositeProgram(shadow).Disable();
}

TEST_F(ShadowMappingTest, Size_sets_the_light_buffer_and_the_distance_of_the_samples) {
    ShadowMapping shadow;
    shadow.SetSize(64);
    EXPECT_EQ(shadow.GetSize(), 64);
    EXPECT_EQ(shadow.GetLightBuffer().GetSize(), ivec2(64, 64));
    EXPECT_EQ(BoundProgram(), 0u);
    ShadowMappingProbe::ShadowProgram(shadow).Enable();
    EXPECT_EQ(BoundUniform("offset")[0], 1.0f / 64.0f);
    shadow.SetBlurPass(3);
    EXPECT_EQ(BoundProgram(), 0u);
    ShadowMappingProbe::ShadowProgram(shadow).Enable();
    EXPECT_EQ(BoundUniformInt("pass"), 3);
    ShadowMappingProbe::ShadowProgram(shadow).Disable();
}

TEST_F(ShadowMappingTest, Light_matrices_are_what_opengl_makes_of_the_light) {
    Vell::SetScreen(ivec2(100, 40)); // 2.5 is cut to 2
    ShadowMapping shadow;
    const GlState before = CaptureGlState();
    shadow.SetLight(vec3(1, 2, 3), vec3(4, 4, 9));
    EXPECT_EQ(Differences(before, CaptureGlState()), "");

    const float* projection = ShadowMappingProbe::LightProjection(shadow).Get();
    // f = 1 / tan 60 = 0.57735; m0 = f / aspect, m5 = f, m10 = -(25001 / 24999), m14 = -50000 /
    // 24999.
    EXPECT_NEAR(projection[0], 0.57735f / 2.0f, 1e-5f);
    EXPECT_NEAR(projection[5], 0.57735f, 1e-5f);
    EXPECT_NEAR(projection[10], -1.00008f, 1e-5f);
    EXPECT_NEAR(projection[14], -2.00008f, 1e-5f);
    // Forward is (3, 2, 6) / 7: the third row of the rotation is its opposite, column-major.
    const float* view = ShadowMappingProbe::LightModelview(shadow).Get();
    EXPECT_NEAR(view[2], -3.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(view[6], -2.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(view[10], -6.0f / 7.0f, 1e-6f);
    EXPECT_NEAR(view[14], (3.0f * 1 + 2.0f * 2 + 6.0f * 3) / 7.0f, 1e-5f);
}

TEST_F(ShadowMappingTest, Light_moves_when_it_is_set_again_and_only_then) {
    ShadowMapping shadow;
    shadow.SetLight(vec3(1, 2, 3), vec3(4, 4, 9));
    const Vell::Matrix first = ShadowMappingProbe::LightModelview(shadow);
    shadow.BeginLightDraw();
    shadow.EndLightDraw();
    shadow.SetSize(64);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(ShadowMappingProbe::LightModelview(shadow)[i], first[i]) << i;
    // Straight along -z from (5, 6, 7): a plain move by the opposite.
    shadow.SetLight(vec3(5, 6, 7), vec3(5, 6, 0));
    const float moved[] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -5, -6, -7, 1};
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(ShadowMappingProbe::LightModelview(shadow)[i], moved[i]) << i;
}

TEST_F(ShadowMappingTest, Screen_narrower_than_tall_has_an_aspect_of_zero) {
    // 60 / 100 is 0 in integers; GLU makes no projection of that and the identity stays.
    Vell::SetScreen(ivec2(60, 100));
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    const Vell::Matrix identity;
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(ShadowMappingProbe::LightProjection(shadow)[i], identity[i]) << i;
}

TEST_F(ShadowMappingTest, Light_pass_writes_depth_and_alpha_and_leaves_no_trace) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0); // left bound by the construction of the targets
    const GlState before = CaptureGlState();
    shadow.BeginLightDraw();
    std::array<GLboolean, 4> mask{};
    glGetBooleanv(GL_COLOR_WRITEMASK, mask.data());
    EXPECT_THAT(mask, ::testing::ElementsAre(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE));
    shadow.EndLightDraw();
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}

TEST_F(ShadowMappingTest, Light_buffer_holds_the_depth_seen_from_the_light) {
    ShadowMapping shadow;
    shadow.SetSize(64);
    shadow.SetLight(lightPosition, lightTarget);
    ShadowsOf(shadow, square);
    const auto depth = ReadDepthTexture(shadow.GetLightBuffer().GetDepth());
    // 25000 / 24999 * (1 - 1 / d). Floor, d = 10: 0.900036. Square, d = 5: 0.800032; it is seen at
    // u = 0.5 + 0.5 * (x - 4) / 8.66, for x = 0 0.269: texel 17 of 64, in the middle row.
    EXPECT_NEAR(depth[32 * 64 + 40], 0.900036f, 1e-5f);
    EXPECT_NEAR(depth[32 * 64 + 17], 0.800032f, 1e-5f);
}

TEST_F(ShadowMappingTest, Texture_matrix_0_leads_from_the_world_into_the_light_buffer) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    glLoadIdentity();
    shadow.BindShadowMap();
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(active, GL_TEXTURE6);
    GLint bound = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(static_cast<GLuint>(bound), shadow.GetLightBuffer().GetDepth());

    // The point under the light, (4, 0, 0): w is its distance 10, s / w and t / w are the middle
    // (t but for the tilt of a thousandth), r / w is its depth.
    glActiveTexture(GL_TEXTURE0);
    const auto component = [](int row) {
        return 4.0f * TextureMatrix(row) + TextureMatrix(12 + row);
    };
    const float w = component(3);
    EXPECT_NEAR(w, 10.0f, 1e-4f);
    EXPECT_NEAR(component(0) / w, 0.5f, 1e-4f);
    EXPECT_NEAR(component(1) / w, 0.5f, 1e-3f);
    EXPECT_NEAR(component(2) / w, 0.900036f, 1e-4f);
    shadow.UnBindShadowMap();
}

TEST_F(ShadowMappingTest, Shadow_pass_leaves_only_its_depth_texture_on_unit_6) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
    const GlState before = CaptureGlState();
    shadow.BindShadowMap();
    shadow.UnBindShadowMap();
    const std::string depth = std::to_string(shadow.GetLightBuffer().GetDepth());
    EXPECT_EQ(Differences(before, CaptureGlState()), "unit 6 binding: 0  -> " + depth + " \n");
}

TEST_F(ShadowMappingTest, Composite_darkens_by_share_times_intensity) {
    ShadowMapping shadow;
    Vell::FBO scene;
    scene.SetSize(ivec2(size, size));
    Fill(shadow.GetShadowBuffer(), MakePicture(size, size, [](int x, int) {
             const int share = x < 40 ? 0 : x < 80 ? 102 : 255; // 0, 0.4, 1
             return Rgba{share, 7, 7, 255};
         }));
    struct Case {
        float intensity;
        Rgba lit, half, dark; // of (200, 100, 50, 255)
    };
    // Black with opacity o = share * intensity over it: colour * (1 - o), alpha o * o + 1 - o.
    const Case cases[] = {
        {0.0f, {200, 100, 50, 255}, {200, 100, 50, 255}, {200, 100, 50, 255}},
        {0.5f, {200, 100, 50, 255}, {160, 80, 40, 214}, {100, 50, 25, 191}}, // o = 0.2, 0.5
        {1.0f, {200, 100, 50, 255}, {120, 60, 30, 194}, {0, 0, 0, 255}},     // o = 0.4, 1
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.intensity);
        shadow.SetIntensity(c.intensity);
        Fill(scene, Picture(size, size, {200, 100, 50, 255}));
        scene.Enable();
        shadow.Draw(&scene);
        scene.Disable();
        const Picture result = ReadTexture(scene.GetColor());
        EXPECT_TRUE(Near(result.At(20, 64), c.lit, 1));
        EXPECT_TRUE(Near(result.At(60, 64), c.half, 1));
        EXPECT_TRUE(Near(result.At(100, 64), c.dark, 1));
    }
}

TEST_F(ShadowMappingTest, Composite_darkens_by_half_before_any_intensity_is_set) {
    ShadowMapping shadow;
    Vell::FBO scene;
    scene.SetSize(ivec2(size, size));
    Fill(shadow.GetShadowBuffer(), Picture(size, size, {255, 255, 255, 255}));
    Fill(scene, Picture(size, size, {200, 100, 50, 255}));
    scene.Enable();
    shadow.Draw(&scene);
    scene.Disable();
    EXPECT_TRUE(Near(ReadTexture(scene.GetColor()).At(64, 64), {100, 50, 25, 191}, 1));
}

TEST_F(ShadowMappingTest, Composite_changes_no_state_but_bindings_blend_function_and_arrays) {
    ShadowMapping shadow;
    Vell::FBO scene;
    scene.SetSize(ivec2(size, size));
    scene.Enable();
    shadow.Draw(&scene); // leaves its bindings, its blend function and the arrays
    const GlState before = CaptureGlState();
    shadow.Draw(&scene);
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    scene.Disable();
}
