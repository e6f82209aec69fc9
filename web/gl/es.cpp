#include "web/gl/es.h"

#ifndef __EMSCRIPTEN__
#include <EGL/egl.h>
#include <cstring>
#endif

namespace WebGL::Es {

unsigned long calls = 0;

#ifdef __EMSCRIPTEN__

void Fetch() {}

bool ReadBuffer(GLenum, GLintptr, GLsizeiptr, void*) {
    return false;
}

#else

#define WEBGL_DEFINE_ES(result, name, parameters, arguments)                                       \
    result(*name##Address) parameters = nullptr;
WEBGL_ES_CALLS(WEBGL_DEFINE_ES)

#define WEBGL_FETCH_ES(result, name, parameters, arguments)                                        \
    name##Address = reinterpret_cast<result(*) parameters>(eglGetProcAddress("gl" #name));

void Fetch() {
    WEBGL_ES_CALLS(WEBGL_FETCH_ES)
}

bool ReadBuffer(GLenum target, GLintptr offset, GLsizeiptr size, void* to) {
    static const auto map =
        reinterpret_cast<PFNGLMAPBUFFERRANGEPROC>(eglGetProcAddress("glMapBufferRange"));
    static const auto unmap =
        reinterpret_cast<PFNGLUNMAPBUFFERPROC>(eglGetProcAddress("glUnmapBuffer"));
    const void* const from = map(target, offset, size, GL_MAP_READ_BIT);
    if (from == nullptr)
        return false;
    std::memcpy(to, from, static_cast<std::size_t>(size));
    return unmap(target) == GL_TRUE;
}

#endif

} // namespace WebGL::Es
