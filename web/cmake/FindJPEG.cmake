# Found before CMake's own module: the one that web/libraries builds.
if(NOT TARGET JPEG::JPEG)
    add_library(JPEG::JPEG ALIAS web_jpeg)
endif()
set(JPEG_FOUND TRUE)
