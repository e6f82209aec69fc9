#include "web/gl/errors.h"

#include "web/gl/es.h"

#include <utility>

namespace WebGL {

void Errors::Raise(GLenum error) {
    if (raised == GL_NO_ERROR)
        raised = error;
}

GLenum Errors::Take() {
    if (raised != GL_NO_ERROR || !suspected)
        return std::exchange(raised, static_cast<GLenum>(GL_NO_ERROR));
    const GLenum error = Es::GetError();
    suspected = error != GL_NO_ERROR; // there may be more
    return error;
}

} // namespace WebGL
