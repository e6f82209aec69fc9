// The render target, call by call.

#include "tests/recording/calls.h"

#include "engine/core/fbo.h"

#include <optional>

using Vell::FBO;
using Vell::ivec2;

namespace {

class FboCalls : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        gl.NameTarget("target");
    }
};

} // namespace

// Everything here stands out in full, while other tests use Calls' own words for it.

TEST_F(FboCalls, Construction_makes_renderbuffer_colour_and_depth) {
    const FBO target;
    EXPECT_TRUE(Made(R"(
        -- framebuffer and renderbuffer; attached to whatever framebuffer is bound
        glGenFramebuffersEXT(1, target)
        glGenRenderbuffersEXT(1, target)
        glBindRenderbufferEXT(GL_RENDERBUFFER, target)
        glRenderbufferStorageEXT(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, 256, 256)
        -- looks for errors, and takes back the one of attaching to the screen
        glGetError()
        glFramebufferRenderbufferEXT(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, target)
        glGetError()
        -- colour
        glGenTextures(1, target colour)
        glBindTexture(GL_TEXTURE_2D, target colour)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 256, 256, 0, GL_RGBA, GL_UNSIGNED_BYTE, 0)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
        -- depth
        glGenTextures(1, target depth)
        glBindTexture(GL_TEXTURE_2D, target depth)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, 256, 256, 0, GL_DEPTH_COMPONENT, GL_FLOAT, 0)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
        glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE)
        )"));
}

TEST_F(FboCalls, Construction_raises_an_error_again_that_was_pending) {
    gl.errors = {GL_INVALID_VALUE};
    const FBO target;
    std::string calls = NewTarget("target");
    const std::string refused = "glFramebufferRenderbufferEXT(GL_FRAMEBUFFER, "
                                "GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, target)\n";
    calls.insert(calls.find(refused), "glGetError()\n");
    const std::string take = refused + "glGetError()\n";
    calls.insert(calls.find(take) + take.size(), "glViewport(0, 0, -1, -1)\n");
    EXPECT_TRUE(Made(calls));
}

TEST_F(FboCalls, Sizing_allocates_again_with_bytes_and_keeps_the_parameters) {
    FBO target;
    Forget();
    target.SetSize(ivec2(300, 200));
    EXPECT_TRUE(Made(R"(
        glBindRenderbufferEXT(GL_RENDERBUFFER, target)
        glRenderbufferStorageEXT(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, 300, 200)
        glBindTexture(GL_TEXTURE_2D, target colour)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 300, 200, 0, GL_RGBA, GL_UNSIGNED_BYTE, 0)
        glBindTexture(GL_TEXTURE_2D, target depth)
        glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, 300, 200, 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_BYTE, 0)
        )"));
}

TEST_F(FboCalls, Enabling_attaches_both_textures_every_time) {
    FBO target;
    target.SetSize(ivec2(300, 200));
    Forget();
    for (int time = 0; time < 2; ++time) {
        target.Enable();
        EXPECT_TRUE(Made(R"(
            glBindFramebufferEXT(GL_FRAMEBUFFER, target)
            glBindRenderbufferEXT(GL_RENDERBUFFER, target)
            glFramebufferTexture2DEXT(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target colour, 0)
            glFramebufferTexture2DEXT(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, target depth, 0)
            glViewport(0, 0, 300, 200)
            glPushMatrix()
            )"));
        target.Disable();
        EXPECT_TRUE(Made(R"(
            glBindFramebufferEXT(GL_FRAMEBUFFER, 0)
            glBindRenderbufferEXT(GL_RENDERBUFFER, 0)
            glViewport(0, 0, 640, 480)
            glPopMatrix()
            )"));
    }
}

TEST_F(FboCalls, Destruction_deletes_colour_depth_framebuffer_and_renderbuffer) {
    std::optional<FBO> target(std::in_place);
    Forget();
    target.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteTextures(1, target colour)
        glDeleteTextures(1, target depth)
        glDeleteFramebuffersEXT(1, target)
        glDeleteRenderbuffersEXT(1, target)
        )"));
}
