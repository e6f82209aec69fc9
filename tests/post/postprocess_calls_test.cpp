// The chain of full-screen effects and each effect, call by call.

#include "tests/recording/calls.h"

#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "engine/core/fbo.h"
#include "engine/post/post_bloom.h"
#include "engine/post/post_blur.h"
#include "engine/post/postprocess.h"
#include "tests/support/fake_time.h"

#include <gmock/gmock.h>

#include <memory>

using Vell::FBO;
using Vell::ivec2;
using Vell::PostBloom;
using Vell::PostBlur;
using Vell::PostProcess;

namespace {

/// An effect that only says what it is given.
class Noted : public Vell::PostEffect {
public:
    Noted(const std::string& effectName, FBO& sceneTarget) : name(effectName), scene(sceneTarget) {}

    void Process(FBO* in, FBO* out) override {
        const std::string arguments[] = {name, in == &scene ? "scene to spare" : "spare to scene"};
        EXPECT_NE(in, out);
        gl.Note("Process", arguments);
    }

private:
    std::string name;
    FBO& scene;
};

/// An effect that switches another one off.
class Silencing : public Noted {
public:
    Silencing(FBO& sceneTarget, Vell::PostEffect& otherEffect)
        : Noted("silencing", sceneTarget), other(otherEffect) {}

    void Process(FBO* in, FBO* out) override {
        Noted::Process(in, out);
        other.SetEnabled(false);
    }

private:
    Vell::PostEffect& other;
};

class PostCalls : public Calls {
protected:
    /// Two targets of the screen's size, "in" and "out", and no call noted.
    void SetUp() override {
        Calls::SetUp();
        gl.NameTarget("in");
        gl.NameTarget("out");
        in = std::make_unique<FBO>();
        out = std::make_unique<FBO>();
        in->SetSize(ivec2(640, 480));
        out->SetSize(ivec2(640, 480));
        Forget();
    }

    /// A target of that label shown on the screen by the chain.
    static std::string Shown(const std::string& target) {
        return UnitOn(0) + BindTexture(target + " colour") + Quad();
    }

    static std::string End() {
        return "-- 5.\nglDisable(GL_TEXTURE_2D)\nglEnable(GL_DEPTH_TEST)\n" + PopUnitSquare();
    }

    static std::string Begin() {
        return "-- 1.\n" + PushUnitSquare() + "glDisable(GL_DEPTH_TEST)\n";
    }

    static std::string Clamp(const std::string& target) {
        return BindTexture(target + " colour") + R"(
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
            )";
    }

    /// A uniform sent by a setter, which enables the program around it.
    static std::string SetUniform(const std::string& program, const std::string& uniform,
                                  const std::string& value) {
        return "glUseProgramObject(" + program + ")\n" + Send(program, uniform, "1f", value) +
               "glUseProgramObject(0)\n";
    }

    static void NameBlur() {
        gl.NameTarget("first");
        gl.NameTarget("second");
        gl.NameProgram("blur");
    }

    static std::string CopyInto(const std::string& target, int width, int height,
                                const std::string& from) {
        return EnableTarget(target, width, height) + BindTexture(from + " colour") + Quad() +
               DisableTarget();
    }

    static std::string FilterInto(const std::string& target, const std::string& from) {
        return EnableTarget(target, 128, 128) + BindTexture(from + " colour") +
               "glUseProgramObject(blur)\n" + Quad() + "glUseProgramObject(0)\n" + DisableTarget();
    }

    /// The blur of `from` into `to`, both of the screen's size.
    static std::string Blurred(const std::string& from, const std::string& to, int passes) {
        std::string calls = UnitOn(0) + "-- 1.\n" + CopyInto("first", 128, 128, from);
        for (int pass = 0; pass < passes; ++pass)
            calls += "-- 2.\n" + FilterInto("second", "first") + FilterInto("first", "second");
        return calls + "-- 3.\n" + CopyInto(to, 640, 480, "first") +
               "-- 4.\nglDisable(GL_TEXTURE_2D)\n";
    }

    std::unique_ptr<FBO> in;
    std::unique_ptr<FBO> out;
};

} // namespace

// -------------------------------------------------------------------------------------- Chain

TEST_F(PostCalls, Chain_makes_and_deletes_its_spare_target) {
    gl.NameTarget("spare");
    auto chain = std::make_unique<PostProcess>(in.get());
    EXPECT_TRUE(Made(NewTarget("spare") + SizeTarget("spare", 640, 480)));
    chain.reset();
    EXPECT_TRUE(Made(DeleteTarget("spare")));
}

