// SDL 1.2, as far as the demo calls it, in a page: a picture instead of a window, and of all events
// the one that the demo looks for.

#include "web/gl/webgl.h"
#include "web/shell/page.h"

#include <SDL.h>

extern "C" {

int SDL_Init(Uint32) {
    return 0;
}

SDL_Surface* SDL_SetVideoMode(int width, int height, int, Uint32) {
    static SDL_Surface surface{};
    if (!page_open_picture(width, height))
        return nullptr;
    webgl_begin(width, height);
    return &surface;
}

int SDL_ShowCursor(int) {
    return SDL_DISABLE;
}

void SDL_WM_SetCaption(const char*, const char*) {}

int SDL_PollEvent(SDL_Event* event) {
    if (!page_escape_pressed())
        return 0;
    event->type = SDL_KEYDOWN;
    event->key.keysym.sym = SDLK_ESCAPE;
    return 1;
}

void SDL_WarpMouse(Uint16, Uint16) {}

void SDL_GL_SwapBuffers() {
    webgl_end_frame();
    page_next_frame();
}

const char* SDL_GetError() {
    return "this browser has no WebGL 2";
}

void SDL_Quit() {}
}
