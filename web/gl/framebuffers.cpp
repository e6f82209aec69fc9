#include "web/gl/framebuffers.h"

#include "web/gl/errors.h"
#include "web/gl/es.h"

#include <algorithm>

namespace WebGL {

namespace {

constexpr std::array<GLenum, Framebuffer::places> placeNames = {
    GL_COLOR_ATTACHMENT0_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_STENCIL_ATTACHMENT_EXT};

/// The number of the place; `places` for one that is not known.
std::size_t PlaceOf(GLenum name) {
    const auto found = std::find(placeNames.begin(), placeNames.end(), name);
    return static_cast<std::size_t>(found - placeNames.begin());
}

GLenum EsStorage(GLenum format) {
    switch (format) {
    case GL_RGB:
        return GL_RGB8;
    case GL_RGBA:
        return GL_RGBA8;
    case GL_DEPTH_COMPONENT:
    case GL_DEPTH_COMPONENT32:
        return GL_DEPTH_COMPONENT24;
    case GL_STENCIL_INDEX:
        return GL_STENCIL_INDEX8_EXT;
    default:
        return format;
    }
}

} // namespace

void Framebuffers::Generate(GLsizei count, GLuint* names) {
    Es::GenFramebuffers(count, names);
}

void Framebuffers::Delete(GLuint name) {
    if (name == 0)
        return;
    Es::DeleteFramebuffers(1, &name);
    all.erase(name);
    for (GLuint* last : {&bound, &sentBound})
        if (*last == name)
            *last = 0;
}

void Framebuffers::Bind(GLenum target, GLuint name) {
    if (target != GL_FRAMEBUFFER_EXT) {
        errors.Raise(GL_INVALID_ENUM);
        return;
    }
    bound = name;
    if (name != 0)
        all.try_emplace(name);
}

void Framebuffers::Attach(GLenum place, const Attachment& attachment) {
    const std::size_t index = PlaceOf(place);
    if (bound == 0 || index == Framebuffer::places) {
        errors.Raise(bound == 0 ? GL_INVALID_OPERATION : GL_INVALID_ENUM);
        return;
    }
    Framebuffer& framebuffer = all[bound];
    framebuffer.wanted[index] = attachment.name != 0 ? attachment : Attachment();
}

const Attachment* Framebuffers::AttachedAt(GLenum place) {
    const std::size_t index = PlaceOf(place);
    if (bound == 0 || index == Framebuffer::places)
        return nullptr;
    return &all[bound].wanted[index];
}

void Framebuffers::GenerateRenderbuffers(GLsizei count, GLuint* names) {
    Es::GenRenderbuffers(count, names);
}

void Framebuffers::DeleteRenderbuffer(GLuint name) {
    if (name == 0)
        return;
    Es::DeleteRenderbuffers(1, &name);
    renderbuffers.erase(name);
    Forget(GL_RENDERBUFFER_EXT, name);
    for (GLuint* last : {&boundRenderbuffer, &sentRenderbuffer})
        if (*last == name)
            *last = 0;
}

void Framebuffers::BindRenderbuffer(GLuint name) {
    boundRenderbuffer = name;
    if (name != 0)
        renderbuffers.try_emplace(name);
}

const Renderbuffer* Framebuffers::BoundRenderbuffer() {
    return boundRenderbuffer != 0 ? &renderbuffers[boundRenderbuffer] : nullptr;
}

void Framebuffers::SetStorage(GLenum format, GLsizei width, GLsizei height) {
    if (boundRenderbuffer == 0) {
        errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    if (sentRenderbuffer != boundRenderbuffer)
        Es::BindRenderbuffer(GL_RENDERBUFFER_EXT, boundRenderbuffer);
    sentRenderbuffer = boundRenderbuffer;
    Es::RenderbufferStorage(GL_RENDERBUFFER_EXT, EsStorage(format), width, height);
    renderbuffers[boundRenderbuffer] = {format, width, height};
    Recheck();
    errors.Suspect();
}

void Framebuffers::Recheck() {
    for (auto& [name, framebuffer] : all)
        framebuffer.checked = false;
}

void Framebuffers::BindInEs() {
    if (sentBound == bound)
        return;
    Es::BindFramebuffer(GL_FRAMEBUFFER_EXT, bound);
    sentBound = bound;
}

void Framebuffers::SendAttachments(Framebuffer& framebuffer) {
    for (std::size_t i = 0; i < Framebuffer::places; ++i) {
        const Attachment& wanted = framebuffer.wanted[i];
        if (framebuffer.sent[i] == wanted)
            continue;
        if (wanted.kind == GL_TEXTURE_2D)
            Es::FramebufferTexture2D(GL_FRAMEBUFFER_EXT, placeNames[i], GL_TEXTURE_2D, wanted.name,
                                     wanted.level);
        else
            Es::FramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, placeNames[i], GL_RENDERBUFFER_EXT,
                                        wanted.name);
        framebuffer.sent[i] = wanted;
        framebuffer.checked = false;
    }
}

GLenum Framebuffers::Status() {
    BindInEs();
    if (bound != 0)
        SendAttachments(all[bound]);
    return Es::CheckFramebufferStatus(GL_FRAMEBUFFER_EXT);
}

bool Framebuffers::Send() {
    BindInEs();
    if (bound == 0)
        return true;
    Framebuffer& framebuffer = all[bound];
    SendAttachments(framebuffer);
    if (!framebuffer.checked)
        framebuffer.complete =
            Es::CheckFramebufferStatus(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
    framebuffer.checked = true;
    if (!framebuffer.complete)
        errors.Raise(GL_INVALID_FRAMEBUFFER_OPERATION_EXT);
    return framebuffer.complete;
}

// OpenGL takes a deleted texture away from the framebuffer that is bound. OpenGL ES does so too,
// but the one that is bound there may be another.
void Framebuffers::Forget(GLenum kind, GLuint name) {
    for (auto& [number, framebuffer] : all)
        for (std::size_t i = 0; i < Framebuffer::places; ++i) {
            const auto is = [&](const Attachment& a) { return a.kind == kind && a.name == name; };
            if (is(framebuffer.wanted[i]) && number == bound)
                framebuffer.wanted[i] = Attachment();
            if (is(framebuffer.sent[i]))
                framebuffer.sent[i] = Attachment{GL_NONE, name, -1}; // like nothing else
            framebuffer.checked = false;
        }
}

bool Framebuffers::DrawsTo(GLuint texture) const {
    const auto found = all.find(bound);
    if (bound == 0 || found == all.end())
        return false;
    return std::any_of(
        found->second.wanted.begin(), found->second.wanted.end(),
        [&](const Attachment& a) { return a.kind == GL_TEXTURE_2D && a.name == texture; });
}

} // namespace WebGL
