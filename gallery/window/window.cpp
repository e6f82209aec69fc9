#include "gallery/window/window.h"

#include "engine/core/clock.h"
#include "engine/core/core.h"
#include "gallery/window/picture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Gallery {

namespace {

constexpr int lastPictureFrame = 2;

void EndWithoutOpenGl() {
    std::fprintf(stderr, "No OpenGL here: %s (Vell_log.html may know more)\n", SDL_GetError());
    SDL_Quit();
    std::exit(1); // NOLINT(concurrency-mt-unsafe): there is no thread yet
}

} // namespace

Window::Window(const std::string& caption) {
    SDL_Init(SDL_INIT_VIDEO);
    SDL_GL_SetAttribute(SDL_GL_SWAP_CONTROL, 1);
    if (SDL_SetVideoMode(width, height, 0, SDL_OPENGL) == nullptr ||
        !Vell::InitEngine(Vell::ivec2(width, height)))
        EndWithoutOpenGl();
    Vell::SetRatio(static_cast<float>(width) / static_cast<float>(height));
    SDL_EnableKeyRepeat(100, 15); // milliseconds; a key held down flies on
    SetCaption(caption);
}

Window::~Window() {
    SDL_Quit();
}

bool Window::NextFrame() {
    if (MakesPicture()) {
        if (frame == lastPictureFrame)
            SavePicture(width, height);
        else if (frame == 0)
            GoToMoment();
    } else {
        if (frame > 0)
            SDL_GL_SwapBuffers();
        TakeEvents();
    }
    const double now = Vell::Clock().GetTime();
    if (frame++ == 0 && !MakesPicture())
        begin = now;
    const auto sinceBegin = static_cast<float>(now - begin);
    frameTime = frame == 1 ? 0.0f : sinceBegin - time;
    time = sinceBegin;
    return !ended && !(MakesPicture() && frame > lastPictureFrame);
}

bool Window::Pressed(SDLKey key) const {
    return std::any_of(events.begin(), events.end(), [&](const SDL_Event& event) {
        return event.type == SDL_KEYDOWN && event.key.keysym.sym == key;
    });
}

void Window::SetCaption(const std::string& caption) {
    SDL_WM_SetCaption(caption.c_str(), nullptr);
}

void Window::TakeEvents() {
    events.clear();
    for (SDL_Event event; SDL_PollEvent(&event) != 0;)
        Take(event);
    ended = ended || Pressed(SDLK_ESCAPE);
}

void Window::Take(const SDL_Event& event) {
    if (event.type == SDL_QUIT)
        ended = true;
    if (event.type == SDL_MOUSEMOTION)
        std::erase_if(events, [](const SDL_Event& e) { return e.type == SDL_MOUSEMOTION; });
    events.push_back(event);
}

} // namespace Gallery
