#include "engine/core/fullscreen.h"

#include "engine/render/shader.h"
#include "tests/support/bound_program.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

namespace {

// Red runs to the right, green upwards, one step of 2 per pixel of the 128 x 128 screen.
Picture Gradient(int size) {
    return MakePicture(size, size, [](int x, int y) { return Rgba{2 * x, 2 * y, 77, 255}; });
}

} // namespace

class FullScreen : public GlTest {};

TEST_F(FullScreen, Covers_the_viewport_with_the_texture_pixel_by_pixel) {
    const GLuint texture = UploadTexture(Gradient(screenSize));
    glEnable(GL_TEXTURE_2D);
    Vell::PushUnitProjection();
    Vell::DrawFullScreen(texture);
    Vell::PopProjection();
    glDisable(GL_TEXTURE_2D);
    EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize), Gradient(screenSize)));
    glDeleteTextures(1, &texture);
}

TEST_F(FullScreen, Projection_is_pushed_and_popped_without_a_trace) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3.0, 3.0, -2.0, 2.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1.0f, 2.0f, 3.0f);
    const GlState before = CaptureGlState();
    Vell::PushUnitProjection();
    EXPECT_NE(Differences(before, CaptureGlState()), "");
    Vell::PopProjection();
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}

TEST_F(FullScreen, Pass_through_stage_hands_position_and_coordinate_on) {
    const char* source = R"(
        uniform sampler2D texture;
        void main() { gl_FragColor = texture2D(texture, gl_TexCoord[0].st).grba; }
    )";
    Vell::Shader shader;
    shader.LoadToChar(Vell::passThroughVertexShader, source);
    EXPECT_TRUE(BoundProgramIsClean());

    const GLuint texture = UploadTexture(Gradient(screenSize));
    Vell::PushUnitProjection();
    Vell::DrawFullScreen(texture);
    Vell::PopProjection();
    shader.Disable();
    const Picture swapped = MakePicture(screenSize, screenSize, [](int x, int y) {
        return Rgba{2 * y, 2 * x, 77, 255};
    });
    EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize), swapped));
    glDeleteTextures(1, &texture);
}
