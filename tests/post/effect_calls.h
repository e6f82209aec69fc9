#pragma once

#include "tests/recording/calls.h"

#include "engine/core/fbo.h"

#include <memory>
#include <string>

/// What full-screen effects call.
class EffectCalls : public Calls {
protected:
    /// Two targets of the screen's size, "in" and "out", and no call noted.
    void SetUp() override {
        Calls::SetUp();
        gl.NameTarget("in");
        gl.NameTarget("out");
        in = std::make_unique<Vell::FBO>();
        out = std::make_unique<Vell::FBO>();
        in->SetSize(Vell::ivec2(640, 480));
        out->SetSize(Vell::ivec2(640, 480));
        Forget();
    }

    /// A uniform sent by a setter, which enables the program around it.
    static std::string SetUniform(const std::string& program, const std::string& uniform,
                                  const std::string& value) {
        return "glUseProgramObject(" + program + ")\n" + Send(program, uniform, "1f", value) +
               "glUseProgramObject(0)\n";
    }

    std::unique_ptr<Vell::FBO> in;
    std::unique_ptr<Vell::FBO> out;
};
