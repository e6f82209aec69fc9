// SDL 1.2 in a page, as far as demo, gallery and scenes of one's own call it: a picture instead of
// a window, keys, and a mouse that turns an eye.

#include "web/gl/webgl.h"
#include "web/shell/page.h"

#include <SDL.h>

#include <algorithm>
#include <array>

namespace {

struct Pointer {
    int x, y;
};
Pointer pointer{0, 0}; ///< in pixels; a browser tells motions, which go on from where it was put

struct NamedKey {
    int page;
    SDLKey key;
};
constexpr std::array namedKeys = {
    NamedKey{PAGE_KEY_UPWARD, SDLK_UP}, NamedKey{PAGE_KEY_DOWNWARD, SDLK_DOWN},
    NamedKey{PAGE_KEY_LEFT, SDLK_LEFT}, NamedKey{PAGE_KEY_RIGHT, SDLK_RIGHT}};

/// Keys with a character have its number in SDL too.
SDLKey KeyOf(int code) {
    const auto* const named = std::find_if(namedKeys.begin(), namedKeys.end(),
                                           [code](NamedKey k) { return k.page == code; });
    return named == namedKeys.end() ? static_cast<SDLKey>(code) : named->key;
}

void Press(SDL_KeyboardEvent& event, bool down, int code) {
    event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    event.keysym.sym = KeyOf(code);
}

void Move(SDL_MouseMotionEvent& event, int right, int down) {
    pointer = {pointer.x + right, pointer.y + down};
    event.type = SDL_MOUSEMOTION;
    event.x = pointer.x;
    event.y = pointer.y;
    event.xrel = right;
    event.yrel = down;
}

} // namespace

extern "C" {

int SDL_Init(Uint32) {
    return 0;
}

SDL_Surface* SDL_SetVideoMode(int width, int height, int, Uint32) {
    static SDL_Surface surface{};
    if (!page_open_picture(width, height))
        return nullptr;
    webgl_begin(width, height);
    pointer = {width / 2, height / 2};
    return &surface;
}

int SDL_ShowCursor(int) {
    return SDL_DISABLE;
}

void SDL_WM_SetCaption(const char*, const char*) {}

int SDL_PollEvent(SDL_Event* event) {
    std::array<int, 2> values{};
    const int kind = page_next_event(values.data());
    *event = {};
    if (kind == PAGE_MOUSE_MOTION)
        Move(event->motion, values[0], values[1]);
    else if (kind != 0)
        Press(event->key, kind == PAGE_KEY_DOWN, values[0]);
    return kind == 0 ? 0 : 1;
}

void SDL_WarpMouse(Uint16 x, Uint16 y) {
    pointer = {x, y};
}

int SDL_EnableKeyRepeat(int, int) {
    return 0; // as the browser repeats them
}

int SDL_GL_SetAttribute(SDL_GLattr, int) {
    return 0;
}

void SDL_GL_SwapBuffers() {
    webgl_end_frame();
    page_next_frame();
}

const char* SDL_GetError() {
    return "this browser has no WebGL 2";
}

void SDL_Quit() {}
}
