#include "engine/core/errorguard.h"

namespace Vell {

namespace {

/// Clears a framebuffer that is not complete, for nothing is attached to it.
void RaiseFramebufferError() {
    GLint bound = 0;
    GLuint empty = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &bound);
    glGenFramebuffersEXT(1, &empty);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, empty);
    glClear(GL_COLOR_BUFFER_BIT);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<GLuint>(bound));
    glDeleteFramebuffersEXT(1, &empty);
}

void Raise(GLenum error) {
    switch (error) {
    case GL_INVALID_ENUM:
        glEnable(GL_RGBA); // no switch
        break;
    case GL_INVALID_VALUE:
        glViewport(0, 0, -1, -1);
        break;
    case GL_INVALID_FRAMEBUFFER_OPERATION_EXT:
        RaiseFramebufferError();
        break;
    default:
        glEnd(); // nothing has begun
    }
}

} // namespace

// Counted, for without a context some drivers answer with an error for ever.
ErrorGuard::ErrorGuard() : pending{}, count(0) {
    GLenum error = glGetError();
    while (error != GL_NO_ERROR && count < mostErrors) {
        pending[count++] = error;
        error = glGetError();
    }
}

ErrorGuard::~ErrorGuard() {
    glGetError(); // what the call has left
    for (int i = 0; i < count; ++i)
        Raise(pending[i]);
}

} // namespace Vell
