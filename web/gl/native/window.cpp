// SDL's functions that have to do with OpenGL, on top of SDL's own.

#include "web/gl/webgl.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <SDL.h>
#include <dlfcn.h>

namespace {

struct Screen {
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
};

Screen screen;

/// SDL's own function of that name.
template <class Function>
Function Original(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool OpenDisplay() {
    if (screen.display != EGL_NO_DISPLAY)
        return true;
    screen.display =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_ES3_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_ALPHA_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_NONE};
    EGLint found = 0;
    return eglInitialize(screen.display, nullptr, nullptr) == EGL_TRUE &&
           eglChooseConfig(screen.display, wanted, &screen.config, 1, &found) == EGL_TRUE &&
           found == 1;
}

/// Makes the context current on a picture of this size, with a fresh one for each of SDL's windows.
bool OpenPicture(int width, int height) {
    if (!OpenDisplay())
        return false;
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 3, EGL_NONE};
    eglBindAPI(EGL_OPENGL_ES_API);
    eglMakeCurrent(screen.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (screen.context != EGL_NO_CONTEXT) {
        eglDestroyContext(screen.display, screen.context);
        eglDestroySurface(screen.display, screen.surface);
    }
    screen.surface = eglCreatePbufferSurface(screen.display, screen.config, size);
    screen.context = eglCreateContext(screen.display, screen.config, EGL_NO_CONTEXT, version);
    return eglMakeCurrent(screen.display, screen.surface, screen.surface, screen.context) ==
           EGL_TRUE;
}

} // namespace

extern "C" {

SDL_Surface* SDL_SetVideoMode(int width, int height, int bpp, Uint32 flags) {
    const auto original = Original<decltype(&SDL_SetVideoMode)>("SDL_SetVideoMode");
    SDL_Surface* const surface = original(width, height, bpp, flags & ~Uint32{SDL_OPENGL});
    if ((flags & SDL_OPENGL) == 0 || surface == nullptr)
        return surface;
    if (!OpenPicture(width, height)) {
        SDL_SetError("no OpenGL ES 3 without a window");
        return nullptr;
    }
    webgl_begin(width, height);
    return surface;
}

void SDL_GL_SwapBuffers(void) {
    webgl_end_frame();
}

void* SDL_GL_GetProcAddress(const char* name) {
    return webgl_entry_point(name);
}

} // extern "C"
