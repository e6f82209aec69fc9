#include "web/gl/es.h"

#ifndef __EMSCRIPTEN__
#include <EGL/egl.h>
#endif

namespace WebGL::Es {

unsigned long calls = 0;

#ifdef __EMSCRIPTEN__

void Fetch() {}

#else

#define WEBGL_DEFINE_ES(result, name, parameters, arguments)                                       \
    result(*name##Address) parameters = nullptr;
WEBGL_ES_CALLS(WEBGL_DEFINE_ES)

#define WEBGL_FETCH_ES(result, name, parameters, arguments)                                        \
    name##Address = reinterpret_cast<result(*) parameters>(eglGetProcAddress("gl" #name));

void Fetch() {
    WEBGL_ES_CALLS(WEBGL_FETCH_ES)
}

#endif

} // namespace WebGL::Es
