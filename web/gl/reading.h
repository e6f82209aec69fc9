#pragma once

#include "web/gl/pixels.h"

#include <GL/gl.h>

/// Reading pictures back.
namespace WebGL {

/// From the framebuffer that is bound, as glReadPixels().
void ReadPixels(GLint x, GLint y, const PixelArea& area, void* pixels);

/// From the texture that is bound to the active unit, as glGetTexImage().
void ReadTexture(GLint level, GLenum format, GLenum type, void* pixels);

} // namespace WebGL
