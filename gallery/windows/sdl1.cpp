// The engine in a window of SDL 1.2. Escape, or closing the window, ends it.
// With an argument: no show, but a picture of the scene in the file of that name.

#include "gallery/windows/scene.h"

#include <cstdio>
#include <exception>

#include <SDL.h>

namespace {

bool AskedToEnd() {
    for (SDL_Event event; SDL_PollEvent(&event) != 0;)
        if (event.type == SDL_QUIT ||
            (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE))
            return true;
    return false;
}

void Run(const char* picture) {
    Scene scene;
    if (picture != nullptr)
        return DrawPicture(scene, picture);
    while (!AskedToEnd()) {
        scene.Draw();
        SDL_GL_SwapBuffers();
    }
}

} // namespace

int main(int count, char** arguments) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0 ||
        SDL_SetVideoMode(Scene::width, Scene::height, 0, SDL_OPENGL) == nullptr) {
        std::fprintf(stderr, "no window: %s\n", SDL_GetError());
        return 1;
    }
    int status = 0;
    try {
        Run(PictureAskedFor(count, arguments));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        status = 1;
    }
    SDL_Quit();
    return status;
}
