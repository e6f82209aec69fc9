#pragma once

#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/math/vec2.h"
#include "engine/post/postprocess.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <algorithm>
#include <cmath>

/// Runs one effect from an input picture to an output picture, under the set-up that the chain
/// gives its effects.
class EffectStage : public GlTest {
protected:
    static Picture Run(Vell::PostEffect& effect, const Picture& input) {
        Vell::FBO in;
        Vell::FBO out;
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
    static void Run(Vell::PostEffect& effect, const Picture& input, Vell::FBO& in, Vell::FBO& out) {
        for (Vell::FBO* target : {&in, &out})
            target->SetSize(Vell::ivec2(input.Width(), input.Height()));
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
        Fill(in, input);
        Fill(out, Picture(input.Width(), input.Height(), {13, 17, 19, 23})); // to be overwritten
        Vell::PushUnitProjection();
        glDisable(GL_DEPTH_TEST);
        effect.Process(&in, &out);
        glEnable(GL_DEPTH_TEST);
        Vell::PopProjection();
    }
};

/// A colour between the steps of 8 bits, for filters worked out by the test.
struct Colour {
    double c[4] = {0.0, 0.0, 0.0, 0.0};

    Colour() = default;
    explicit Colour(Rgba p) : c{double(p.r), double(p.g), double(p.b), double(p.a)} {}

    Colour& Add(const Colour& other, double weight) {
        for (int i = 0; i < 4; ++i)
            c[i] += other.c[i] * weight;
        return *this;
    }

    Rgba Rounded() const {
        const auto channel = [this](int i) {
            return int(std::lround(std::clamp(c[i], 0.0, 255.0)));
        };
        return {channel(0), channel(1), channel(2), channel(3)};
    }
};

/// What a linear filter with clamped edges reads at (s, t), 0..1 over the picture.
inline Colour Sampled(const Picture& picture, double s, double t) {
    const double x = s * picture.Width() - 0.5;
    const double y = t * picture.Height() - 0.5;
    const double fx = x - std::floor(x);
    const double fy = y - std::floor(y);
    Colour sum;
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i) {
            const int column = std::clamp(int(std::floor(x)) + i, 0, picture.Width() - 1);
            const int row = std::clamp(int(std::floor(y)) + j, 0, picture.Height() - 1);
            sum.Add(Colour(picture.At(column, row)), (i ? fx : 1 - fx) * (j ? fy : 1 - fy));
        }
    return sum;
}

/// The picture stretched to another size by that filter.
inline Picture Resized(const Picture& picture, int width, int height) {
    return MakePicture(width, height, [&](int x, int y) {
        return Sampled(picture, (x + 0.5) / width, (y + 0.5) / height).Rounded();
    });
}

/// The mean of a pixel and its eight neighbours at `offset`, in texture coordinates, away.
inline Picture BoxFiltered(const Picture& picture, double offset) {
    return MakePicture(picture.Width(), picture.Height(), [&](int x, int y) {
        Colour sum;
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i)
                sum.Add(Sampled(picture, (x + 0.5) / picture.Width() + i * offset,
                                (y + 0.5) / picture.Height() + j * offset),
                        1.0 / 9.0);
        return sum.Rounded();
    });
}
