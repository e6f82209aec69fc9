#include "tools/stage/trace.h"

#include <GL/glx.h>

#include <cstring>

// The engine asks glXGetProcAddress() for its entry points; the linker leads that call here first
// (--wrap in CMakeLists.txt), and the engine gets the functions below for those that are watched.

namespace Stage {

Watcher* watching = nullptr;

void Watch(Watcher* watcher) {
    watching = watcher;
}

} // namespace Stage

namespace {

using Stage::watching;
using Function = void (*)();

// One of these types takes the place of one entry point. `real` is where it leads on.

struct BindFramebuffer {
    static inline Function real = nullptr;
    static void Call(GLenum target, GLuint framebuffer) {
        if (watching)
            watching->LeavingTarget();
        reinterpret_cast<PFNGLBINDFRAMEBUFFEREXTPROC>(real)(target, framebuffer);
    }
};

struct FramebufferTexture {
    static inline Function real = nullptr;
    static void Call(GLenum target, GLenum attachment, GLenum kind, GLuint texture, GLint level) {
        if (watching)
            watching->LeavingTarget();
        reinterpret_cast<PFNGLFRAMEBUFFERTEXTURE2DEXTPROC>(real)(target, attachment, kind, texture,
                                                                 level);
    }
};

template <class... Values>
struct SendUniform {
    static inline Function real = nullptr;
    static void Call(GLint location, Values... values) {
        reinterpret_cast<void (*)(GLint, Values...)>(real)(location, values...);
        if (watching)
            watching->UniformSent(location);
    }
};

struct Row {
    const char* name;
    Function inItsPlace;
    Function* real;
};

template <class Hook>
Row RowOf(const char* name) {
    return {name, reinterpret_cast<Function>(Hook::Call), &Hook::real};
}

const Row rows[] = {
    RowOf<BindFramebuffer>("glBindFramebufferEXT"),
    RowOf<FramebufferTexture>("glFramebufferTexture2DEXT"),
    RowOf<SendUniform<GLfloat>>("glUniform1fARB"),
    RowOf<SendUniform<GLfloat, GLfloat>>("glUniform2fARB"),
    RowOf<SendUniform<GLfloat, GLfloat, GLfloat>>("glUniform3fARB"),
    RowOf<SendUniform<GLfloat, GLfloat, GLfloat, GLfloat>>("glUniform4fARB"),
    RowOf<SendUniform<GLint>>("glUniform1iARB"),
    RowOf<SendUniform<GLint, GLint>>("glUniform2iARB"),
    RowOf<SendUniform<GLint, GLint, GLint>>("glUniform3iARB"),
    RowOf<SendUniform<GLint, GLint, GLint, GLint>>("glUniform4iARB"),
};

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {

Function __real_glXGetProcAddress(const GLubyte* name);
void __real_gluLookAt(GLdouble eyeX, GLdouble eyeY, GLdouble eyeZ, GLdouble x, GLdouble y,
                      GLdouble z, GLdouble upX, GLdouble upY, GLdouble upZ);

// What the driver does not have stays null, so that the engine notices.
Function __wrap_glXGetProcAddress(const GLubyte* name) {
    const Function real = __real_glXGetProcAddress(name);
    for (const Row& row : rows)
        if (real && std::strcmp(row.name, reinterpret_cast<const char*>(name)) == 0) {
            *row.real = real;
            return row.inItsPlace;
        }
    return real;
}

void __wrap_gluLookAt(GLdouble eyeX, GLdouble eyeY, GLdouble eyeZ, GLdouble x, GLdouble y,
                      GLdouble z, GLdouble upX, GLdouble upY, GLdouble upZ) {
    __real_gluLookAt(eyeX, eyeY, eyeZ, x, y, z, upX, upY, upZ);
    if (!watching)
        return;
    const double eye[] = {eyeX, eyeY, eyeZ};
    const double centre[] = {x, y, z};
    watching->LookingAt(eye, centre);
}
}
// NOLINTEND(bugprone-reserved-identifier)
