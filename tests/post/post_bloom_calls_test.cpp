// The bloom and the blur inside it, call by call.

#include "tests/post/blur_calls.h"

#include "engine/post/post_bloom.h"

#include <gmock/gmock.h>

#include <memory>
#include <utility>

using Vell::PostBloom;

namespace {

class BloomCalls : public BlurCalls {};

} // namespace

TEST_F(BloomCalls, Builds_its_parts_and_sends_its_defaults) {
    gl.NameTarget("glow");
    // The shader is a member of the bloom and stands before the blur, but is built after it.
    NameBlur();
    gl.NameProgram("threshold");
    PostBloom bloom;
    EXPECT_TRUE(Made(NewTarget("glow") + NewTarget("first") + NewTarget("second") +
                     NewProgram("blur") + SizeTarget("first", 128, 128) +
                     SizeTarget("second", 128, 128) + Clamp("first") + Clamp("second") +
                     SetUniform("blur", "offset", "0.01") + NewProgram("threshold") +
                     SizeTarget("glow", 640, 480) + SetUniform("threshold", "threshold", "0.9")));
    EXPECT_THAT(gl.Source("threshold fragment"),
                ::testing::HasSubstr("(color.r+color.g+color.b)/3"));
}

TEST_F(BloomCalls, Takes_its_parameters_as_they_are_given_and_hands_the_blur_s_on) {
    NameBlur();
    gl.NameProgram("threshold");
    PostBloom bloom;
    Forget();
    for (const float intensity : {0.5f, 2.0f, -1.0f}) {
        bloom.SetIntensity(intensity);
        EXPECT_TRUE(Made(""));
        EXPECT_EQ(bloom.GetIntensity(), intensity);
    }
    for (const auto& [level, sent] : {std::pair{0.25f, "0.25"}, {1.5f, "1.5"}, {-0.5f, "-0.5"}}) {
        bloom.SetThreshold(level);
        EXPECT_TRUE(Made(SetUniform("threshold", "threshold", sent)));
        EXPECT_EQ(bloom.GetThreshold(), level);
    }
    bloom.SetOffset(0.5f);
    EXPECT_TRUE(Made(SetUniform("blur", "offset", "0.5")));
    EXPECT_EQ(bloom.GetOffset(), 0.5f);
    bloom.SetSizeRTT(64);
    EXPECT_EQ(bloom.GetSizeRTT(), 64);
}

TEST_F(BloomCalls, Adds_the_blurred_bright_pass) {
    gl.NameTarget("glow");
    NameBlur();
    gl.NameProgram("threshold");
    PostBloom bloom;
    bloom.SetIntensity(0.25f);
    bloom.SetPass(2);
    Forget();
    bloom.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- the bright parts\n" + EnableTarget("out", 640, 480) +
                     "glUseProgramObject(threshold)\n" + UnitOn(0) + BindTexture("in colour") +
                     Quad() + "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" +
                     DisableTarget() + "-- the glow\n" + Blurred("out", "glow", 2) +
                     "-- the picture itself\n" + UnitOn(0) + EnableTarget("out", 640, 480) +
                     BindTexture("in colour") + Quad() +
                     R"(
        -- the glow added
        glEnable(GL_BLEND)
        glBlendFunc(GL_SRC_ALPHA, GL_ONE)
        glColor4f(1, 1, 1, 0.25)
        )" + BindTexture("glow colour") +
                     Quad() + R"(
        -- as it was found
        glColor4f(1, 1, 1, 1)
        glDisable(GL_BLEND)
        )" + DisableTarget() +
                     "glDisable(GL_TEXTURE_2D)\n"));
}

TEST_F(BloomCalls, Ends_with_blur_shader_and_glow_target) {
    gl.NameTarget("glow");
    NameBlur();
    gl.NameProgram("threshold");
    auto bloom = std::make_unique<PostBloom>();
    Forget();
    bloom.reset();
    EXPECT_TRUE(Made(DeleteProgram("blur") + DeleteTarget("second") + DeleteTarget("first") +
                     DeleteProgram("threshold") + DeleteTarget("glow")));
}
