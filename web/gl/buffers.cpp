#include "web/gl/buffers.h"

#include "web/gl/context.h"
#include "web/gl/errors.h"
#include "web/gl/es.h"

#include <algorithm>

namespace WebGL {

void Buffers::Generate(GLsizei count, GLuint* names) {
    Es::GenBuffers(count, names);
}

void Buffers::Delete(GLuint name) {
    if (name == 0)
        return;
    Es::DeleteBuffers(1, &name);
    all.erase(name);
    for (GLuint* bound : {&array, &element, &sentArray})
        if (*bound == name)
            *bound = 0;
}

void Buffers::Bind(GLenum target, GLuint name) {
    if (target != GL_ARRAY_BUFFER && target != GL_ELEMENT_ARRAY_BUFFER) {
        errors.Raise(GL_INVALID_ENUM);
        return;
    }
    (target == GL_ARRAY_BUFFER ? array : element) = name;
    if (name != 0)
        all.try_emplace(name);
}

Buffer* Buffers::Bound(GLenum target) {
    const GLuint name = target == GL_ARRAY_BUFFER           ? array
                        : target == GL_ELEMENT_ARRAY_BUFFER ? element
                                                            : 0;
    return name != 0 ? &all[name] : nullptr;
}

void Buffers::SendArray(GLuint name) {
    if (sentArray == name)
        return;
    Es::BindBuffer(GL_ARRAY_BUFFER, name);
    sentArray = name;
}

// What is bound for indices belongs to the vertex array object that is bound, if there is one.
void Buffers::SendFor(GLenum target) {
    if (target == GL_ARRAY_BUFFER) {
        SendArray(array);
        return;
    }
    Current().vertexArrays.Unbind();
    Es::BindBuffer(target, element);
}

void Buffers::SetData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    Buffer* const buffer = Bound(target);
    if (buffer == nullptr || size < 0) {
        errors.Raise(buffer == nullptr ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
        return;
    }
    buffer->size = size;
    buffer->usage = usage;
    if (target == GL_ELEMENT_ARRAY_BUFFER) {
        buffer->indices.assign(static_cast<std::size_t>(size), 0);
        if (data != nullptr)
            std::copy_n(static_cast<const unsigned char*>(data), size, buffer->indices.begin());
    }
    SendFor(target);
    Es::BufferData(target, size, data, usage);
    Current().counts.uploads += 1;
    errors.Suspect();
}

void Buffers::SetPart(GLenum target, GLintptr offset, GLsizeiptr size, const void* data) {
    Buffer* const buffer = Bound(target);
    if (buffer == nullptr || offset < 0 || size < 0 || offset + size > buffer->size) {
        errors.Raise(buffer == nullptr ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
        return;
    }
    if (target == GL_ELEMENT_ARRAY_BUFFER)
        std::copy_n(static_cast<const unsigned char*>(data), size,
                    buffer->indices.begin() + offset);
    SendFor(target);
    Es::BufferSubData(target, offset, size, data);
    Current().counts.uploads += 1;
}

void Buffers::GetPart(GLenum target, GLintptr offset, GLsizeiptr size, void* to) {
    const Buffer* const buffer = Bound(target);
    if (buffer == nullptr || offset < 0 || size < 0 || offset + size > buffer->size) {
        errors.Raise(buffer == nullptr ? GL_INVALID_OPERATION : GL_INVALID_VALUE);
        return;
    }
    SendFor(target);
    if (!Es::ReadBuffer(target, offset, size, to))
        errors.Raise(GL_INVALID_OPERATION);
}

} // namespace WebGL
