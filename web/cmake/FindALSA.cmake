# Found before CMake's own module: a page has no ALSA, and web/sound plays without.
if(NOT TARGET ALSA::ALSA)
    add_library(ALSA::ALSA INTERFACE IMPORTED GLOBAL)
endif()
set(ALSA_FOUND TRUE)
