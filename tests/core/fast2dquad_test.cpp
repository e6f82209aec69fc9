#include "engine/core/fast2dquad.h"

#include "engine/core/core.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;
using ::testing::ElementsAreArray;

namespace {

class Fast2DQuadTest : public GlTest {
protected:
    Fast2DQuad& quad = Fast2DQuad::GetInstance();

    static void UseOrtho(double width, double height) {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, width, 0, height, -1, 1);
        glMatrixMode(GL_MODELVIEW);
    }

    /// The twenty floats that OpenGL was given.
    static std::vector<float> SentVertices() {
        GLvoid* sent = nullptr;
        glGetPointerv(GL_TEXTURE_COORD_ARRAY_POINTER, &sent); // s, t come first
        const auto* floats = static_cast<const float*>(sent);
        return {floats, floats + 20};
    }

    static int Stride(GLenum name) {
        GLint stride = 0;
        glGetIntegerv(name, &stride);
        return stride;
    }
};

TEST_F(Fast2DQuadTest, Is_one_instance) {
    EXPECT_EQ(&Fast2DQuad::GetInstance(), &quad);
}

TEST_F(Fast2DQuadTest, Is_nothing_but_its_twenty_floats) {
    EXPECT_EQ(sizeof(Fast2DQuad), 20 * sizeof(float));
}

TEST_F(Fast2DQuadTest, Draws_the_unit_square) {
    UseUnitOrtho();
    quad.Draw(vec2(1, 1));
    EXPECT_TRUE(Matches(ReadScreen(128, 128), Picture(128, 128, {255, 255, 255, 255})));
    EXPECT_THAT(SentVertices(), ElementsAreArray({1, 1, 1, 1, 0, //
                                                  0, 1, 0, 1, 0, //
                                                  1, 0, 1, 0, 0, //
                                                  0, 0, 0, 0, 0}));
}

TEST_F(Fast2DQuadTest, Draws_in_pixel_units) {
    UseOrtho(800, 600);
    quad.Draw(vec2(800, 600));
    EXPECT_TRUE(Matches(ReadScreen(128, 128), Picture(128, 128, {255, 255, 255, 255})));
    EXPECT_THAT(SentVertices(), ElementsAreArray({1, 1, 800, 600, 0, //
                                                  0, 1, 0,   600, 0, //
                                                  1, 0, 800, 0,   0, //
                                                  0, 0, 0,   0,   0}));
}

TEST_F(Fast2DQuadTest, Covers_no_more_than_its_size) {
    UseOrtho(128, 128);
    quad.Draw(vec2(32, 48));
    EXPECT_TRUE(Matches(ReadScreen(128, 128), MakePicture(128, 128, [](int x, int y) {
                            return x < 32 && y < 48 ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
                        })));
}

TEST_F(Fast2DQuadTest, Forgets_the_size_of_the_draw_before) {
    UseOrtho(128, 128);
    quad.Draw(vec2(128, 128));
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    quad.Draw(vec2(1, 1));
    const Picture screen = ReadScreen(128, 128);
    EXPECT_EQ(screen.At(0, 0), (Rgba{255, 255, 255, 255}));
    EXPECT_EQ(screen.At(1, 0), (Rgba{0, 0, 0, 255}));
    EXPECT_EQ(screen.At(0, 1), (Rgba{0, 0, 0, 255}));
}

TEST_F(Fast2DQuadTest, Takes_every_size_as_it_is) {
    for (const vec2& size : {vec2(-32, -48), vec2(0.25f, 0.75f), vec2(1e-3f, 1e6f), vec2(0, 0)}) {
        quad.Draw(size);
        EXPECT_THAT(SentVertices(), ElementsAreArray({1.0f, 1.0f, size.x, size.y, 0.0f, //
                                                      0.0f, 1.0f, 0.0f,   size.y, 0.0f, //
                                                      1.0f, 0.0f, size.x, 0.0f,   0.0f, //
                                                      0.0f, 0.0f, 0.0f,   0.0f,   0.0f}));
    }
}

TEST_F(Fast2DQuadTest, Puts_the_lower_left_texel_at_the_origin) {
    const Picture picture = MakePicture(128, 128, [](int x, int y) {
        return Rgba{2 * x, 2 * y, x < y ? 255 : 0, 255};
    });
    const GLuint texture = UploadTexture(picture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glEnable(GL_TEXTURE_2D);
    UseOrtho(128, 128);
    quad.Draw(vec2(128, 128));
    EXPECT_TRUE(Matches(ReadScreen(128, 128), picture));
    glDeleteTextures(1, &texture);
}

TEST_F(Fast2DQuadTest, Leaves_its_two_arrays_enabled_and_nothing_else_changed) {
    UseUnitOrtho();
    quad.Draw(vec2(1, 1)); // from here on the arrays are the ones that Draw leaves
    const GlState before = CaptureGlState();
    quad.Draw(vec2(0.5f, 0.25f));
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_TRUE(glIsEnabled(GL_VERTEX_ARRAY));
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_COORD_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_NORMAL_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_COLOR_ARRAY));
    EXPECT_EQ(Stride(GL_VERTEX_ARRAY_STRIDE), 20);
    EXPECT_EQ(Stride(GL_TEXTURE_COORD_ARRAY_STRIDE), 20);
}

} // namespace
