#pragma once

#include <vector>

#include <GL/gl.h>

/// OpenGL draws quads and polygons, and outlines of them; OpenGL ES has triangles and lines.
namespace WebGL {

/// Whether a primitive has an inside, and so an outline.
bool IsArea(GLenum mode);

/// Whether OpenGL ES knows it too.
bool IsNative(GLenum mode);

/// The corners of triangles for an area's corners, three for each: a quad is cut from its second
/// corner to its fourth, as Mesa cuts it, so that a bent one is bent alike.
std::vector<GLuint> Triangles(GLenum mode, const std::vector<GLuint>& corners);

/// The ends of lines for an area's corners, two for each: every polygon's own edges.
std::vector<GLuint> Outlines(GLenum mode, const std::vector<GLuint>& corners);

} // namespace WebGL
