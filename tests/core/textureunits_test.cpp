#include "engine/core/textureunits.h"

#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"

namespace TextureUnit = Vell::TextureUnit;

class TextureUnits : public GlTest {};

TEST_F(TextureUnits, Have_the_numbers_that_shader_files_and_meshes_agree_on) {
    EXPECT_EQ(TextureUnit::surface, 0);
    EXPECT_EQ(TextureUnit::reflection, 1);
    EXPECT_EQ(TextureUnit::refraction, 2);
    EXPECT_EQ(TextureUnit::texture0, 0);
    EXPECT_EQ(TextureUnit::texture1, 1);
    EXPECT_EQ(TextureUnit::texture2, 2);
    EXPECT_EQ(TextureUnit::texture3, 3);
    EXPECT_EQ(TextureUnit::lightmap, 6);
    EXPECT_EQ(TextureUnit::shadowmap, 6);
    EXPECT_EQ(TextureUnit::noise, 0);
    EXPECT_EQ(TextureUnit::heightmap, 0);
    EXPECT_EQ(TextureUnit::ground, 1);
    EXPECT_EQ(TextureUnit::sceneDepth, 1);
}

TEST_F(TextureUnits, Enable_activates_a_unit_and_touches_no_other) {
    const GlState before = CaptureGlState();
    TextureUnit::Enable(2);
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(active, GL_TEXTURE2);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(Differences(before, CaptureGlState()), "unit 2 texture 2D: off -> on\n");
}

TEST_F(TextureUnits, Disable_undoes_enable_and_leaves_its_unit_active) {
    const GlState before = CaptureGlState();
    TextureUnit::Enable(2);
    TextureUnit::Disable(2);
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(active, GL_TEXTURE2);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}
