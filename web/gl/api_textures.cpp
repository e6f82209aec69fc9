// The functions of OpenGL that are about textures and pixels.

#include "web/gl/context.h"
#include "web/gl/es.h"
#include "web/gl/reading.h"

#include <algorithm>

using namespace WebGL;

namespace {

bool IsTarget(GLenum target) {
    if (target == GL_TEXTURE_2D)
        return true;
    Current().errors.Raise(GL_INVALID_ENUM);
    return false;
}

GLint LargestTexture() {
    static GLint largest = 0;
    if (largest == 0)
        Es::GetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return largest;
}

bool IsSize(GLint level, GLsizei width, GLsizei height) {
    if (level >= 0 && width >= 0 && height >= 0 && std::max(width, height) <= LargestTexture())
        return true;
    Current().errors.Raise(GL_INVALID_VALUE);
    return false;
}

PixelStore* StoreOf(GLenum name) {
    const bool unpack = name >= GL_UNPACK_SWAP_BYTES && name <= GL_UNPACK_ALIGNMENT;
    return unpack ? &Current().textures.unpack : &Current().pack;
}

GLint* FieldOf(GLenum name) {
    PixelStore& store = *StoreOf(name);
    switch (name) {
    case GL_UNPACK_ALIGNMENT:
    case GL_PACK_ALIGNMENT:
        return &store.alignment;
    case GL_UNPACK_ROW_LENGTH:
    case GL_PACK_ROW_LENGTH:
        return &store.rowLength;
    case GL_UNPACK_SKIP_ROWS:
    case GL_PACK_SKIP_ROWS:
        return &store.skipRows;
    case GL_UNPACK_SKIP_PIXELS:
    case GL_PACK_SKIP_PIXELS:
        return &store.skipPixels;
    default:
        return nullptr;
    }
}

} // namespace

extern "C" {

void glGenTextures(GLsizei n, GLuint* textures) {
    Current().textures.Generate(n, textures);
}

void glDeleteTextures(GLsizei n, const GLuint* textures) {
    for (GLsizei i = 0; i < n; ++i) {
        Current().textures.Delete(textures[i]);
        Current().framebuffers.Forget(GL_TEXTURE_2D, textures[i]);
    }
}

void glBindTexture(GLenum target, GLuint texture) {
    Current().lists.Do([=] {
        if (!IsTarget(target))
            return;
        Current().textures.Active().bound = texture;
        Current().textures.Bound(); // from here on it is one
    });
}

GLboolean glIsTexture(GLuint texture) {
    return static_cast<GLboolean>(Current().textures.Exists(texture) ? GL_TRUE : GL_FALSE);
}

void glActiveTexture(GLenum texture) {
    Current().lists.Do([=] {
        const std::size_t unit = texture - GL_TEXTURE0;
        if (unit < Textures::unitCount)
            Current().textures.active = unit;
        else
            Current().errors.Raise(GL_INVALID_ENUM);
    });
}

void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,
                  GLint border, GLenum format, GLenum type, const GLvoid* pixels) {
    if (!IsTarget(target) || !IsSize(level, width, height))
        return;
    Context& context = Current();
    if (border != 0) {
        context.errors.Raise(GL_INVALID_VALUE);
        return;
    }
    context.textures.SetImage(level, internalFormat,
                              {width, height, format, type, context.textures.unpack}, pixels);
    context.framebuffers.Recheck();
    ++context.counts.uploads;
}

void glTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width,
                     GLsizei height, GLenum format, GLenum type, const GLvoid* pixels) {
    if (!IsTarget(target) || !IsSize(level, width, height))
        return;
    Context& context = Current();
    context.textures.SetPart(level, xoffset, yoffset,
                             {width, height, format, type, context.textures.unpack}, pixels);
    ++context.counts.uploads;
}

void glCopyTexSubImage2D(GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint x, GLint y,
                         GLsizei width, GLsizei height) {
    if (IsTarget(target) && Current().framebuffers.Send())
        Current().textures.CopyPart(level, {x, y, width, height}, xoffset, yoffset);
}

void glCopyTexImage2D(GLenum target, GLint level, GLenum internalFormat, GLint x, GLint y,
                      GLsizei width, GLsizei height, GLint border) {
    glTexImage2D(target, level, static_cast<GLint>(internalFormat), width, height, border, GL_RGBA,
                 GL_UNSIGNED_BYTE, nullptr);
    glCopyTexSubImage2D(target, level, 0, 0, x, y, width, height);
}

void glTexParameteri(GLenum target, GLenum pname, GLint param) {
    Current().lists.Do([=] {
        if (IsTarget(target))
            Current().textures.SetParameter(pname, param);
    });
}

void glTexParameterf(GLenum target, GLenum pname, GLfloat param) {
    glTexParameteri(target, pname, static_cast<GLint>(param));
}

void glTexParameterfv(GLenum target, GLenum pname, const GLfloat* params) {
    if (pname != GL_TEXTURE_BORDER_COLOR)
        glTexParameterf(target, pname, *params);
}

void glTexParameteriv(GLenum target, GLenum pname, const GLint* params) {
    if (pname != GL_TEXTURE_BORDER_COLOR)
        glTexParameteri(target, pname, *params);
}

void glTexEnvi(GLenum target, GLenum pname, GLint param) {
    Current().lists.Do([=] {
        if (target == GL_TEXTURE_ENV && pname == GL_TEXTURE_ENV_MODE)
            Current().textures.Active().environment = param;
    });
}

void glTexEnvf(GLenum target, GLenum pname, GLfloat param) {
    glTexEnvi(target, pname, static_cast<GLint>(param));
}

void glPixelStorei(GLenum pname, GLint param) {
    GLint* const field = FieldOf(pname);
    const bool aligned = pname != GL_UNPACK_ALIGNMENT && pname != GL_PACK_ALIGNMENT;
    if (param < 0 || (!aligned && param != 1 && param != 2 && param != 4 && param != 8))
        Current().errors.Raise(GL_INVALID_VALUE);
    else if (field != nullptr)
        *field = param;
}

void glReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type,
                  GLvoid* pixels) {
    if (width < 0 || height < 0)
        Current().errors.Raise(GL_INVALID_VALUE);
    else
        ReadPixels(x, y, {width, height, format, type, Current().pack}, pixels);
}

void glGetTexImage(GLenum target, GLint level, GLenum format, GLenum type, GLvoid* pixels) {
    if (IsTarget(target))
        ReadTexture(level, format, type, pixels);
}

void glReadBuffer(GLenum) {}

void glDrawBuffer(GLenum) {}

} // extern "C"
