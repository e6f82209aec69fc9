#include "engine/core/fbo.h"

#include "engine/core/core.h"
#include "engine/core/errorguard.h"
#include "engine/core/labels.h"

namespace Vell {

namespace {

void BindAndAllocateColor(GLuint texture, const ivec2& size) {
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, size.x, size.y, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
}

void BindAndAllocateDepth(GLuint texture, const ivec2& size, GLenum type) {
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, size.x, size.y, 0, GL_DEPTH_COMPONENT,
                 type, nullptr);
}

void SetFilterAndClamp(GLint filter) {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void BindAndAllocateRenderbuffer(GLuint renderbuffer, const ivec2& size) {
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, renderbuffer);
    glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_DEPTH_COMPONENT24, size.x, size.y);
}

/// Attaches `renderbuffer` as the depth of whatever framebuffer is bound. With the screen bound the
/// GL refuses this with GL_INVALID_OPERATION. That is expected here; a check later in the frame is
/// not to stumble over it.
void AttachToBoundFramebuffer(GLuint renderbuffer) {
    const ErrorGuard guard;
    glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT,
                                 renderbuffer);
}

} // namespace

FBO::FBO() : framebuffer(0), renderbuffer(0), color(0), depth(0), size(256, 256) {
    glGenFramebuffersEXT(1, &framebuffer);
    glGenRenderbuffersEXT(1, &renderbuffer);
    BindAndAllocateRenderbuffer(renderbuffer, size);
    // The target's own framebuffer is not bound for this on purpose: whatever target is bound
    // loses its depth to this one. Enable() attaches the depth of its own.
    AttachToBoundFramebuffer(renderbuffer);

    glGenTextures(1, &color);
    BindAndAllocateColor(color, size);
    SetFilterAndClamp(GL_LINEAR);

    glGenTextures(1, &depth);
    BindAndAllocateDepth(depth, size, GL_FLOAT);
    SetFilterAndClamp(GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE);
    SetLabel("target");
}

FBO::~FBO() {
    Unlabel(ObjectKind::Texture, color);
    Unlabel(ObjectKind::Texture, depth);
    Unlabel(ObjectKind::Framebuffer, framebuffer);
    Unlabel(ObjectKind::Renderbuffer, renderbuffer);
    glDeleteTextures(1, &color);
    glDeleteTextures(1, &depth);
    glDeleteFramebuffersEXT(1, &framebuffer);
    glDeleteRenderbuffersEXT(1, &renderbuffer);
}

void FBO::SetSize(const ivec2& pixels) {
    size = pixels;
    BindAndAllocateRenderbuffer(renderbuffer, size);
    BindAndAllocateColor(color, size);
    // Bytes here, floats in the constructor, on purpose and without effect: nothing is uploaded.
    BindAndAllocateDepth(depth, size, GL_UNSIGNED_BYTE);
}

void FBO::SetLabel(const std::string& text) {
    Label(ObjectKind::Framebuffer, framebuffer, text);
    Label(ObjectKind::Renderbuffer, renderbuffer, "renderbuffer of the " + text);
    Label(ObjectKind::Texture, color, "colour of the " + text);
    Label(ObjectKind::Texture, depth, "depth of the " + text);
}

void FBO::Enable() {
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, renderbuffer);
    glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D, color,
                              0);
    glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_TEXTURE_2D, depth, 0);
    glViewport(0, 0, size.x, size.y);
    glPushMatrix();
}

void FBO::Disable() {
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
    const ivec2 screen = GetScreen();
    glViewport(0, 0, screen.x, screen.y);
    glPopMatrix();
}

} // namespace Vell
