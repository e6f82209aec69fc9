// The guard around a refused call, call by call, on a driver that keeps one error of each kind.

#include "tests/recording/calls.h"

#include "engine/core/errorguard.h"

#include <gmock/gmock.h>

using ::testing::IsEmpty;

namespace {

class ErrorGuardCalls : public Calls {};

} // namespace

TEST_F(ErrorGuardCalls, Looks_before_the_call_and_takes_one_error_after_it) {
    {
        const Vell::ErrorGuard guard;
        EXPECT_TRUE(Made("glGetError()"));
        gl.errors = {GL_INVALID_ENUM}; // the refused call's own
    }
    EXPECT_TRUE(Made("glGetError()"));
    EXPECT_THAT(gl.errors, IsEmpty());
}

TEST_F(ErrorGuardCalls, Raises_every_error_again_that_was_pending) {
    gl.errors = {GL_INVALID_OPERATION, GL_INVALID_VALUE, GL_INVALID_ENUM};
    {
        const Vell::ErrorGuard guard;
        EXPECT_TRUE(Made("glGetError(); glGetError(); glGetError(); glGetError()"));
        gl.errors = {GL_INVALID_ENUM};
    }
    EXPECT_TRUE(Made(R"(
        glGetError()
        glEnd()
        glViewport(0, 0, -1, -1)
        glEnable(GL_RGBA)
        )"));
}

TEST_F(ErrorGuardCalls, Asks_no_more_than_nine_times_where_errors_never_end) {
    gl.errors.assign(100, GL_INVALID_OPERATION); // of eight kinds; the ninth answer should be none
    const Vell::ErrorGuard guard;
    EXPECT_EQ(gl.errors.size(), 91u);
}
