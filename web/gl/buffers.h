#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

namespace WebGL {

class Errors;

/// A buffer object. Indices are kept on this side too, for quads have to be made triangles of.
struct Buffer {
    GLsizeiptr size = 0;
    GLenum usage = GL_STATIC_DRAW;
    std::vector<unsigned char> indices;
};

/// Buffer objects by the names that OpenGL ES gave them.
class Buffers {
public:
    GLuint array = 0;   ///< bound to GL_ARRAY_BUFFER, as the program sees it
    GLuint element = 0; ///< bound to GL_ELEMENT_ARRAY_BUFFER, likewise

    explicit Buffers(Errors& where) : errors(where) {}

    void Generate(GLsizei count, GLuint* names);
    void Delete(GLuint name);
    void Bind(GLenum target, GLuint name);
    void SetData(GLenum target, GLsizeiptr size, const void* data, GLenum usage);
    void SetPart(GLenum target, GLintptr offset, GLsizeiptr size, const void* data);

    void GetPart(GLenum target, GLintptr offset, GLsizeiptr size, void* to);

    bool Exists(GLuint name) const { return all.contains(name); }
    const Buffer& Get(GLuint name) { return all[name]; }

    /// The buffer bound there; null where none is, or the target is not known.
    Buffer* Bound(GLenum target);

    /// Binds in OpenGL ES. Vertex array objects note what is bound to GL_ARRAY_BUFFER when an array
    /// is set, so only this one is kept track of.
    void SendArray(GLuint name);

private:
    Errors& errors;
    std::unordered_map<GLuint, Buffer> all;
    GLuint sentArray = 0;

    void SendFor(GLenum target);
};

} // namespace WebGL
