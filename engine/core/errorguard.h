#pragma once

#include "engine/core/GLExtensions.h"

namespace Vell {

/// Stands around one call that OpenGL is known to refuse: afterwards glGetError() answers what it
/// would have answered before, and nothing of that call.
///
/// OpenGL cannot be asked what is pending without forgetting it, and an implementation may keep the
/// first error only. So the constructor takes everything that is pending, and the destructor takes
/// what the call has left and raises the taken errors once more, each by a call without any effect
/// but that error.
///
/// GL_INVALID_ENUM, GL_INVALID_VALUE, GL_INVALID_OPERATION and GL_INVALID_FRAMEBUFFER_OPERATION
/// come back as they were. The others, of matrix stacks and memory, cannot be raised harmlessly and
/// come back as GL_INVALID_OPERATION: whoever asks still learns that something failed.
/// Needs a current context on which InitEngine() succeeded; not between glBegin and glEnd.
class ErrorGuard {
public:
    ErrorGuard();
    ~ErrorGuard();

    ErrorGuard(const ErrorGuard&) = delete;
    ErrorGuard& operator=(const ErrorGuard&) = delete;

private:
    static constexpr int mostErrors = 8; // one of each kind, where a driver keeps them apart

    GLenum pending[mostErrors];
    int count;
};

} // namespace Vell
