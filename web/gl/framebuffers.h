#pragma once

#include <array>
#include <unordered_map>

#include <GL/gl.h>
#include <GL/glext.h>

namespace WebGL {

class Errors;

/// What is attached to a framebuffer at one place.
struct Attachment {
    GLenum kind = GL_NONE; ///< GL_TEXTURE_2D, GL_RENDERBUFFER_EXT or nothing
    GLuint name = 0;
    GLint level = 0;

    bool operator==(const Attachment&) const = default;
};

struct Framebuffer {
    static constexpr std::size_t places = 3; ///< colour 0, depth, stencil
    std::array<Attachment, places> wanted;
    std::array<Attachment, places> sent;
    bool checked = false;
    bool complete = false;
};

struct Renderbuffer {
    GLenum format = GL_RGBA;
    GLsizei width = 0;
    GLsizei height = 0;
};

/// Render targets. Programs attach the same textures again for every pass and bind targets that
/// they do not draw to; only what a draw needs is sent.
class Framebuffers {
public:
    GLuint bound = 0;
    GLuint boundRenderbuffer = 0;

    explicit Framebuffers(Errors& where) : errors(where) {}

    void Generate(GLsizei count, GLuint* names);
    void Delete(GLuint name);
    void Bind(GLenum target, GLuint name);
    void Attach(GLenum place, const Attachment& attachment);
    const Attachment* AttachedAt(GLenum place);
    bool Exists(GLuint name) const { return name != 0 && all.contains(name); }

    void GenerateRenderbuffers(GLsizei count, GLuint* names);
    void DeleteRenderbuffer(GLuint name);
    void BindRenderbuffer(GLuint name);
    void SetStorage(GLenum format, GLsizei width, GLsizei height);
    bool RenderbufferExists(GLuint name) const { return name != 0 && renderbuffers.contains(name); }
    const Renderbuffer* BoundRenderbuffer();

    /// GL_FRAMEBUFFER_COMPLETE and the like, of the framebuffer that is bound.
    GLenum Status();

    /// Binds in OpenGL ES what is bound. False, with an error raised, when it cannot be drawn to.
    bool Send();

    /// The texture's or renderbuffer's name is free again: what was attached under it no longer is
    /// what another object of that name would be.
    void Forget(GLenum kind, GLuint name);

    /// Some texture or renderbuffer has another size or format now.
    void Recheck();

    /// Whether drawing goes to this texture.
    bool DrawsTo(GLuint texture) const;

private:
    Errors& errors;
    std::unordered_map<GLuint, Framebuffer> all;
    std::unordered_map<GLuint, Renderbuffer> renderbuffers;
    GLuint sentBound = 0;
    GLuint sentRenderbuffer = 0;

    void BindInEs();
    void SendAttachments(Framebuffer& framebuffer);
};

} // namespace WebGL
