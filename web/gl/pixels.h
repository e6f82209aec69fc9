#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <GL/gl.h>

/// Pixels in a program's memory, in the formats of OpenGL, most of which OpenGL ES lacks.
namespace WebGL {

/// How glPixelStorei() says that rows lie in memory.
struct PixelStore {
    GLint alignment = 4;
    GLint rowLength = 0;
    GLint skipRows = 0;
    GLint skipPixels = 0;

    bool operator==(const PixelStore&) const = default;
};

/// A rectangle of pixels in memory.
struct PixelArea {
    GLsizei width;
    GLsizei height;
    GLenum format; ///< GL_RGB, GL_BGRA, GL_LUMINANCE ...
    GLenum type;   ///< GL_UNSIGNED_BYTE, GL_FLOAT ...
    PixelStore store;
};

/// Bytes of one pixel; 0 where format or type is not known.
std::size_t PixelSize(GLenum format, GLenum type);

/// Where the row `y` begins, in bytes.
std::size_t RowStart(const PixelArea& area, GLsizei y);

/// Four bytes for each pixel, row after row; missing colours are 0, missing alpha is 255.
std::vector<std::uint8_t> ToRgba(const void* pixels, const PixelArea& area);

/// The way back: `rgba` becomes what the area's format asks for; luminance is read from red.
void FromRgba(const std::vector<std::uint8_t>& rgba, void* pixels, const PixelArea& area);

/// Depths from 0 to 1 as 32-bit integers, row after row.
std::vector<std::uint32_t> ToDepth(const void* pixels, const PixelArea& area);

} // namespace WebGL
