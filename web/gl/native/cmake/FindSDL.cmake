# Found before CMake's own module, natively: SDL with the window of web/gl/native in front of it.
find_package(PkgConfig REQUIRED)
pkg_check_modules(WEB_GL_SDL REQUIRED sdl)
set(SDL_INCLUDE_DIR ${WEB_GL_SDL_INCLUDE_DIRS})
set(SDL_LIBRARY vell_web_window)
set(SDL_FOUND TRUE)
