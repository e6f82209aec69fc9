#include "engine/core/errorguard.h"

#include "engine/core/fbo.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pending_errors.h"

#include <functional>
#include <string>

using Vell::ErrorGuard;
using Vell::FBO;

namespace {

class ErrorGuardTest : public GlTest {
protected:
    /// The pending error after a guarded call that is refused with an error of its own, and whether
    /// the state stays as it was.
    static void ExpectLeaves(GLenum error, const std::function<void()>& raise) {
        const GlState before = CaptureGlState();
        raise();
        {
            const ErrorGuard guard;
            glIndexPointer(GL_UNSIGNED_INT, 0, nullptr); // refused with GL_INVALID_ENUM
        }
        EXPECT_TRUE(OnlyPending(error));
        EXPECT_EQ(Differences(before, CaptureGlState()), "");
    }
};

void DrawIntoNothing() {
    GLuint empty = 0;
    glGenFramebuffersEXT(1, &empty);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, empty);
    glClear(GL_DEPTH_BUFFER_BIT);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    glDeleteFramebuffersEXT(1, &empty);
}

} // namespace

TEST_F(ErrorGuardTest, Leaves_no_error_of_the_call_it_guards) {
    glIndexPointer(GL_UNSIGNED_INT, 0, nullptr);
    ASSERT_TRUE(OnlyPending(GL_INVALID_ENUM)) << "without a guard";
    ExpectLeaves(GL_NO_ERROR, [] {});
}

TEST_F(ErrorGuardTest, Leaves_an_error_that_was_pending_before) {
    for (const PendingError& pending : pendingErrors) {
        SCOPED_TRACE(pending.name);
        pending.raise();
        ASSERT_TRUE(OnlyPending(pending.error)) << "without a guard";
        ExpectLeaves(pending.error, pending.raise);
    }
}

TEST_F(ErrorGuardTest, Leaves_the_error_of_drawing_into_an_incomplete_framebuffer) {
    DrawIntoNothing();
    ASSERT_TRUE(OnlyPending(GL_INVALID_FRAMEBUFFER_OPERATION_EXT)) << "without a guard";
    ExpectLeaves(GL_INVALID_FRAMEBUFFER_OPERATION_EXT, DrawIntoNothing);
}

TEST_F(ErrorGuardTest, Turns_the_error_of_a_matrix_stack_into_a_refused_operation) {
    glPopMatrix();
    ASSERT_TRUE(OnlyPending(GL_STACK_UNDERFLOW)) << "without a guard";
    ExpectLeaves(GL_INVALID_OPERATION, [] { glPopMatrix(); });
}

TEST_F(ErrorGuardTest, Leaves_the_framebuffer_bound_that_was) {
    GLuint target = 0;
    glGenFramebuffersEXT(1, &target);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, target);
    glClear(GL_COLOR_BUFFER_BIT);
    { const ErrorGuard guard; }
    GLint bound = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &bound);
    EXPECT_EQ(static_cast<GLuint>(bound), target);
    EXPECT_TRUE(OnlyPending(GL_INVALID_FRAMEBUFFER_OPERATION_EXT));
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    glDeleteFramebuffersEXT(1, &target);
}

TEST_F(ErrorGuardTest, Render_target_made_on_the_screen_leaves_no_error) {
    const FBO target;
    EXPECT_TRUE(OnlyPending(GL_NO_ERROR));
}

TEST_F(ErrorGuardTest, Render_target_leaves_errors_that_were_pending_when_it_is_made) {
    FBO enabled;
    for (const bool screen : {true, false})
        for (const PendingError& pending : pendingErrors) {
            SCOPED_TRACE(pending.name + std::string(screen ? ", screen" : ", target"));
            if (!screen)
                enabled.Enable();
            pending.raise();
            const FBO target;
            EXPECT_TRUE(OnlyPending(pending.error));
            if (!screen)
                enabled.Disable();
        }
}
