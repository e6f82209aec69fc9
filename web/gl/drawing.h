#pragma once

#include "web/gl/immediate.h"

#include <GL/gl.h>

/// Drawing: brings OpenGL ES to the state that the program wants, and draws.
namespace WebGL {

/// As glDrawArrays() and glDrawElements() of the arrays of the context.
void DrawArrays(GLenum mode, GLint first, GLsizei count);
void DrawElements(GLenum mode, GLsizei count, GLenum type, const void* indices);

/// What stood between glBegin() and glEnd(). Leaves the values that were set last.
void DrawPrimitive(const Primitive& primitive);

/// As glClear().
void Clear(GLbitfield mask);

} // namespace WebGL
