// What the shadow program computes per pixel, on a scene whose shadow is worked out by hand.
#include "tests/env/shadow_scene.h"

#include "engine/core/core.h"
#include "tests/support/gl_test.h"

#include <algorithm>
#include <vector>

using namespace ShadowScene;
using Vell::ShadowMapping;
using Vell::vec3;

namespace {

constexpr int size = 128;

} // namespace

class ShadowShader : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
    }
};

TEST_F(ShadowShader, Square_casts_its_shadow_where_the_light_throws_it) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    const Picture shares = ShadowsOf(shadow, square);
    // -6..-2 by -2..2, with a margin of a tenth of a unit on either side of the edges.
    for (double x : {-5.8, -4.0, -2.5})
        for (double z : {-1.7, 0.0, 1.7})
            EXPECT_TRUE(Near(shares.At(Column(x), Row(z)), {255, 255, 255, 255})) << x << ", " << z;
    for (double x : {-6.4, -1.6, 2.0, 5.0})
        for (double z : {-1.7, 0.0, 1.7})
            EXPECT_TRUE(Near(shares.At(Column(x), Row(z)), {0, 0, 0, 255})) << x << ", " << z;
    for (double z : {-2.5, 2.5})
        EXPECT_TRUE(Near(shares.At(Column(-4.0), Row(z)), {0, 0, 0, 255})) << z;
}

TEST_F(ShadowShader, Surfaces_do_not_shade_themselves) {
    // The square covers 64 +- 64 / 15 = 59.7..68.3 on the screen.
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    const Picture shares = ShadowsOf(shadow, square);
    for (int y = 61; y < 68; ++y)
        for (int x = 61; x < 68; ++x)
            EXPECT_TRUE(Near(shares.At(x, y), {0, 0, 0, 255})) << x << ", " << y;
}

TEST_F(ShadowShader, Softness_follows_the_blur_pass_sample_by_sample) {
    for (int pass : {1, 2, 4}) {
        SCOPED_TRACE(pass);
        ShadowMapping shadow;
        shadow.SetSize(64); // a texel is 0.54 units of the floor: wide soft edges
        shadow.SetBlurPass(pass);
        shadow.SetLight(lightPosition, lightTarget);
        const Picture shares = ShadowsOf(shadow, square);
        const Model model(shadow, pass);
        const Picture expected = MakePicture(size, size, [&](int x, int y) {
            const int share = model.ShareAt(x, y);
            return Rgba{share, share, share, 255};
        });
        // A sample on the border of two texels may fall on either side: a few pixels of the edge.
        EXPECT_TRUE(Matches(shares, expected, {.max = 1.0, .mean = 0.3, .failing = 0.01}));
    }
}

TEST_F(ShadowShader, Wider_blur_gives_more_shades_to_the_edge) {
    // 8 n samples over 4 n, held at 1: the possible values are k / 4 n.
    const auto shades = [](int pass) {
        ShadowMapping shadow;
        shadow.SetSize(64);
        shadow.SetBlurPass(pass);
        shadow.SetLight(lightPosition, lightTarget);
        const Picture shares = ShadowsOf(shadow, square);
        std::vector<int> found;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                found.push_back(shares.At(x, y).r);
        std::sort(found.begin(), found.end());
        return std::unique(found.begin(), found.end()) - found.begin();
    };
    EXPECT_GT(shades(1), 2);
    EXPECT_GT(shades(4), shades(1));
}

TEST_F(ShadowShader, No_blur_pass_is_undefined_but_harmless) {
    ShadowMapping shadow;
    shadow.SetBlurPass(0); // 0 / 0 in the shader
    shadow.SetLight(lightPosition, lightTarget);
    EXPECT_EQ(ShadowsOf(shadow, square).Width(), size);
}

TEST_F(ShadowShader, Floor_outside_the_light_s_view_repeats_the_edge_of_the_light_buffer) {
    // At the square's height the light sees 4 +- 5 * 1.732 = -4.66..12.66. This one, -6..-4,
    // reaches beyond its left edge. The true shadow ends at 4 + (-6 - 4) * 2 = -16, but further
    // left the look-up clamps to the edge, which holds the square.
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    const Rectangle atTheEdge{vec3(-6, 5, -1), vec3(2, 0, 0), vec3(0, 0, 2)};
    const Picture shares = ShadowsOf(shadow, atTheEdge);
    EXPECT_TRUE(Near(shares.At(Column(-18.0), Row(0.0)), {255, 255, 255, 255}));
    EXPECT_TRUE(Near(shares.At(Column(-18.0), Row(4.0)), {0, 0, 0, 255}));
}

TEST_F(ShadowShader, Alpha_is_the_surface_s_own) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    const GLuint glass = UploadTexture(Picture(1, 1, {9, 9, 9, 51}));
    glBindTexture(GL_TEXTURE_2D, glass);
    EXPECT_TRUE(Near(ShadowsOf(shadow, square).At(Column(5.0), Row(5.0)), {0, 0, 0, 51}));
    glDeleteTextures(1, &glass);
}

TEST_F(ShadowShader, Clip_planes_cut_by_the_place_before_the_projection) {
    // This projection takes every z to 0: of what is near or far nothing is left in the clip
    // position, and a plane across z can only cut by the place in eye space.
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    UseUnitOrtho();
    glMatrixMode(GL_PROJECTION);
    glScalef(1.0f, 1.0f, 0.0f);
    glMatrixMode(GL_MODELVIEW);
    shadow.BindShadowMap();
    glClearColor(0.0f, 0.0f, 1.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const GLdouble infront[] = {0.0, 0.0, 1.0, 0.0}; // keeps z >= 0
    glClipPlane(GL_CLIP_PLANE0, infront);
    glEnable(GL_CLIP_PLANE0);
    DrawRectangle({vec3(0, 0, -0.5f), vec3(0.5f, 0, 0), vec3(0, 1, 0)});
    DrawRectangle({vec3(0.5f, 0, 0.5f), vec3(0.5f, 0, 0), vec3(0, 1, 0)});
    glDisable(GL_CLIP_PLANE0);
    shadow.UnBindShadowMap();
    // Alpha tells what was drawn: 1, as nothing is bound to unit 0.
    const Picture shares = ReadTexture(shadow.GetShadowBuffer().GetColor());
    EXPECT_EQ(shares.At(32, 64).a, 0);
    EXPECT_EQ(shares.At(96, 64).a, 255);
}

TEST_F(ShadowShader, Clip_planes_cut_what_casts_and_takes_shadows) {
    ShadowMapping shadow;
    shadow.SetLight(lightPosition, lightTarget);
    glLoadIdentity();
    shadow.BindShadowMap();
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    LookDown();
    const GLdouble right[] = {1.0, 0.0, 0.0, 0.0}; // keeps x >= 0
    glClipPlane(GL_CLIP_PLANE0, right);
    glEnable(GL_CLIP_PLANE0);
    DrawRectangle(floorPlane);
    glDisable(GL_CLIP_PLANE0);
    shadow.UnBindShadowMap();
    const Picture shares = ReadTexture(shadow.GetShadowBuffer().GetColor());
    EXPECT_TRUE(Near(shares.At(60, 64), {255, 0, 0, 255})); // nothing drawn
    EXPECT_EQ(shares.At(68, 64).r, shares.At(68, 64).b);    // a share of shadow
}
