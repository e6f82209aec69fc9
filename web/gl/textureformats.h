#pragma once

#include "web/gl/textures.h"

namespace WebGL {

/// How OpenGL ES keeps a picture that a program wants as `internalFormat`; base 0 where that is not
/// known, or the area's format and type are not.
TextureLevel LevelFor(GLint internalFormat, const PixelArea& area);

/// The internal format for it.
GLint EsInternalFormat(const TextureLevel& level);

/// Whether OpenGL ES takes the pixels as they lie in memory.
bool IsTakenAsItIs(const TextureLevel& level, const PixelArea& area);

/// Otherwise, these: tightly packed, in the level's own format.
std::vector<std::uint8_t> PixelsFor(const TextureLevel& level, const PixelArea& area,
                                    const void* pixels);

/// Where a texture keeps the parameter; null for one that it does not keep.
GLint* ParameterOf(Texture& texture, GLenum name);

/// The value of a parameter that OpenGL knows and that is always the same here; null for another.
const GLint* FixedParameter(GLenum name);

} // namespace WebGL
