# Found before CMake's own module: Emscripten has SDL's header, and web/sdl the calls.
set(SDL_INCLUDE_DIR ${CMAKE_CURRENT_LIST_DIR}/../sdl)
set(SDL_LIBRARY web_sdl)
set(SDL_FOUND TRUE)
