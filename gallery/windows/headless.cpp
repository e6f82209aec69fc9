// The engine without any window and without any X server: EGL's surfaceless platform and a buffer
// in memory. Writes a picture of the scene into the file that its argument names.

#include "gallery/windows/scene.h"

#include <cstdio>

#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace {

/// Makes a context current that draws into a buffer of the picture's size. False when there is none
/// to be had.
bool MakeContext(EGLDisplay display) {
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_NONE};
    const EGLint size[] = {EGL_WIDTH, Scene::width, EGL_HEIGHT, Scene::height, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint found = 0;
    if (eglInitialize(display, nullptr, nullptr) == EGL_FALSE ||
        eglChooseConfig(display, wanted, &config, 1, &found) == EGL_FALSE || found == 0)
        return false;
    eglBindAPI(EGL_OPENGL_API);
    const EGLSurface buffer = eglCreatePbufferSurface(display, config, size);
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    return eglMakeCurrent(display, buffer, buffer, context) == EGL_TRUE;
}

} // namespace

int main(int count, char** arguments) {
    const char* const picture = PictureAskedFor(count, arguments);
    if (picture == nullptr) {
        std::fprintf(stderr, "the name of the picture, please\n");
        return 2;
    }
    const EGLDisplay display =
        eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!MakeContext(display)) {
        std::fprintf(stderr, "no context: EGL error 0x%x\n", eglGetError());
        return 1;
    }
    const int status = WritePicture(picture);
    eglTerminate(display);
    return status;
}
