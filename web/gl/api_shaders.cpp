// The entry points that are about shaders and programs.

#include "web/gl/context.h"
#include "web/gl/entrypoints.h"
#include "web/gl/glsl/names.h"
#include "web/gl/stateuniforms.h"

#include <algorithm>
#include <cstring>
#include <string>

#include <GL/glext.h>

namespace WebGL {

namespace {

Errors& Wrong() {
    return Current().errors;
}

/// The object of a handle; raises an error where it is none of this kind.
Shader* ShaderAt(GLuint handle) {
    Shader* const shader = Current().programs.FindShader(handle);
    if (shader == nullptr)
        Wrong().Raise(GL_INVALID_VALUE);
    return shader;
}

Program* ProgramAt(GLuint handle) {
    Program* const program = Current().programs.FindProgram(handle);
    if (program == nullptr)
        Wrong().Raise(GL_INVALID_VALUE);
    return program;
}

/// Writes a text as OpenGL does: cut off where the room ends, and ended.
void Write(const std::string& text, GLsizei room, GLsizei* length, char* to) {
    const auto written =
        room > 0 ? std::min(text.size(), static_cast<std::size_t>(room - 1)) : std::size_t{0};
    if (room > 0) {
        std::copy_n(text.data(), written, to);
        to[written] = '\0';
    }
    if (length != nullptr)
        *length = static_cast<GLsizei>(written);
}

/// As its length is asked for: with the end, and 0 for no text.
GLint LengthOf(const std::string& text) {
    return text.empty() ? 0 : static_cast<GLint>(text.size() + 1);
}

GLuint CreateShader(GLenum type) {
    if (type != GL_VERTEX_SHADER && type != GL_FRAGMENT_SHADER) {
        Wrong().Raise(GL_INVALID_ENUM);
        return 0;
    }
    return Current().programs.AddShader(type == GL_VERTEX_SHADER ? Glsl::Stage::Vertex
                                                                 : Glsl::Stage::Fragment);
}

GLuint CreateProgram() {
    return Current().programs.AddProgram();
}

void ShaderSource(GLuint handle, GLsizei count, const GLchar** texts, const GLint* lengths) {
    Shader* const shader = ShaderAt(handle);
    if (shader == nullptr)
        return;
    shader->text.clear();
    shader->hasText = true;
    for (GLsizei i = 0; i < count; ++i) {
        const bool given = lengths != nullptr && lengths[i] >= 0;
        shader->text.append(texts[i],
                            given ? static_cast<std::size_t>(lengths[i]) : std::strlen(texts[i]));
    }
}

void CompileShader(GLuint handle) {
    if (Shader* const shader = ShaderAt(handle))
        Current().programs.Compile(*shader);
}

void AttachObject(GLuint program, GLuint shader) {
    Program* const to = ProgramAt(program);
    if (to != nullptr && ShaderAt(shader) != nullptr)
        Current().programs.Attach(*to, shader);
}

void DetachObject(GLuint program, GLuint shader) {
    Program* const from = ProgramAt(program);
    if (from == nullptr)
        return;
    const auto found = std::find(from->attachedNames.begin(), from->attachedNames.end(), shader);
    if (found == from->attachedNames.end()) {
        Wrong().Raise(GL_INVALID_OPERATION);
        return;
    }
    from->attached.erase(from->attached.begin() + (found - from->attachedNames.begin()));
    from->attachedNames.erase(found);
}

void LinkProgram(GLuint handle) {
    if (Program* const program = ProgramAt(handle))
        program->Link();
}

void UseProgram(GLuint handle) {
    Programs& programs = Current().programs;
    const Program* const program = handle != 0 ? ProgramAt(handle) : nullptr;
    if (handle != 0 && program == nullptr)
        return;
    if (handle != 0 && !program->linked) {
        Wrong().Raise(GL_INVALID_OPERATION);
        return;
    }
    programs.Use(handle);
}

void DeleteObject(GLuint handle) {
    Programs& programs = Current().programs;
    if (handle == 0)
        return;
    if (programs.FindShader(handle) == nullptr && programs.FindProgram(handle) == nullptr)
        Wrong().Raise(GL_INVALID_VALUE);
    else
        programs.Delete(handle);
}

GLuint GetHandle(GLenum name) {
    if (name == GL_PROGRAM_OBJECT_ARB)
        return Current().programs.used;
    Wrong().Raise(GL_INVALID_ENUM);
    return 0;
}

void ShaderParameter(const Shader& shader, GLenum name, GLint* value) {
    const bool vertex = shader.stage == Glsl::Stage::Vertex;
    switch (name) {
    case GL_OBJECT_TYPE_ARB:
        *value = GL_SHADER_OBJECT_ARB;
        break;
    case GL_SHADER_TYPE:
        *value = vertex ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER;
        break;
    case GL_COMPILE_STATUS:
        *value = shader.compiled ? 1 : 0;
        break;
    case GL_INFO_LOG_LENGTH:
        *value = LengthOf(shader.log);
        break;
    case GL_SHADER_SOURCE_LENGTH:
        *value = shader.hasText ? static_cast<GLint>(shader.text.size() + 1) : 0;
        break;
    case GL_DELETE_STATUS:
        *value = shader.deleted ? 1 : 0;
        break;
    default:
        Wrong().Raise(GL_INVALID_ENUM);
    }
}

void ProgramParameter(const Program& program, GLenum name, GLint* value) {
    switch (name) {
    case GL_OBJECT_TYPE_ARB:
        *value = GL_PROGRAM_OBJECT_ARB;
        break;
    case GL_LINK_STATUS:
    case GL_VALIDATE_STATUS:
        *value = program.linked ? 1 : 0;
        break;
    case GL_INFO_LOG_LENGTH:
        *value = LengthOf(program.log);
        break;
    case GL_ATTACHED_SHADERS:
        *value = static_cast<GLint>(program.attached.size());
        break;
    case GL_ACTIVE_UNIFORMS:
        *value = static_cast<GLint>(program.uniforms.size());
        break;
    case GL_ACTIVE_ATTRIBUTES:
        *value = static_cast<GLint>(program.generic.size());
        break;
    case GL_DELETE_STATUS:
        *value = program.deleted ? 1 : 0;
        break;
    default:
        Wrong().Raise(GL_INVALID_ENUM);
    }
}

void GetObjectParameteriv(GLuint handle, GLenum name, GLint* value) {
    if (const Shader* const shader = Current().programs.FindShader(handle))
        ShaderParameter(*shader, name, value);
    else if (const Program* const program = ProgramAt(handle))
        ProgramParameter(*program, name, value);
}

void GetObjectParameterfv(GLuint handle, GLenum name, GLfloat* value) {
    GLint number = 0;
    GetObjectParameteriv(handle, name, &number);
    *value = static_cast<GLfloat>(number);
}

void GetInfoLog(GLuint handle, GLsizei room, GLsizei* length, GLchar* text) {
    if (const Shader* const shader = Current().programs.FindShader(handle))
        Write(shader->log, room, length, text);
    else if (const Program* const program = ProgramAt(handle))
        Write(program->log, room, length, text);
}

void GetShaderSource(GLuint handle, GLsizei room, GLsizei* length, GLchar* text) {
    if (const Shader* const shader = ShaderAt(handle))
        Write(shader->text, room, length, text);
}

void GetAttachedObjects(GLuint handle, GLsizei room, GLsizei* count, GLuint* objects) {
    const Program* const program = ProgramAt(handle);
    if (program == nullptr)
        return;
    const auto all = static_cast<GLsizei>(program->attachedNames.size());
    std::copy_n(program->attachedNames.begin(), std::min(room, all), objects);
    if (count != nullptr)
        *count = std::min(room, all);
}

void ValidateProgram(GLuint handle) {
    ProgramAt(handle);
}

void BindAttribLocation(GLuint handle, GLuint index, const GLchar* name) {
    if (Program* const program = ProgramAt(handle))
        program->boundAttributes[name] = index;
}

GLint GetAttribLocation(GLuint handle, const GLchar* name) {
    const Program* const program = ProgramAt(handle);
    if (program == nullptr)
        return -1;
    const auto found = program->generic.find(name);
    return found != program->generic.end() ? static_cast<GLint>(found->second) : -1;
}

void GetActiveAttrib(GLuint handle, GLuint index, GLsizei room, GLsizei* length, GLint* size,
                     GLenum* type, GLchar* name) {
    const Program* const program = ProgramAt(handle);
    if (program == nullptr || index >= program->generic.size()) {
        Wrong().Raise(GL_INVALID_VALUE);
        return;
    }
    *size = 1;
    *type = GL_FLOAT_VEC4;
    Write(std::next(program->generic.begin(), static_cast<std::ptrdiff_t>(index))->first, room,
          length, name);
}

} // namespace

std::span<const EntryPoint> ShaderEntryPoints() {
    static const EntryPoint rows[] = {
        Row("glAttachObjectARB", AttachObject),
        Row("glAttachShader", AttachObject),
        Row("glBindAttribLocation", BindAttribLocation),
        Row("glBindAttribLocationARB", BindAttribLocation),
        Row("glCompileShader", CompileShader),
        Row("glCompileShaderARB", CompileShader),
        Row("glCreateProgram", CreateProgram),
        Row("glCreateProgramObjectARB", CreateProgram),
        Row("glCreateShader", CreateShader),
        Row("glCreateShaderObjectARB", CreateShader),
        Row("glDeleteObjectARB", DeleteObject),
        Row("glDeleteProgram", DeleteObject),
        Row("glDeleteShader", DeleteObject),
        Row("glDetachObjectARB", DetachObject),
        Row("glDetachShader", DetachObject),
        Row("glGetActiveAttrib", GetActiveAttrib),
        Row("glGetActiveAttribARB", GetActiveAttrib),
        Row("glGetAttachedObjectsARB", GetAttachedObjects),
        Row("glGetAttachedShaders", GetAttachedObjects),
        Row("glGetAttribLocation", GetAttribLocation),
        Row("glGetAttribLocationARB", GetAttribLocation),
        Row("glGetHandleARB", GetHandle),
        Row("glGetInfoLogARB", GetInfoLog),
        Row("glGetObjectParameterfvARB", GetObjectParameterfv),
        Row("glGetObjectParameterivARB", GetObjectParameteriv),
        Row("glGetProgramInfoLog", GetInfoLog),
        Row("glGetProgramiv", GetObjectParameteriv),
        Row("glGetShaderInfoLog", GetInfoLog),
        Row("glGetShaderSource", GetShaderSource),
        Row("glGetShaderSourceARB", GetShaderSource),
        Row("glGetShaderiv", GetObjectParameteriv),
        Row("glLinkProgram", LinkProgram),
        Row("glLinkProgramARB", LinkProgram),
        Row("glShaderSource", ShaderSource),
        Row("glShaderSourceARB", ShaderSource),
        Row("glUseProgram", UseProgram),
        Row("glUseProgramObjectARB", UseProgram),
        Row("glValidateProgram", ValidateProgram),
        Row("glValidateProgramARB", ValidateProgram),
    };
    return rows;
}

} // namespace WebGL
