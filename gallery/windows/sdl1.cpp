// The engine in a window of SDL 1.2. Escape, or closing the window, ends it.
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

} // namespace

int main(int count, char** arguments) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0 ||
        SDL_SetVideoMode(Scene::width, Scene::height, 0, SDL_OPENGL) == nullptr) {
        std::fprintf(stderr, "no window: %s\n", SDL_GetError());
        return 1;
    }
    const int status = Show(PictureAskedFor(count, arguments), AskedToEnd, SDL_GL_SwapBuffers);
    SDL_Quit();
    return status;
}
