// The entry points that are about buffers, framebuffers and points.

#include "web/gl/context.h"
#include "web/gl/entrypoints.h"
#include "web/gl/es.h"

#include <GL/glext.h>

namespace WebGL {

namespace {

Errors& Wrong() {
    return Current().errors;
}

GLboolean Truth(bool value) {
    return static_cast<GLboolean>(value ? GL_TRUE : GL_FALSE);
}

void GenBuffers(GLsizei count, GLuint* names) {
    Current().buffers.Generate(count, names);
}

void DeleteBuffers(GLsizei count, const GLuint* names) {
    for (GLsizei i = 0; i < count; ++i) {
        Current().vertexArrays.Forget(names[i]);
        Current().buffers.Delete(names[i]);
    }
}

void BindBuffer(GLenum target, GLuint name) {
    Current().buffers.Bind(target, name);
}

void BufferData(GLenum target, GLsizeiptr size, const void* data, GLenum usage) {
    Current().buffers.SetData(target, size, data, usage);
}

void BufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, const void* data) {
    Current().buffers.SetPart(target, offset, size, data);
}

void GetBufferSubData(GLenum target, GLintptr offset, GLsizeiptr size, void* to) {
    Current().buffers.GetPart(target, offset, size, to);
}

GLboolean IsBuffer(GLuint name) {
    return Truth(Current().buffers.Exists(name));
}

void GetBufferParameteriv(GLenum target, GLenum name, GLint* value) {
    const Buffer* const buffer = Current().buffers.Bound(target);
    if (buffer == nullptr)
        Wrong().Raise(GL_INVALID_OPERATION);
    else if (name == GL_BUFFER_SIZE)
        *value = static_cast<GLint>(buffer->size);
    else if (name == GL_BUFFER_USAGE)
        *value = static_cast<GLint>(buffer->usage);
    else
        Wrong().Raise(GL_INVALID_ENUM);
}

void GenFramebuffers(GLsizei count, GLuint* names) {
    Current().framebuffers.Generate(count, names);
}

void DeleteFramebuffers(GLsizei count, const GLuint* names) {
    for (GLsizei i = 0; i < count; ++i)
        Current().framebuffers.Delete(names[i]);
}

void BindFramebuffer(GLenum target, GLuint name) {
    Current().framebuffers.Bind(target, name);
}

GLboolean IsFramebuffer(GLuint name) {
    return Truth(Current().framebuffers.Exists(name));
}

GLenum CheckFramebufferStatus(GLenum) {
    return Current().framebuffers.Status();
}

void FramebufferTexture2D(GLenum, GLenum place, GLenum, GLuint texture, GLint level) {
    Current().framebuffers.Attach(place, {GL_TEXTURE_2D, texture, level});
}

void FramebufferRenderbuffer(GLenum, GLenum place, GLenum, GLuint renderbuffer) {
    Current().framebuffers.Attach(place, {GL_RENDERBUFFER_EXT, renderbuffer, 0});
}

void GetFramebufferAttachmentParameteriv(GLenum, GLenum place, GLenum name, GLint* value) {
    const Attachment* const attachment = Current().framebuffers.AttachedAt(place);
    if (attachment == nullptr) {
        Wrong().Raise(GL_INVALID_OPERATION);
        return;
    }
    const bool texture = attachment->kind == GL_TEXTURE_2D;
    if (name == GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT)
        *value = texture ? GL_TEXTURE : static_cast<GLint>(attachment->kind);
    else if (name == GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT)
        *value = static_cast<GLint>(attachment->name);
    else if (name == GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_LEVEL_EXT)
        *value = attachment->level;
    else
        Wrong().Raise(GL_INVALID_ENUM);
}

void GenRenderbuffers(GLsizei count, GLuint* names) {
    Current().framebuffers.GenerateRenderbuffers(count, names);
}

void DeleteRenderbuffers(GLsizei count, const GLuint* names) {
    for (GLsizei i = 0; i < count; ++i)
        Current().framebuffers.DeleteRenderbuffer(names[i]);
}

void BindRenderbuffer(GLenum, GLuint name) {
    Current().framebuffers.BindRenderbuffer(name);
}

GLboolean IsRenderbuffer(GLuint name) {
    return Truth(Current().framebuffers.RenderbufferExists(name));
}

void RenderbufferStorage(GLenum, GLenum format, GLsizei width, GLsizei height) {
    Current().framebuffers.SetStorage(format, width, height);
}

void GetRenderbufferParameteriv(GLenum, GLenum name, GLint* value) {
    const Renderbuffer* const buffer = Current().framebuffers.BoundRenderbuffer();
    if (buffer == nullptr)
        Wrong().Raise(GL_INVALID_OPERATION);
    else if (name == GL_RENDERBUFFER_WIDTH_EXT)
        *value = buffer->width;
    else if (name == GL_RENDERBUFFER_HEIGHT_EXT)
        *value = buffer->height;
    else if (name == GL_RENDERBUFFER_INTERNAL_FORMAT_EXT)
        *value = static_cast<GLint>(buffer->format);
    else
        Wrong().Raise(GL_INVALID_ENUM);
}

void GenerateMipmap(GLenum) {
    Current().textures.GenerateMipmap();
}

// Points keep their size at any distance.
void PointParameterf(GLenum, GLfloat) {}
void PointParameterfv(GLenum, const GLfloat*) {}

} // namespace

