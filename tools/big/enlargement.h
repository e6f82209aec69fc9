#pragma once

#include <memory>

#include <GL/gl.h>
#include <GL/glext.h>

namespace Big {

/// In pixels.
struct Size {
    int width = 0;
    int height = 0;
};

/// Enlarges what lies in the lower left corner of the window's back buffer to the whole window,
/// hard from pixel to pixel.
///
/// Of OpenGL's state nothing but the bound framebuffers and the scissor test has a say in a blit.
/// The window must be bound, and is again; the scissor test is as it was.
class Enlargement {
public:
    /// Of pictures of this size to a window's. The window's context is current, and stays so as
    /// long as the object is used. Null where OpenGL cannot do it.
    static std::unique_ptr<Enlargement> Make(const Size& ofPicture, const Size& ofWindow);

    void Draw() const;

private:
    Enlargement(const Size& ofPicture, const Size& ofWindow);

    void Blit(GLuint from, GLuint into, const Size& intoSize) const;

    Size picture;
    Size window;
    GLuint copy = 0; ///< a framebuffer; it ends with the context
    PFNGLBINDFRAMEBUFFERPROC bindFramebuffer;
    PFNGLBLITFRAMEBUFFERPROC blitFramebuffer;
};

} // namespace Big
