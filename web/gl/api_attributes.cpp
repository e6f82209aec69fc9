// The entry points that are about generic vertex attributes, and those of programs in assembly
// language, which share an extension with them.

#include "web/gl/context.h"
#include "web/gl/entrypoints.h"

#include <algorithm>
#include <limits>

#include <GL/glext.h>

namespace WebGL {

namespace {

bool IsIndex(GLuint index) {
    if (index < Slot::generics)
        return true;
    Current().errors.Raise(GL_INVALID_VALUE);
    return false;
}

void SetAttribute(GLuint index, const Vector4& value) {
    if (!IsIndex(index))
        return;
    const std::size_t slot = Slot::generic + index;
    Context& context = Current();
    if (context.immediate.Begun() && index == 0)
        context.immediate.AddVertex(value);
    else if (context.immediate.Begun())
        context.immediate.Set(slot, value);
    else
        context.lists.Do([=] { Current().current.values[slot] = value; });
}

template <class T, bool normalized>
float Component(T value) {
    if constexpr (normalized)
        return static_cast<float>(static_cast<double>(value) /
                                  static_cast<double>(std::numeric_limits<T>::max()));
    else
        return static_cast<float>(value);
}

template <class T, std::size_t count, bool normalized = false>
void SetFrom(GLuint index, const T* values) {
    Vector4 value = {0, 0, 0, 1};
    std::transform(values, values + count, value.begin(), Component<T, normalized>);
    SetAttribute(index, value);
}

template <class T, class... Rest>
void SetOne(GLuint index, T first, Rest... rest) {
    const T values[] = {first, rest...};
    SetFrom<T, 1 + sizeof...(rest)>(index, values);
}

void SetNormalizedBytes(GLuint index, GLubyte x, GLubyte y, GLubyte z, GLubyte w) {
    const GLubyte values[] = {x, y, z, w};
    SetFrom<GLubyte, 4, true>(index, values);
}

void PointAttribute(GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                    const void* pointer) {
    if (!IsIndex(index))
        return;
    VertexArray& array = Current().arrays[Slot::generic + index];
    array = {array.enabled, size, type, normalized != 0, stride, pointer, Current().buffers.array};
}

template <bool on>
void EnableAttribute(GLuint index) {
    if (IsIndex(index))
        Current().arrays[Slot::generic + index].enabled = on;
}

GLboolean IsProgram(GLuint) {
    return GL_FALSE;
}

// What it deletes are programs in assembly language, of which there are none. Those of GLSL it
// leaves alone, whatever their names.
void DeletePrograms(GLsizei, const GLuint*) {}

void GenPrograms(GLsizei count, GLuint* names) {
    std::fill_n(names, count, 0U);
    Refuse();
}

template <class T>
void GetAttribute(GLuint index, GLenum name, T* values) {
    if (!IsIndex(index))
        return;
    const VertexArray& array = Current().arrays[Slot::generic + index];
    const Vector4& current = Current().current.values[Slot::generic + index];
    if (name == GL_CURRENT_VERTEX_ATTRIB)
        std::transform(current.begin(), current.end(), values,
                       [](float value) { return static_cast<T>(value); });
    else if (name == GL_VERTEX_ATTRIB_ARRAY_ENABLED)
        *values = static_cast<T>(array.enabled ? 1 : 0);
    else if (name == GL_VERTEX_ATTRIB_ARRAY_SIZE)
        *values = static_cast<T>(array.size);
    else if (name == GL_VERTEX_ATTRIB_ARRAY_STRIDE)
        *values = static_cast<T>(array.stride);
    else if (name == GL_VERTEX_ATTRIB_ARRAY_TYPE)
        *values = static_cast<T>(array.type);
    else
        Current().errors.Raise(GL_INVALID_ENUM);
}

void GetAttributePointer(GLuint index, GLenum, void** pointer) {
    if (IsIndex(index))
        *pointer = const_cast<void*>(Current().arrays[Slot::generic + index].pointer);
}

#define WEBGL_BOTH(name, function) Row(name, function), Row(name "ARB", function)
#define WEBGL_REFUSED(name, type) Row(name, Refused<type>::Call)

using D = GLdouble;
using F = GLfloat;
using S = GLshort;

const EntryPoint attributeRows[] = {
    WEBGL_BOTH("glVertexAttrib1d", (SetOne<D>)),
    WEBGL_BOTH("glVertexAttrib1f", (SetOne<F>)),
    WEBGL_BOTH("glVertexAttrib1s", (SetOne<S>)),
    WEBGL_BOTH("glVertexAttrib2d", (SetOne<D, D>)),
    WEBGL_BOTH("glVertexAttrib2f", (SetOne<F, F>)),
    WEBGL_BOTH("glVertexAttrib2s", (SetOne<S, S>)),
    WEBGL_BOTH("glVertexAttrib3d", (SetOne<D, D, D>)),
    WEBGL_BOTH("glVertexAttrib3f", (SetOne<F, F, F>)),
    WEBGL_BOTH("glVertexAttrib3s", (SetOne<S, S, S>)),
    WEBGL_BOTH("glVertexAttrib4d", (SetOne<D, D, D, D>)),
    WEBGL_BOTH("glVertexAttrib4f", (SetOne<F, F, F, F>)),
    WEBGL_BOTH("glVertexAttrib4s", (SetOne<S, S, S, S>)),
    WEBGL_BOTH("glVertexAttrib1dv", (SetFrom<D, 1>)),
    WEBGL_BOTH("glVertexAttrib1fv", (SetFrom<F, 1>)),
    WEBGL_BOTH("glVertexAttrib1sv", (SetFrom<S, 1>)),
    WEBGL_BOTH("glVertexAttrib2dv", (SetFrom<D, 2>)),
    WEBGL_BOTH("glVertexAttrib2fv", (SetFrom<F, 2>)),
    WEBGL_BOTH("glVertexAttrib2sv", (SetFrom<S, 2>)),
    WEBGL_BOTH("glVertexAttrib3dv", (SetFrom<D, 3>)),
    WEBGL_BOTH("glVertexAttrib3fv", (SetFrom<F, 3>)),
    WEBGL_BOTH("glVertexAttrib3sv", (SetFrom<S, 3>)),
    WEBGL_BOTH("glVertexAttrib4bv", (SetFrom<GLbyte, 4>)),
    WEBGL_BOTH("glVertexAttrib4dv", (SetFrom<D, 4>)),
    WEBGL_BOTH("glVertexAttrib4fv", (SetFrom<F, 4>)),
    WEBGL_BOTH("glVertexAttrib4iv", (SetFrom<GLint, 4>)),
    WEBGL_BOTH("glVertexAttrib4sv", (SetFrom<S, 4>)),
    WEBGL_BOTH("glVertexAttrib4ubv", (SetFrom<GLubyte, 4>)),
    WEBGL_BOTH("glVertexAttrib4uiv", (SetFrom<GLuint, 4>)),
    WEBGL_BOTH("glVertexAttrib4usv", (SetFrom<GLushort, 4>)),
    WEBGL_BOTH("glVertexAttrib4Nbv", (SetFrom<GLbyte, 4, true>)),
    WEBGL_BOTH("glVertexAttrib4Niv", (SetFrom<GLint, 4, true>)),
    WEBGL_BOTH("glVertexAttrib4Nsv", (SetFrom<S, 4, true>)),
    WEBGL_BOTH("glVertexAttrib4Nub", SetNormalizedBytes),
    WEBGL_BOTH("glVertexAttrib4Nubv", (SetFrom<GLubyte, 4, true>)),
    WEBGL_BOTH("glVertexAttrib4Nuiv", (SetFrom<GLuint, 4, true>)),
    WEBGL_BOTH("glVertexAttrib4Nusv", (SetFrom<GLushort, 4, true>)),
    WEBGL_BOTH("glVertexAttribPointer", PointAttribute),
    WEBGL_BOTH("glEnableVertexAttribArray", EnableAttribute<true>),
    WEBGL_BOTH("glDisableVertexAttribArray", EnableAttribute<false>),
    WEBGL_BOTH("glGetVertexAttribdv", GetAttribute<GLdouble>),
    WEBGL_BOTH("glGetVertexAttribfv", GetAttribute<GLfloat>),
    WEBGL_BOTH("glGetVertexAttribiv", GetAttribute<GLint>),
    WEBGL_BOTH("glGetVertexAttribPointerv", GetAttributePointer),
    Row("glDeleteProgramsARB", DeletePrograms),
    Row("glGenProgramsARB", GenPrograms),
    Row("glIsProgramARB", IsProgram),
    WEBGL_REFUSED("glBindProgramARB", PFNGLBINDPROGRAMARBPROC),
    WEBGL_REFUSED("glProgramStringARB", PFNGLPROGRAMSTRINGARBPROC),
    WEBGL_REFUSED("glProgramEnvParameter4dARB", PFNGLPROGRAMENVPARAMETER4DARBPROC),
    WEBGL_REFUSED("glProgramEnvParameter4dvARB", PFNGLPROGRAMENVPARAMETER4DVARBPROC),
    WEBGL_REFUSED("glProgramEnvParameter4fARB", PFNGLPROGRAMENVPARAMETER4FARBPROC),
    WEBGL_REFUSED("glProgramEnvParameter4fvARB", PFNGLPROGRAMENVPARAMETER4FVARBPROC),
    WEBGL_REFUSED("glProgramLocalParameter4dARB", PFNGLPROGRAMLOCALPARAMETER4DARBPROC),
    WEBGL_REFUSED("glProgramLocalParameter4dvARB", PFNGLPROGRAMLOCALPARAMETER4DVARBPROC),
    WEBGL_REFUSED("glProgramLocalParameter4fARB", PFNGLPROGRAMLOCALPARAMETER4FARBPROC),
    WEBGL_REFUSED("glProgramLocalParameter4fvARB", PFNGLPROGRAMLOCALPARAMETER4FVARBPROC),
    WEBGL_REFUSED("glGetProgramEnvParameterdvARB", PFNGLGETPROGRAMENVPARAMETERDVARBPROC),
    WEBGL_REFUSED("glGetProgramEnvParameterfvARB", PFNGLGETPROGRAMENVPARAMETERFVARBPROC),
    WEBGL_REFUSED("glGetProgramLocalParameterdvARB", PFNGLGETPROGRAMLOCALPARAMETERDVARBPROC),
    WEBGL_REFUSED("glGetProgramLocalParameterfvARB", PFNGLGETPROGRAMLOCALPARAMETERFVARBPROC),
    WEBGL_REFUSED("glGetProgramivARB", PFNGLGETPROGRAMIVARBPROC),
    WEBGL_REFUSED("glGetProgramStringARB", PFNGLGETPROGRAMSTRINGARBPROC),
};

} // namespace

std::span<const EntryPoint> AttributeEntryPoints() {
    return attributeRows;
}

} // namespace WebGL
