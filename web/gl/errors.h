#pragma once

#include <GL/gl.h>

namespace WebGL {

/// The error that glGetError() will answer. Most of what can be wrong with a call is found here, as
/// OpenGL has it; asking OpenGL ES costs a page a round trip to another process, so that it is
/// asked only after calls that it alone can judge.
class Errors {
public:
    /// The first error stays until it is taken.
    void Raise(GLenum error);

    /// OpenGL ES was called in a way that it may refuse.
    void Suspect() { suspected = true; }

    /// The error, which is then forgotten.
    GLenum Take();

private:
    GLenum raised = GL_NO_ERROR;
    bool suspected = false;
};

} // namespace WebGL
