#pragma once

#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/math/vec2.h"
#include "engine/post/postprocess.h"
#include "tests/post/filters.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

/// Runs one effect from an input picture to an output picture, under the set-up that the chain
/// gives its effects.
class EffectStage : public GlTest {
protected:
    /// What a look-up beyond the input's edges finds: as in the chain the nearest edge, or the
    /// input's mirror image, texel by texel.
    enum class Edges { Clamped, Mirrored };

    static Picture Run(Vell::PostEffect& effect, const Picture& input,
                       Edges edges = Edges::Clamped) {
        Vell::FBO in;
        Vell::FBO out;
        if (edges == Edges::Mirrored)
            Mirror(in);
        Run(effect, input, in, out);
        EXPECT_TRUE(Matches(ReadTexture(in.GetColor()), input)) << "the input was written to";
        return ReadTexture(out.GetColor());
    }

    /// The names of the state values that an effect leaves changed.
    static std::string StateLeft(Vell::PostEffect& effect, const Picture& input) {
        Vell::FBO in;
        Vell::FBO out;
        Run(effect, input, in, out); // leaves its bindings and the client arrays
        const GlState before = CaptureGlState();
        Run(effect, input, in, out);
        return Differences(before, CaptureGlState());
    }

private:
    static void Mirror(Vell::FBO& target) {
        glBindTexture(GL_TEXTURE_2D, target.GetColor());
        for (GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
            glTexParameteri(GL_TEXTURE_2D, wrap, GL_MIRRORED_REPEAT);
        for (GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
            glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    }

    static void Run(Vell::PostEffect& effect, const Picture& input, Vell::FBO& in, Vell::FBO& out) {
        for (Vell::FBO* target : {&in, &out})
            target->SetSize(Vell::ivec2(input.Width(), input.Height()));
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
        Fill(in, input);
        Fill(out, Picture(input.Width(), input.Height(), {13, 17, 19, 23})); // to be overwritten
        Vell::PushUnitProjection();
        glDisable(GL_DEPTH_TEST);
        effect.Process(&in, &out);
        GLint bound = -1;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &bound);
        EXPECT_EQ(bound, 0) << "a framebuffer was left bound";
        glEnable(GL_DEPTH_TEST);
        Vell::PopProjection();
    }
};
