// The engine in a window of SDL 2. Escape, or closing the window, ends it.
// With an argument: no show, but a picture of the scene in the file of that name.

#include "gallery/windows/scene.h"

#include <cstdio>

#include <SDL.h>

namespace {

bool AskedToEnd() {
    for (SDL_Event event; SDL_PollEvent(&event) != 0;)
        if (event.type == SDL_QUIT ||
            (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE))
            return true;
    return false;
}

// A context of the default kind has the fixed pipeline that the engine draws with; a core profile,
// and a context of OpenGL ES, has not.
int ShowIn(SDL_Window* window, const char* picture) {
    const SDL_GLContext context = SDL_GL_CreateContext(window);
    if (context == nullptr) {
        std::fprintf(stderr, "no context: %s\n", SDL_GetError());
        return 1;
    }
    const int status = Show(picture, AskedToEnd, [&] { SDL_GL_SwapWindow(window); });
    SDL_GL_DeleteContext(context);
    return status;
}

} // namespace

int main(int count, char** arguments) {
    SDL_Init(SDL_INIT_VIDEO);
    SDL_Window* const window =
        SDL_CreateWindow("Vell", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, Scene::width,
                         Scene::height, SDL_WINDOW_OPENGL);
    if (window == nullptr)
        std::fprintf(stderr, "no window: %s\n", SDL_GetError());
    const int status = window == nullptr ? 1 : ShowIn(window, PictureAskedFor(count, arguments));
    SDL_Quit();
    return status;
}
