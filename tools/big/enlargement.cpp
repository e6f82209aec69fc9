#include "tools/big/enlargement.h"

#include <cstring>

#include <GL/glx.h>

namespace Big {

namespace {

template <class Function>
Function EntryPoint(const char* name) {
    return reinterpret_cast<Function>(glXGetProcAddress(reinterpret_cast<const GLubyte*>(name)));
}

bool CanBlit() {
    const auto* const extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return extensions != nullptr && std::strstr(extensions, "GL_ARB_framebuffer_object") != nullptr;
}

} // namespace

std::unique_ptr<Enlargement> Enlargement::Make(const Size& ofPicture, const Size& ofWindow) {
    if (!CanBlit())
        return nullptr;
    return std::unique_ptr<Enlargement>(new Enlargement(ofPicture, ofWindow));
}

Enlargement::Enlargement(const Size& ofPicture, const Size& ofWindow)
    : picture(ofPicture),
      window(ofWindow),
      bindFramebuffer(EntryPoint<PFNGLBINDFRAMEBUFFERPROC>("glBindFramebuffer")),
      blitFramebuffer(EntryPoint<PFNGLBLITFRAMEBUFFERPROC>("glBlitFramebuffer")) {
    GLuint pixels = 0;
    EntryPoint<PFNGLGENFRAMEBUFFERSPROC>("glGenFramebuffers")(1, &copy);
    EntryPoint<PFNGLGENRENDERBUFFERSPROC>("glGenRenderbuffers")(1, &pixels);
    const auto bindPixels = EntryPoint<PFNGLBINDRENDERBUFFERPROC>("glBindRenderbuffer");
    bindPixels(GL_RENDERBUFFER, pixels);
    EntryPoint<PFNGLRENDERBUFFERSTORAGEPROC>("glRenderbufferStorage")(
        GL_RENDERBUFFER, GL_RGBA8, picture.width, picture.height);
    bindPixels(GL_RENDERBUFFER, 0);
    bindFramebuffer(GL_FRAMEBUFFER, copy);
    EntryPoint<PFNGLFRAMEBUFFERRENDERBUFFERPROC>("glFramebufferRenderbuffer")(
        GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, pixels);
    bindFramebuffer(GL_FRAMEBUFFER, 0);
}

void Enlargement::Draw() const {
    const bool scissor = glIsEnabled(GL_SCISSOR_TEST) == GL_TRUE;
    glDisable(GL_SCISSOR_TEST);
    // What is read and what is written must not overlap, so the picture goes by way of a copy.
    Blit(0, copy, picture);
    Blit(copy, 0, window);
    bindFramebuffer(GL_FRAMEBUFFER, 0);
    if (scissor)
        glEnable(GL_SCISSOR_TEST);
}

/// The picture of a framebuffer into another, of which it fills this much.
void Enlargement::Blit(GLuint from, GLuint into, const Size& intoSize) const {
    bindFramebuffer(GL_READ_FRAMEBUFFER, from);
    bindFramebuffer(GL_DRAW_FRAMEBUFFER, into);
    blitFramebuffer(0, 0, picture.width, picture.height, 0, 0, intoSize.width, intoSize.height,
                    GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

} // namespace Big
