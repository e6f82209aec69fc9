#include "engine/post/post_shader.h"

#include "tests/post/effect_stage.h"
#include "tests/support/log_page.h"

#include <gmock/gmock.h>

using Vell::PostShader;

namespace {

constexpr int size = 32;

const char swapSource[] = R"glsl(
#version 110
uniform sampler2D texture;
uniform float green;
void main()
{
    vec4 colour = texture2D(texture, gl_TexCoord[0].st);
    gl_FragColor = vec4(colour.b, green, colour.r, colour.a);
})glsl";

Picture Sample() {
    return MakePicture(size, size, [](int x, int y) { return Rgba{8 * x, 255, 7 * y, 4 * x + y}; });
}

} // namespace

class PostShaderTest : public EffectStage {};

TEST_F(PostShaderTest, Shows_what_its_program_makes_of_each_pixel) {
    PostShader effect(swapSource);
    EXPECT_TRUE(Matches(Run(effect, Sample()), MakePicture(size, size, [](int x, int y) {
                            return Rgba{7 * y, 0, 8 * x, 4 * x + y};
                        })));
}

TEST_F(PostShaderTest, Takes_uniforms_through_its_program) {
    PostShader effect(swapSource);
    effect.GetShader().Enable();
    effect.GetShader().Send("green", 0.2f); // of 255: 51
    effect.GetShader().Disable();
    EXPECT_TRUE(Near(Run(effect, Sample()).At(5, 9), {63, 51, 40, 29}));
}

TEST_F(PostShaderTest, Leaves_the_state_and_the_fixed_pipeline_as_they_were) {
    PostShader effect(swapSource);
    EXPECT_EQ(glGetHandle(GL_PROGRAM_OBJECT_ARB), 0u) << "bound by making it";
    EXPECT_EQ(StateLeft(effect, Sample()), "");
    EXPECT_EQ(glGetHandle(GL_PROGRAM_OBJECT_ARB), 0u) << "bound by running it";
}

TEST_F(PostShaderTest, Leaves_the_picture_when_its_program_does_not_compile) {
    const LogWatch log;
    PostShader effect("#version 110\nvoid main() { nonsense; }\n");
    EXPECT_THAT(log.NewRows(), testing::Contains(testing::Field(&LogRow::status, "ERROR")));
    EXPECT_TRUE(Matches(Run(effect, Sample()), Sample()));
}
