#pragma once

#include "engine/core/GLExtensions.h"

#include <vector>

#include <SDL.h>

/// An entry point that the engine itself does not fetch.
template <typename Function>
Function EntryPoint(const char* name) {
    return reinterpret_cast<Function>(SDL_GL_GetProcAddress(name));
}

/// In bytes; 0 for a buffer that was never filled.
inline GLint BufferSize(GLenum target, GLuint buffer) {
    GLint bytes = 0;
    glBindBuffer(target, buffer);
    EntryPoint<PFNGLGETBUFFERPARAMETERIVPROC>("glGetBufferParameteriv")(target, GL_BUFFER_SIZE,
                                                                        &bytes);
    glBindBuffer(target, 0);
    return bytes;
}

template <typename T>
std::vector<T> BufferContent(GLenum target, GLuint buffer) {
    std::vector<T> content(static_cast<std::size_t>(BufferSize(target, buffer)) / sizeof(T));
    glBindBuffer(target, buffer);
    EntryPoint<PFNGLGETBUFFERSUBDATAPROC>("glGetBufferSubData")(
        target, 0, static_cast<GLsizeiptr>(content.size() * sizeof(T)), content.data());
    glBindBuffer(target, 0);
    return content;
}
