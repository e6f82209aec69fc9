# Found before CMake's own module: the one that web/libraries builds.
if(NOT TARGET PNG::PNG)
    add_library(PNG::PNG ALIAS web_png)
endif()
set(PNG_FOUND TRUE)
