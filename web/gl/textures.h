#pragma once

#include "web/gl/pixels.h"

#include <array>
#include <unordered_map>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

namespace WebGL {

class Errors;

/// One level of detail of a texture.
struct TextureLevel {
    GLsizei width = 0;
    GLsizei height = 0;
    GLint internalFormat = 0; ///< as the program asked for it
    GLenum base = 0;          ///< GL_RGB, GL_RGBA, GL_ALPHA, GL_LUMINANCE ..., GL_DEPTH_COMPONENT
    GLenum esFormat = 0;      ///< in which OpenGL ES takes its pixels
};

struct Texture {
    GLuint esName = 0; ///< 0 until the default texture has got a picture
    GLint minFilter = GL_NEAREST_MIPMAP_LINEAR;
    GLint magFilter = GL_LINEAR;
    GLint wrapS = GL_REPEAT;
    GLint wrapT = GL_REPEAT;
    GLint depthMode = GL_LUMINANCE;
    bool generateMipmap = false;
    std::vector<TextureLevel> levels;

    bool IsDepth() const;
    bool IsAlpha() const;

    /// Whether OpenGL takes it for a texture at all: without, a unit is as if switched off.
    bool Complete() const;
};

struct TextureUnit {
    GLuint bound = 0; ///< GL_TEXTURE_2D
    bool enabled = false;
    GLint environment = GL_MODULATE;
};

/// Two-dimensional textures and the units that they are bound to. Names are those of OpenGL ES.
class Textures {
public:
    static constexpr std::size_t unitCount = 32;

    std::size_t active = 0; ///< the unit that calls are about
    std::array<TextureUnit, unitCount> units;
    PixelStore unpack;

    explicit Textures(Errors& where) : errors(where) {}

    TextureUnit& Active() { return units[active]; }
    Texture& Bound() { return Get(units[active].bound); }
    Texture& Get(GLuint name) { return all[name]; }
    bool Exists(GLuint name) const { return name != 0 && all.contains(name); }

    void Generate(GLsizei count, GLuint* names);
    void Delete(GLuint name);

    /// These are about the texture that is bound to the active unit.
    void SetImage(GLint level, GLint internalFormat, const PixelArea& area, const void* pixels);
    void SetPart(GLint level, GLint x, GLint y, const PixelArea& area, const void* pixels);
    void CopyPart(GLint level, const std::array<GLint, 4>& from, GLint toX, GLint toY);
    void SetParameter(GLenum name, GLint value);
    void GenerateMipmap();

    /// Binds in OpenGL ES what is bound to the unit; `instead` is bound where that is not 0.
    void Send(std::size_t unit, GLuint instead = 0);

    /// Whether a unit's texture is one of depths that shaders are to see as grey.
    bool IsGrey(std::size_t unit);

private:
    Errors& errors;
    std::unordered_map<GLuint, Texture> all;
    std::array<GLuint, unitCount> sent{};
    std::size_t sentActive = 0;
    PixelStore sentUnpack;

    void Activate(); ///< the active unit, in OpenGL ES, with its texture
    void SendUnpack(const PixelStore& store);
    void MakeDefault(Texture& texture);
    void SendParameters(const Texture& texture);
    void SendFilter(Texture& texture);
    void UploadDepth(GLint level, const TextureLevel& as, const PixelArea& area,
                     const void* pixels);
    void UploadColor(GLint level, const TextureLevel& as, const PixelArea& area,
                     const void* pixels);
};

} // namespace WebGL
