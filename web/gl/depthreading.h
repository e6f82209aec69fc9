#pragma once

#include "web/gl/pixels.h"

#include <vector>

#include <GL/gl.h>

namespace WebGL {

/// Depths of the framebuffer that is bound, from 0 to 1, row after row. OpenGL ES lets no depth be
/// read: it is drawn as a colour first. None where there is no depth.
std::vector<float> ReadDepths(GLint x, GLint y, GLsizei width, GLsizei height);

} // namespace WebGL
