# Found before CMake's own module: all that asks for OpenGL gets the one of web/gl.
foreach(part GL GLX GLU)
    if(NOT TARGET OpenGL::${part})
        add_library(OpenGL::${part} INTERFACE IMPORTED GLOBAL)
        target_link_libraries(OpenGL::${part} INTERFACE vell_web_gl)
    endif()
endforeach()
set(OpenGL_FOUND TRUE)
set(OPENGL_FOUND TRUE)
