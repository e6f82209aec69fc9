// The chain of full-screen effects, call by call.

#include "tests/post/effect_calls.h"

#include "engine/post/postprocess.h"

#include <memory>

using Vell::FBO;
using Vell::ivec2;
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

class ChainCalls : public EffectCalls {
protected:
    /// A target of that label shown on the screen by the chain.
    static std::string Shown(const std::string& target) {
        return UnitOn(0) + BindTexture(target + " colour") + Quad();
    }

    static std::string End() {
        return "-- as it was found\nglDisable(GL_TEXTURE_2D)\nglEnable(GL_DEPTH_TEST)\n" +
               PopUnitSquare();
    }

    static std::string Begin() {
        return "-- a unit square, without depth\n" + PushUnitSquare() +
               "glDisable(GL_DEPTH_TEST)\n";
    }
};

} // namespace

TEST_F(ChainCalls, Makes_and_deletes_its_spare_target) {
    gl.NameTarget("spare");
    auto chain = std::make_unique<PostProcess>(in.get());
    EXPECT_TRUE(Made(NewTarget("spare") + SizeTarget("spare", 640, 480)));
    chain.reset();
    EXPECT_TRUE(Made(DeleteTarget("spare")));
}

TEST_F(ChainCalls, Spare_target_is_as_large_as_the_screen_whatever_the_scene_target_is) {
    in->SetSize(ivec2(100, 50));
    Forget();
    gl.NameTarget("spare");
    const PostProcess chain(in.get());
    EXPECT_TRUE(Made(NewTarget("spare") + SizeTarget("spare", 640, 480)));
}

TEST_F(ChainCalls, Empty_chain_shows_the_scene) {
    PostProcess chain(in.get());
    Forget();
    chain.Draw();
    EXPECT_TRUE(Made(R"(
        -- a unit square, without depth
        glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
        glOrtho(0, 1, 0, 1, -1, 1)
        glMatrixMode(GL_MODELVIEW); glPushMatrix(); glLoadIdentity()
        glDisable(GL_DEPTH_TEST)
        -- the scene
        glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
        glBindTexture(GL_TEXTURE_2D, in colour)
        glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
        -- as it was found
        glDisable(GL_TEXTURE_2D)
        glEnable(GL_DEPTH_TEST)
        glMatrixMode(GL_PROJECTION); glPopMatrix()
        glMatrixMode(GL_MODELVIEW); glPopMatrix()
        )"));
}

TEST_F(ChainCalls, Effects_alternate_between_scene_and_spare_target) {
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
        EXPECT_TRUE(Made(Begin() + "-- each enabled effect in turn\n" + steps +
                         "-- the last result\n" + Shown(count % 2 == 0 ? "in" : "spare") + End()))
            << "enabled: " << enabled;
    }
}

TEST_F(ChainCalls, Effect_added_twice_runs_twice) {
    PostProcess chain(in.get());
    Noted a("a", *in);
    chain.AddPostEffect(&a);
    chain.AddPostEffect(&a);
    Forget();
    chain.Draw();
    EXPECT_TRUE(Made(Begin() + "Process(a, scene to spare); Process(a, spare to scene)\n" +
                     Shown("in") + End()));
}

TEST_F(ChainCalls, Effect_that_an_earlier_one_switches_off_is_skipped) {
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