TEST_F(PostCalls, Spare_target_is_as_large_as_the_screen_whatever_the_scene_target_is) {
    in->SetSize(ivec2(100, 50));
    Forget();
    gl.NameTarget("spare");
    const PostProcess chain(in.get());
    EXPECT_TRUE(Made(NewTarget("spare") + SizeTarget("spare", 640, 480)));
}

TEST_F(PostCalls, Empty_chain_shows_the_scene) {
    PostProcess chain(in.get());
    Forget();
    chain.Draw();
    EXPECT_TRUE(Made(R"(
        -- 1.
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        glOrtho(0, 1, 0, 1, -1, 1)
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        glDisable(GL_DEPTH_TEST)
        -- 2.
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
        glBindTexture(GL_TEXTURE_2D, in colour)
        glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
        -- 5.
        glDisable(GL_TEXTURE_2D)
        glEnable(GL_DEPTH_TEST)
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        )"));
}

TEST_F(PostCalls, Effects_alternate_between_scene_and_spare_target) {
    gl.NameTarget("spare");
    PostProcess chain(in.get());
    Noted a("a", *in), b("b", *in), c("c", *in);
    for (Noted* effect : {&a, &b, &c})
        chain.AddPostEffect(effect);
    Forget();
    // Every combination of enabled effects.
    for (int enabled = 0; enabled < 8; ++enabled) {
        std::string steps;
        int count = 0;
        Noted* const effects[] = {&a, &b, &c};
        for (int i = 0; i < 3; ++i) {
            const bool on = (enabled >> i & 1) != 0;
            effects[i]->SetEnabled(on);
            if (!on)
                continue;
            steps += std::string("Process(") + "abc"[i] +
                     (count++ % 2 == 0 ? ", scene to spare)\n" : ", spare to scene)\n");
        }
        chain.Draw();
        EXPECT_TRUE(Made(Begin() + "-- 3.\n" + steps + "-- 4.\n" +
                         Shown(count % 2 == 0 ? "in" : "spare") + End()))
            << "enabled: " << enabled;
    }
}

TEST_F(PostCalls, Effect_added_twice_runs_twice) {
    PostProcess chain(in.get());
    Noted a("a", *in);
    chain.AddPostEffect(&a);
    chain.AddPostEffect(&a);
    Forget();
    chain.Draw();
    EXPECT_TRUE(Made(Begin() + "Process(a, scene to spare); Process(a, spare to scene)\n" +
                     Shown("in") + End()));
}

TEST_F(PostCalls, Effect_that_an_earlier_one_switches_off_is_skipped) {
    PostProcess chain(in.get());
    Noted a("a", *in), b("b", *in);
    Silencing silencing(*in, a);
    for (Noted* effect : {static_cast<Noted*>(&silencing), &a, &b})
        chain.AddPostEffect(effect);
    Forget();
    chain.Draw();
    EXPECT_TRUE(Made(Begin() + "Process(silencing, scene to spare); Process(b, spare to scene)\n" +
                     Shown("in") + End()));
}

// --------------------------------------------------------------------------------------- Blur

TEST_F(PostCalls, Blur_builds_targets_and_shader_and_sends_its_defaults) {
    NameBlur();
    auto blur = std::make_unique<PostBlur>();
    EXPECT_TRUE(Made(NewTarget("first") + NewTarget("second") + NewProgram("blur") +
                     SizeTarget("first", 128, 128) + SizeTarget("second", 128, 128) +
                     Clamp("first") + Clamp("second") + SetUniform("blur", "offset", "0.01")));
}

TEST_F(PostCalls, Blur_takes_its_parameters_as_they_are_given) {
    NameBlur();
    PostBlur blur;
    Forget();
    for (const int size : {64, 1, 1000}) { // also beyond the screen
        blur.SetSizeRTT(size);
        EXPECT_TRUE(Made(SizeTarget("first", size, size) + SizeTarget("second", size, size)));
        EXPECT_EQ(blur.GetSizeRTT(), size);
    }
    for (const auto& [offset, sent] : {std::pair{0.5f, "0.5"}, {-0.25f, "-0.25"}, {2.0f, "2"}}) {
        blur.SetOffset(offset);
        EXPECT_TRUE(Made(SetUniform("blur", "offset", sent)));
        EXPECT_EQ(blur.GetOffset(), offset);
    }
    for (const int passes : {3, 0, 100}) {
        blur.SetPass(passes);
        EXPECT_TRUE(Made(""));
        EXPECT_EQ(blur.GetPass(), passes);
    }
}

TEST_F(PostCalls, Blur_filters_back_and_forth) {
    NameBlur();
    PostBlur blur;
    Forget();
    blur.Process(in.get(), out.get());
    EXPECT_TRUE(Made(Blurred("in", "out", 5)));
    for (const int passes : {0, 1, 2, 12}) {
        blur.SetPass(passes);
        blur.Process(in.get(), out.get());
        EXPECT_TRUE(Made(Blurred("in", "out", passes))) << passes;
    }
}

// -------------------------------------------------------------------------------------- Bloom

TEST_F(PostCalls, Bloom_builds_its_parts_and_sends_its_defaults) {
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

TEST_F(PostCalls, Bloom_takes_its_parameters_as_they_are_given_and_hands_the_blur_s_on) {
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

TEST_F(PostCalls, Bloom_adds_the_blurred_bright_pass) {
    gl.NameTarget("glow");
    NameBlur();
    gl.NameProgram("threshold");
    PostBloom bloom;
    bloom.SetIntensity(0.25f);
    bloom.SetPass(2);
    Forget();
    bloom.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- 1. bright pass\n" + EnableTarget("out", 640, 480) +
                     "glUseProgramObject(threshold)\n" + UnitOn(0) + BindTexture("in colour") +
                     Quad() + "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" +
                     DisableTarget() + "-- 2. glow\n" + Blurred("out", "glow", 2) + "-- 3. base\n" +
                     UnitOn(0) + EnableTarget("out", 640, 480) + BindTexture("in colour") + Quad() +
                     R"(
        -- 4. add
        glEnable(GL_BLEND)
        glBlendFunc(GL_SRC_ALPHA, GL_ONE)
        glColor4f(1, 1, 1, 0.25)
        )" + BindTexture("glow colour") +
                     Quad() + R"(
        -- 5. restore
        glColor4f(1, 1, 1, 1)
        glDisable(GL_BLEND)
        )" + DisableTarget() +
                     "glDisable(GL_TEXTURE_2D)\n"));
}

