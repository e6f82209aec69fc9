// The entry points that are about uniforms.

#include "web/gl/context.h"
#include "web/gl/entrypoints.h"
#include "web/gl/glsl/names.h"
#include "web/gl/stateuniforms.h"

#include <algorithm>
#include <cstring>

#include <GL/glext.h>

namespace WebGL {

namespace {

/// Stores values in the program in use; OpenGL ignores the location -1, which names have that the
/// program does not use.
template <class T>
void Store(GLint location, GLsizei count, GLint components, const T* values) {
    Program* const program = Current().programs.Used();
    constexpr bool floats = std::is_same_v<T, GLfloat>;
    if (program == nullptr || count < 0)
        Current().errors.Raise(program == nullptr ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
    else if (location != -1 && !program->Store(location, count, components, floats, values))
        Current().errors.Raise(GL_INVALID_OPERATION);
}

template <class T, class... Rest>
void StoreOne(GLint location, T first, Rest... rest) {
    const T values[] = {first, rest...};
    Store(location, 1, static_cast<GLint>(1 + sizeof...(rest)), values);
}

template <class T, GLint components>
void StoreMany(GLint location, GLsizei count, const T* values) {
    Store(location, count, components, values);
}

/// OpenGL ES takes no matrix row by row; it is turned here.
template <GLint side>
void StoreMatrix(GLint location, GLsizei count, GLboolean transpose, const GLfloat* values) {
    constexpr GLint size = side * side;
    if (transpose == GL_FALSE) {
        Store(location, count, size, values);
        return;
    }
    std::vector<GLfloat> turned(static_cast<std::size_t>(size * std::max(count, 0)));
    for (std::size_t i = 0; i < turned.size(); ++i) {
        const std::size_t within = i % size;
        turned[i] = values[i - within + within % side * side + within / side];
    }
    Store(location, count, size, turned.data());
}

Program* ProgramAt(GLuint handle) {
    Program* const program = Current().programs.FindProgram(handle);
    if (program == nullptr || !program->linked)
        Current().errors.Raise(program == nullptr ? GL_INVALID_VALUE : GL_INVALID_OPERATION);
    return program;
}

GLint GetUniformLocation(GLuint handle, const GLchar* name) {
    const Program* const program = ProgramAt(handle);
    return program != nullptr ? program->Find(name) : -1;
}

void GetActiveUniform(GLuint handle, GLuint index, GLsizei room, GLsizei* length, GLint* size,
                      GLenum* type, GLchar* name) {
    const Program* const program = ProgramAt(handle);
    if (program == nullptr || index >= program->uniforms.size()) {
        Current().errors.Raise(GL_INVALID_VALUE);
        return;
    }
    const Uniform& uniform = program->uniforms[index];
    const std::string text = Glsl::OriginalPath(uniform.name);
    *size = uniform.size;
    *type = uniform.type;
    const std::size_t written = std::min(text.size(), static_cast<std::size_t>(room - 1));
    std::copy_n(text.data(), written, name);
    name[written] = '\0';
    if (length != nullptr)
        *length = static_cast<GLsizei>(written);
}

/// Answers in the type that is asked for; the stored words are of the uniform's own.
template <class T>
void GetUniform(GLuint handle, GLint location, T* values) {
    const Program* const program = ProgramAt(handle);
    if (program == nullptr || location < 0 ||
        static_cast<std::size_t>(location) >= program->locations.size()) {
        Current().errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const Location& at = program->locations[static_cast<std::size_t>(location)];
    const Uniform& uniform = program->uniforms[at.uniform];
    const GLint components = ComponentsOf(uniform.type);
    const bool floats = Takes(uniform.type, components, true);
    for (GLint i = 0; i < components; ++i) {
        const std::uint32_t word =
            uniform.words[static_cast<std::size_t>(at.element * components + i)];
        GLfloat number = 0;
        std::memcpy(&number, &word, sizeof(number));
        values[i] = floats ? static_cast<T>(number) : static_cast<T>(static_cast<GLint>(word));
    }
}

} // namespace

#define WEBGL_BOTH(name, function) Row(name, function), Row(name "ARB", function)

std::span<const EntryPoint> UniformEntryPoints() {
    using F = GLfloat;
    using I = GLint;
    static const EntryPoint rows[] = {
        WEBGL_BOTH("glUniform1f", (StoreOne<F>)),
        WEBGL_BOTH("glUniform2f", (StoreOne<F, F>)),
        WEBGL_BOTH("glUniform3f", (StoreOne<F, F, F>)),
        WEBGL_BOTH("glUniform4f", (StoreOne<F, F, F, F>)),
        WEBGL_BOTH("glUniform1i", (StoreOne<I>)),
        WEBGL_BOTH("glUniform2i", (StoreOne<I, I>)),
        WEBGL_BOTH("glUniform3i", (StoreOne<I, I, I>)),
        WEBGL_BOTH("glUniform4i", (StoreOne<I, I, I, I>)),
        WEBGL_BOTH("glUniform1fv", (StoreMany<F, 1>)),
        WEBGL_BOTH("glUniform2fv", (StoreMany<F, 2>)),
        WEBGL_BOTH("glUniform3fv", (StoreMany<F, 3>)),
        WEBGL_BOTH("glUniform4fv", (StoreMany<F, 4>)),
        WEBGL_BOTH("glUniform1iv", (StoreMany<I, 1>)),
        WEBGL_BOTH("glUniform2iv", (StoreMany<I, 2>)),
        WEBGL_BOTH("glUniform3iv", (StoreMany<I, 3>)),
        WEBGL_BOTH("glUniform4iv", (StoreMany<I, 4>)),
        WEBGL_BOTH("glUniformMatrix2fv", StoreMatrix<2>),
        WEBGL_BOTH("glUniformMatrix3fv", StoreMatrix<3>),
        WEBGL_BOTH("glUniformMatrix4fv", StoreMatrix<4>),
        WEBGL_BOTH("glGetUniformLocation", GetUniformLocation),
        WEBGL_BOTH("glGetActiveUniform", GetActiveUniform),
        WEBGL_BOTH("glGetUniformfv", GetUniform<GLfloat>),
        WEBGL_BOTH("glGetUniformiv", GetUniform<GLint>),
    };
    return rows;
}

} // namespace WebGL