#define WEBGL_BUFFER(name, function) Row(name, function), Row(name "ARB", function)
#define WEBGL_TARGET(name, function) Row(name, function), Row(name "EXT", function)

std::span<const EntryPoint> ObjectEntryPoints() {
    static const EntryPoint rows[] = {
        WEBGL_BUFFER("glBindBuffer", BindBuffer),
        WEBGL_BUFFER("glBufferData", BufferData),
        WEBGL_BUFFER("glBufferSubData", BufferSubData),
        WEBGL_BUFFER("glDeleteBuffers", DeleteBuffers),
        WEBGL_BUFFER("glGenBuffers", GenBuffers),
        WEBGL_BUFFER("glGetBufferSubData", GetBufferSubData),
        WEBGL_BUFFER("glGetBufferParameteriv", GetBufferParameteriv),
        WEBGL_BUFFER("glIsBuffer", IsBuffer),
        WEBGL_BUFFER("glPointParameterf", PointParameterf),
        WEBGL_BUFFER("glPointParameterfv", PointParameterfv),
        WEBGL_TARGET("glBindFramebuffer", BindFramebuffer),
        WEBGL_TARGET("glBindRenderbuffer", BindRenderbuffer),
        WEBGL_TARGET("glCheckFramebufferStatus", CheckFramebufferStatus),
        WEBGL_TARGET("glDeleteFramebuffers", DeleteFramebuffers),
        WEBGL_TARGET("glDeleteRenderbuffers", DeleteRenderbuffers),
        WEBGL_TARGET("glFramebufferRenderbuffer", FramebufferRenderbuffer),
        WEBGL_TARGET("glFramebufferTexture2D", FramebufferTexture2D),
        WEBGL_TARGET("glGenFramebuffers", GenFramebuffers),
        WEBGL_TARGET("glGenRenderbuffers", GenRenderbuffers),
        WEBGL_TARGET("glGenerateMipmap", GenerateMipmap),
        WEBGL_TARGET("glGetFramebufferAttachmentParameteriv", GetFramebufferAttachmentParameteriv),
        WEBGL_TARGET("glGetRenderbufferParameteriv", GetRenderbufferParameteriv),
        WEBGL_TARGET("glIsFramebuffer", IsFramebuffer),
        WEBGL_TARGET("glIsRenderbuffer", IsRenderbuffer),
        WEBGL_TARGET("glRenderbufferStorage", RenderbufferStorage),
    };
    return rows;
}

} // namespace WebGL
