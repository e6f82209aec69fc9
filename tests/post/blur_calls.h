#pragma once

#include "tests/post/effect_calls.h"

/// What the blur calls, also inside the bloom.
class BlurCalls : public EffectCalls {
protected:
    /// Labels what the next blur is made of.
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
        std::string calls = UnitOn(0) + "-- shrunk\n" + CopyInto("first", 128, 128, from);
        for (int pass = 0; pass < passes; ++pass)
            calls += "-- back and forth\n" + FilterInto("second", "first") +
                     FilterInto("first", "second");
        return calls + "-- stretched\n" + CopyInto(to, 640, 480, "first") +
               "-- texturing off\nglDisable(GL_TEXTURE_2D)\n";
    }

    static std::string Clamp(const std::string& target) {
        return BindTexture(target + " colour") + R"(
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
            )";
    }
};
