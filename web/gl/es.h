#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

/// The OpenGL ES 3 calls underneath, counted. They carry their names without "gl", because the
/// names with it are what this library itself is called by.
namespace WebGL::Es {

// X(result, name without "gl", parameters, arguments)
// clang-format off: one call a line
#define WEBGL_ES_CALLS(X)                                                                          \
    X(void, ActiveTexture, (GLenum unit), (unit))                                                  \
    X(void, AttachShader, (GLuint program, GLuint shader), (program, shader))                      \
    X(void, BindAttribLocation, (GLuint program, GLuint place, const GLchar* name),                \
      (program, place, name))                                                                      \
    X(void, BindBuffer, (GLenum target, GLuint buffer), (target, buffer))                          \
    X(void, BindFramebuffer, (GLenum target, GLuint framebuffer), (target, framebuffer))           \
    X(void, BindRenderbuffer, (GLenum target, GLuint renderbuffer), (target, renderbuffer))        \
    X(void, BindTexture, (GLenum target, GLuint texture), (target, texture))                       \
    X(void, BindVertexArray, (GLuint array), (array))                                              \
    X(void, BlendColor, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), (r, g, b, a))                \
    X(void, BlendEquation, (GLenum mode), (mode))                                                  \
    X(void, BlendFunc, (GLenum source, GLenum destination), (source, destination))                 \
    X(void, BlitFramebuffer,                                                                       \
      (GLint x0, GLint y0, GLint x1, GLint y1, GLint toX0, GLint toY0, GLint toX1, GLint toY1,     \
       GLbitfield mask, GLenum filter),                                                            \
      (x0, y0, x1, y1, toX0, toY0, toX1, toY1, mask, filter))                                      \
    X(void, BufferData, (GLenum target, GLsizeiptr size, const void* data, GLenum usage),          \
      (target, size, data, usage))                                                                 \
    X(void, BufferSubData, (GLenum target, GLintptr offset, GLsizeiptr size, const void* data),    \
      (target, offset, size, data))                                                                \
    X(GLenum, CheckFramebufferStatus, (GLenum target), (target))                                   \
    X(void, Clear, (GLbitfield mask), (mask))                                                      \
    X(void, ClearColor, (GLfloat r, GLfloat g, GLfloat b, GLfloat a), (r, g, b, a))                \
    X(void, ClearDepthf, (GLfloat depth), (depth))                                                 \
    X(void, ColorMask, (GLboolean r, GLboolean g, GLboolean b, GLboolean a), (r, g, b, a))         \
    X(void, CompileShader, (GLuint shader), (shader))                                              \
    X(void, CopyTexSubImage2D,                                                                     \
      (GLenum target, GLint level, GLint toX, GLint toY, GLint x, GLint y, GLsizei width,          \
       GLsizei height),                                                                            \
      (target, level, toX, toY, x, y, width, height))                                              \
    X(GLuint, CreateProgram, (), ())                                                               \
    X(GLuint, CreateShader, (GLenum type), (type))                                                 \
    X(void, CullFace, (GLenum face), (face))                                                       \
    X(void, DeleteBuffers, (GLsizei count, const GLuint* names), (count, names))                   \
    X(void, DeleteFramebuffers, (GLsizei count, const GLuint* names), (count, names))              \
    X(void, DeleteProgram, (GLuint program), (program))                                            \
    X(void, DeleteRenderbuffers, (GLsizei count, const GLuint* names), (count, names))             \
    X(void, DeleteShader, (GLuint shader), (shader))                                               \
    X(void, DeleteTextures, (GLsizei count, const GLuint* names), (count, names))                  \
    X(void, DeleteVertexArrays, (GLsizei count, const GLuint* names), (count, names))              \
    X(void, DepthFunc, (GLenum function), (function))                                              \
    X(void, DepthMask, (GLboolean on), (on))                                                       \
    X(void, DepthRangef, (GLfloat nearest, GLfloat farthest), (nearest, farthest))                 \
    X(void, Disable, (GLenum capability), (capability))                                            \
    X(void, DrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count))           \
    X(void, DrawElements, (GLenum mode, GLsizei count, GLenum type, const void* indices),          \
      (mode, count, type, indices))                                                                \
    X(void, Enable, (GLenum capability), (capability))                                             \
    X(void, EnableVertexAttribArray, (GLuint place), (place))                                      \
    X(void, Finish, (), ())                                                                        \
    X(void, Flush, (), ())                                                                         \
    X(void, FramebufferRenderbuffer,                                                               \
      (GLenum target, GLenum attachment, GLenum kind, GLuint renderbuffer),                        \
      (target, attachment, kind, renderbuffer))                                                    \
    X(void, FramebufferTexture2D,                                                                  \
      (GLenum target, GLenum attachment, GLenum kind, GLuint texture, GLint level),                \
      (target, attachment, kind, texture, level))                                                  \
    X(void, FrontFace, (GLenum sense), (sense))                                                    \
    X(void, GenBuffers, (GLsizei count, GLuint * names), (count, names))                           \
    X(void, GenFramebuffers, (GLsizei count, GLuint * names), (count, names))                      \
    X(void, GenRenderbuffers, (GLsizei count, GLuint * names), (count, names))                     \
    X(void, GenTextures, (GLsizei count, GLuint * names), (count, names))                          \
    X(void, GenVertexArrays, (GLsizei count, GLuint * names), (count, names))                      \
    X(void, GenerateMipmap, (GLenum target), (target))                                             \
    X(void, GetActiveAttrib,                                                                       \
      (GLuint program, GLuint index, GLsizei room, GLsizei * length, GLint * size, GLenum * type,  \
       GLchar * name),                                                                             \
      (program, index, room, length, size, type, name))                                            \
    X(void, GetActiveUniform,                                                                      \
      (GLuint program, GLuint index, GLsizei room, GLsizei * length, GLint * size, GLenum * type,  \
       GLchar * name),                                                                             \
      (program, index, room, length, size, type, name))                                            \
    X(GLint, GetAttribLocation, (GLuint program, const GLchar* name), (program, name))             \
    X(GLenum, GetError, (), ())                                                                    \
    X(void, GetIntegerv, (GLenum name, GLint * values), (name, values))                            \
    X(void, GetProgramInfoLog, (GLuint program, GLsizei room, GLsizei * length, GLchar * text),    \
      (program, room, length, text))                                                               \
    X(void, GetProgramiv, (GLuint program, GLenum name, GLint * value), (program, name, value))    \
    X(void, GetShaderInfoLog, (GLuint shader, GLsizei room, GLsizei * length, GLchar * text),      \
      (shader, room, length, text))                                                                \
    X(void, GetShaderiv, (GLuint shader, GLenum name, GLint * value), (shader, name, value))       \
    X(const GLubyte*, GetString, (GLenum name), (name))                                            \
    X(GLint, GetUniformLocation, (GLuint program, const GLchar* name), (program, name))            \
    X(void, LineWidth, (GLfloat width), (width))                                                   \
    X(void, LinkProgram, (GLuint program), (program))                                              \
    X(void, PixelStorei, (GLenum name, GLint value), (name, value))                                \
    X(void, PolygonOffset, (GLfloat factor, GLfloat units), (factor, units))                       \
    X(void, ReadPixels,                                                                            \
      (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void* pixels), \
      (x, y, width, height, format, type, pixels))                                                 \
    X(void, RenderbufferStorage, (GLenum target, GLenum format, GLsizei width, GLsizei height),    \
      (target, format, width, height))                                                             \
    X(void, Scissor, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height))     \
    X(void, ShaderSource,                                                                          \
      (GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths),            \
      (shader, count, texts, lengths))                                                             \
    X(void, TexImage2D,                                                                            \
      (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,            \
       GLint border, GLenum format, GLenum type, const void* pixels),                              \
      (target, level, internalFormat, width, height, border, format, type, pixels))                \
    X(void, TexParameteri, (GLenum target, GLenum name, GLint value), (target, name, value))       \
    X(void, TexSubImage2D,                                                                         \
      (GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, \
       GLenum type, const void* pixels),                                                           \
      (target, level, x, y, width, height, format, type, pixels))                                  \
    X(void, Uniform1fv, (GLint place, GLsizei count, const GLfloat* values),                       \
      (place, count, values))                                                                      \
    X(void, Uniform2fv, (GLint place, GLsizei count, const GLfloat* values),                       \
      (place, count, values))                                                                      \
    X(void, Uniform3fv, (GLint place, GLsizei count, const GLfloat* values),                       \
      (place, count, values))                                                                      \
    X(void, Uniform4fv, (GLint place, GLsizei count, const GLfloat* values),                       \
      (place, count, values))                                                                      \
    X(void, Uniform1iv, (GLint place, GLsizei count, const GLint* values), (place, count, values)) \
    X(void, Uniform2iv, (GLint place, GLsizei count, const GLint* values), (place, count, values)) \
    X(void, Uniform3iv, (GLint place, GLsizei count, const GLint* values), (place, count, values)) \
    X(void, Uniform4iv, (GLint place, GLsizei count, const GLint* values), (place, count, values)) \
    X(void, UniformMatrix2fv,                                                                      \
      (GLint place, GLsizei count, GLboolean transpose, const GLfloat* values),                    \
      (place, count, transpose, values))                                                           \
    X(void, UniformMatrix3fv,                                                                      \
      (GLint place, GLsizei count, GLboolean transpose, const GLfloat* values),                    \
      (place, count, transpose, values))                                                           \
    X(void, UniformMatrix4fv,                                                                      \
      (GLint place, GLsizei count, GLboolean transpose, const GLfloat* values),                    \
      (place, count, transpose, values))                                                           \
    X(void, UseProgram, (GLuint program), (program))                                               \
    X(void, VertexAttrib4fv, (GLuint place, const GLfloat* values), (place, values))               \
    X(void, VertexAttribPointer,                                                                   \
      (GLuint place, GLint size, GLenum type, GLboolean normalized, GLsizei stride,                \
       const void* offset),                                                                        \
      (place, size, type, normalized, stride, offset))                                             \
    X(void, Viewport, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height))
// clang-format on

/// All calls since the program began.
extern unsigned long calls;

#ifdef __EMSCRIPTEN__
#define WEBGL_DECLARE_ES(result, name, parameters, arguments)                                      \
    extern "C" result emscripten_gl##name parameters;                                              \
    inline result name parameters {                                                                \
        ++calls;                                                                                   \
        return emscripten_gl##name arguments;                                                      \
    }
#else
#define WEBGL_DECLARE_ES(result, name, parameters, arguments)                                      \
    extern result(*name##Address) parameters;                                                      \
    inline result name parameters {                                                                \
        ++calls;                                                                                   \
        return name##Address arguments;                                                            \
    }
#endif
WEBGL_ES_CALLS(WEBGL_DECLARE_ES)
#undef WEBGL_DECLARE_ES

/// Copies a part of the buffer that is bound to `target` back. False in a page, where that would
/// wait for all that was drawn before.
bool ReadBuffer(GLenum target, GLintptr offset, GLsizeiptr size, void* to);

/// Fetches the addresses of the calls from EGL; in a page there is nothing to fetch.
void Fetch();

} // namespace WebGL::Es
