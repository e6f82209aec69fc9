// Preloaded under nimbrel (LD_PRELOAD), it shows the show as wide as the screen. It stands between
// the program and two functions:
//
//   SDL_SetVideoMode    opens a larger window, without a frame, in the middle of the screen
//   SDL_GL_SwapBuffers  enlarges the finished picture to the window before it is shown
//
// The program draws as ever: its picture, in its own size, lies in the lower left corner of the
// window's back buffer. Every pixel of the screen gets the colour of the one pixel of the picture
// that lies under its middle.

#include "tools/big/enlargement.h"
#include "tools/big/screen.h"

#include <SDL.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include <dlfcn.h>

namespace {

std::unique_ptr<Big::Enlargement> enlargement;

/// The function of this name that the program would have called without this library.
template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Where SDL puts its next window, unless the user has a mind of his own.
void PlaceWindow(const Big::Area& area) {
    constexpr int unlessSet = 0;
    const std::string place = std::to_string(area.x) + "," + std::to_string(area.y);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the demo has no thread yet when it opens its window
    setenv("SDL_VIDEO_WINDOW_POS", place.c_str(), unlessSet);
}

} // namespace

extern "C" SDL_Surface* SDL_SetVideoMode(int width, int height, int bits, Uint32 flags) {
    static auto* const next = Next<SDL_Surface*(int, int, int, Uint32)>("SDL_SetVideoMode");
    const Big::Area window = Big::Enlarged(width, height, Big::ViewersScreen());
    if (window.width == width)
        return next(width, height, bits, flags);
    PlaceWindow(window);
    SDL_Surface* const surface = next(window.width, window.height, bits, flags | SDL_NOFRAME);
    if (!surface)
        return nullptr;
    enlargement = Big::Enlargement::Make({width, height}, {window.width, window.height});
    if (enlargement)
        return surface;
    std::cerr << "This OpenGL has no framebuffer blits: the picture keeps its size.\n";
    return next(width, height, bits, flags);
}

extern "C" void SDL_GL_SwapBuffers() {
    static auto* const next = Next<void()>("SDL_GL_SwapBuffers");
    if (enlargement)
        enlargement->Draw();
    next();
}