TEST_F(PostCalls, Bloom_ends_with_blur_shader_and_glow_target) {
    gl.NameTarget("glow");
    NameBlur();
    gl.NameProgram("threshold");
    auto bloom = std::make_unique<PostBloom>();
    Forget();
    bloom.reset();
    EXPECT_TRUE(Made(DeleteProgram("blur") + DeleteTarget("second") + DeleteTarget("first") +
                     DeleteProgram("threshold") + DeleteTarget("glow")));
}

// ------------------------------------------------------------------------ Colour split, ripple

TEST_F(PostCalls, Colour_split_sends_its_offset_with_every_picture) {
    gl.NameProgram("split");
    PostRGB split;
    // Building leaves the program in use: the sampler is sent as it is, and then nothing is.
    EXPECT_TRUE(Made(NewProgram("split") + Send("split", "texture", "1i", "0") +
                     "glUseProgramObject(0)\n"));
    split.SetOffset(0.75f);
    EXPECT_TRUE(Made(""));
    split.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- 1.\n" + EnableTarget("out", 640, 480) + "glUseProgramObject(split)\n" +
                     Send("split", "offset", "1f", "0.75") + "-- 2.\n" + UnitOn(0) +
                     BindTexture("in colour") + "-- 3.\n" + Quad() + "-- 4.\n" +
                     "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" + DisableTarget()));
}

TEST_F(PostCalls, Ripple_sends_its_time_with_every_picture) {
    gl.NameProgram("ripple");
    PostWater ripple;
    EXPECT_TRUE(Made(NewProgram("ripple") + Send("ripple", "texture", "1i", "0") +
                     "glUseProgramObject(0)\n"));
    SetFakeTime(1.5); // made at 0
    ripple.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- 1.\n" + EnableTarget("out", 640, 480) + "glUseProgramObject(ripple)\n" +
                     Send("ripple", "time", "1f", "1.5") + UnitOn(0) + BindTexture("in colour") +
                     Quad() + "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" + "-- 3.\n" +
                     DisableTarget()));
}

TEST_F(PostCalls, Ripple_switched_off_copies_without_a_shader) {
    PostWater ripple;
    ripple.SetEnable(false);
    Forget();
    ripple.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- 2.\n" + EnableTarget("out", 640, 480) + UnitOn(0) +
                     BindTexture("in colour") + Quad() + "glDisable(GL_TEXTURE_2D)\n" + "-- 3.\n" +
                     DisableTarget()));
}

TEST_F(PostCalls, Ends_of_both_release_their_shaders) {
    gl.NameProgram("split");
    gl.NameProgram("ripple");
    auto split = std::make_unique<PostRGB>();
    auto ripple = std::make_unique<PostWater>();
    Forget();
    ripple.reset();
    EXPECT_TRUE(Made(DeleteProgram("ripple")));
    split.reset();
    EXPECT_TRUE(Made(DeleteProgram("split")));
}
