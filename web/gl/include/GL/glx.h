#pragma once

// Where the window system is no X server, this stands for the one function of <GL/glx.h> that a
// program without a window of its own calls.

#include <GL/gl.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The address of an OpenGL entry point; null for a name that is not known.
void (*glXGetProcAddress(const GLubyte* name))(void);

#ifdef __cplusplus
}
#endif
