// Emscripten's header of SDL 1.2, and what it lacks of it.
#pragma once

#include_next <SDL.h>

#define SDL_GL_SWAP_CONTROL SDL_GL_ACCELERATED_VISUAL // a page's frames are always the screen's
