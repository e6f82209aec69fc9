#pragma once

// OpenGL 2 on top of OpenGL ES 3 or WebGL 2. A program that was written for libGL and libGLU links
// this library instead: it has their functions under their names. What only a window system has, a
// context to draw in, the program makes itself and hands over here.

#ifdef __cplusplus
extern "C" {
#endif

/// What the last whole frame took, from webgl_end_frame() to webgl_end_frame().
struct webgl_frame {
    unsigned long calls;   ///< of OpenGL ES or WebGL, queries included
    unsigned long draws;   ///< of those: glDrawArrays and glDrawElements
    unsigned long uploads; ///< of those: what carries vertices, indices or pixels
};

/// Takes over the current OpenGL ES 3 or WebGL 2 context, whose picture is `width` x `height`
/// pixels. All state begins as OpenGL's own does; names of an earlier context are forgotten, not
/// deleted. To be called once for each context, before any other OpenGL call.
void webgl_begin(int width, int height);

/// The address of an OpenGL entry point, what glXGetProcAddress() and SDL_GL_GetProcAddress()
/// answer. Null for a name that is not known. Needs no context.
void* webgl_entry_point(const char* name);

/// Ends a frame for the counts; the program calls it where it shows its picture.
void webgl_end_frame(void);

/// The counts of the last frame that was ended; all 0 before the first.
struct webgl_frame webgl_last_frame(void);

#ifdef __cplusplus
}
#endif
