// The material in Data/Gfx/Plain, which others are to copy.

#include "engine/core/textureunits.h"
#include "engine/render/shader.h"
#include "tests/support/bound_program.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <GL/glu.h>

namespace {

constexpr float wallDistance = 10.0f;

class PlainMaterial : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        if (!loaded)
            shader.Load(NIMBREL_SOURCE_DIR "/Data/Gfx/Plain/shader.vert",
                        NIMBREL_SOURCE_DIR "/Data/Gfx/Plain/shader.frag");
        loaded = true;
        shader.Enable();
        shader.Send("texture0", 0);
        shader.Send("lightmap", Vell::TextureUnit::lightmap);
        texture = Bind(0, {200, 100, 50, 255});
        lightmap = Bind(Vell::TextureUnit::lightmap, {64, 128, 255, 255});
        SetFog(0.0f);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(25, 1, 0.1, 1000);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    void TearDown() override {
        SetFog(0.0f);
        shader.Disable();
        glDeleteTextures(1, &lightmap);
        glDeleteTextures(1, &texture);
        GlTest::TearDown();
    }

    /// Grey fog, half bright.
    static void SetFog(float density) {
        const GLfloat grey[] = {0.5f, 0.5f, 0.5f, 1.0f};
        glFogfv(GL_FOG_COLOR, grey);
        glFogf(GL_FOG_DENSITY, density);
    }

    /// The middle of the picture of a small wall straight ahead; black where nothing is drawn.
    static Rgba Middle() {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glBegin(GL_TRIANGLE_STRIP);
        for (int i = 0; i < 4; ++i) {
            glMultiTexCoord2f(GL_TEXTURE0, 0.5f, 0.5f);
            glMultiTexCoord2f(GL_TEXTURE1, 0.5f, 0.5f);
            glVertex3f(i % 2 == 0 ? -0.1f : 0.1f, i < 2 ? -0.1f : 0.1f, -wallDistance);
        }
        glEnd();
        return ReadScreen(screenSize, screenSize).At(screenSize / 2, screenSize / 2);
    }

    void Paint(Rgba colour) {
        glDeleteTextures(1, &texture);
        texture = Bind(0, colour);
    }

private:
    static GLuint Bind(int unit, Rgba colour) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        const GLuint id = UploadTexture(Picture(1, 1, colour));
        glBindTexture(GL_TEXTURE_2D, id);
        glActiveTexture(GL_TEXTURE0);
        return id;
    }

    // One for all tests: a second Load() would share the first one's program, which must then
    // outlive it.
    // Not destroyed, for its last row would come after the log.
    static inline Vell::Shader& shader = *new Vell::Shader;
    static inline bool loaded = false;
    GLuint texture = 0;
    GLuint lightmap = 0;
};

} // namespace

TEST_F(PlainMaterial, Compiles_and_links_without_a_word) {
    EXPECT_TRUE(BoundProgramIsClean());
}

TEST_F(PlainMaterial, Shows_texture_times_twice_the_light_map) {
    // 200 x 2 x 64 / 255 = 100.4; 100 x 2 x 128 / 255 = 100.4; 50 x 2 x 255 / 255 = 100.
    EXPECT_TRUE(Near(Middle(), {100, 100, 100, 255}, 1));
}

TEST_F(PlainMaterial, Fades_into_the_scenes_fog) {
    // exp(-(0.05 x 10)^2) = 0.7788 of the 100 above and 0.2212 of the fog's 127.5: 106.1.
    SetFog(0.05f);
    EXPECT_TRUE(Near(Middle(), {106, 106, 106, 255}, 1));
    SetFog(10.0f);
    EXPECT_TRUE(Near(Middle(), {128, 128, 128, 255}, 1));
}

TEST_F(PlainMaterial, Keeps_the_textures_alpha_for_the_alpha_test) {
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, 0.5f);
    EXPECT_NE(Middle().r, 0);
    Paint({200, 100, 50, 120});
    EXPECT_EQ(Middle().r, 0);
    glDisable(GL_ALPHA_TEST);
}

TEST_F(PlainMaterial, Is_cut_by_the_waters_clip_plane) {
    // Kept: z >= -5 in eye space; the wall stands at -10. Its clip coordinates have z = +9.8 there
    // and would be kept.
    const GLdouble nearHalf[] = {0, 0, 1, 5};
    EXPECT_NE(Middle().r, 0);
    glClipPlane(GL_CLIP_PLANE0, nearHalf);
    glEnable(GL_CLIP_PLANE0);
    EXPECT_EQ(Middle().r, 0);
    glDisable(GL_CLIP_PLANE0);
}
