#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec2.h"

#include <string>

namespace Vell {

/// Off-screen render target whose colour and depth are textures.
///
/// Colour: RGBA, 8 bits each, linear filter. Depth: 24 bits, read as luminance, nearest filter.
/// Both clamp to their edge and have no mipmaps. Rows are stored bottom-up, as OpenGL draws them.
/// Needs a current context on which InitEngine() succeeded.
class FBO {
public:
    /// A target of 256 x 256 pixels. Leaves its depth texture and its renderbuffer bound.
    ///
    /// The renderbuffer is attached to whatever framebuffer is bound, which is intended: Enable()
    /// attaches the target's own depth, but another target that is bound now loses its. On the
    /// screen the GL refuses that attachment; no error of it is left, and errors that were pending
    /// before still are.
    FBO();
    /// Deletes the textures, the framebuffer and the renderbuffer.
    ~FBO();

    FBO(const FBO&) = delete;
    FBO& operator=(const FBO&) = delete;

    /// Gives both textures and the renderbuffer a new size in pixels; their names, filters and wrap
    /// modes stay, their content is lost. Leaves the depth texture bound.
    ///
    /// Width and height may be 1 to GL_MAX_TEXTURE_SIZE. Larger or negative, the textures stay as
    /// they were and an OpenGL error is left behind, though GetSize() answers what was asked for.
    /// With a width or height of 0 every drawing into the target leaves an OpenGL error behind.
    void SetSize(const ivec2& pixels);

    /// Labels the framebuffer with what the target is, "reflection target", and the textures and
    /// the renderbuffer after it, "colour of the reflection target". Until then it is a "target".
    void SetLabel(const std::string& text);

    /// Name of the colour texture; owned by the target.
    GLuint GetColor() const { return color; }
    /// Name of the depth texture; owned by the target.
    GLuint GetDepth() const { return depth; }
    /// In pixels.
    ivec2 GetSize() const { return size; }

    /// Sends drawing into this target: binds it, sets the viewport to all of it and pushes the
    /// current matrix stack. Every Enable() needs its Disable(); whether the target is complete is
    /// not checked. There may be as many within each other as the stack is deep: 31 on every
    /// driver while model-view is current.
    void Enable();

    /// Sends drawing back to the screen: unbinds, sets the viewport to all of GetScreen() whatever
    /// it was before, and pops the current matrix stack.
    void Disable();

private:
    GLuint framebuffer;
    GLuint renderbuffer; ///< 24 bits of depth at the target's size
    GLuint color;        ///< texture
    GLuint depth;        ///< texture
    ivec2 size;          ///< pixels
};

} // namespace Vell
