#include "web/gl/primitives.h"

#include <array>
#include <cstddef>

namespace WebGL {

namespace {

using Corners = std::vector<GLuint>;

/// Calls with(corner numbers) for each polygon of an area: three, four or all of them.
template <class With>
void ForEachPolygon(GLenum mode, const Corners& corners, With with) {
    const std::size_t count = corners.size();
    const auto each = [&](std::size_t step, std::size_t size, auto numbersAt) {
        for (std::size_t i = 0; i + size <= count; i += step)
            with(numbersAt(i));
    };
    const auto& c = corners;
    switch (mode) {
    case GL_TRIANGLES:
        return each(3, 3, [&](std::size_t i) { return Corners{c[i], c[i + 1], c[i + 2]}; });
    case GL_TRIANGLE_STRIP:
        return each(1, 3, [&](std::size_t i) {
            return i % 2 == 0 ? Corners{c[i], c[i + 1], c[i + 2]}
                              : Corners{c[i + 1], c[i], c[i + 2]};
        });
    case GL_TRIANGLE_FAN:
        return each(1, 3, [&](std::size_t i) { return Corners{c[0], c[i + 1], c[i + 2]}; });
    case GL_QUADS:
        return each(4, 4, [&](std::size_t i) {
            return Corners{c[i], c[i + 1], c[i + 2], c[i + 3]};
        });
    case GL_QUAD_STRIP:
        return each(2, 4, [&](std::size_t i) {
            return Corners{c[i + 2], c[i], c[i + 1], c[i + 3]}; // cut from the first to the last
        });
    default:
        if (count >= 3)
            with(corners);
    }
}

void AddTriangles(Corners& all, const Corners& polygon) {
    if (polygon.size() == 4) {
        all.insert(all.end(), {polygon[0], polygon[1], polygon[3]});
        all.insert(all.end(), {polygon[1], polygon[2], polygon[3]});
        return;
    }
    for (std::size_t i = 2; i < polygon.size(); ++i)
        all.insert(all.end(), {polygon[0], polygon[i - 1], polygon[i]});
}

} // namespace

bool IsArea(GLenum mode) {
    return mode >= GL_TRIANGLES && mode <= GL_POLYGON;
}

bool IsNative(GLenum mode) {
    return mode < GL_QUADS;
}

std::vector<GLuint> Triangles(GLenum mode, const std::vector<GLuint>& corners) {
    Corners triangles;
    ForEachPolygon(mode, corners,
                   [&](const Corners& polygon) { AddTriangles(triangles, polygon); });
    return triangles;
}

std::vector<GLuint> Outlines(GLenum mode, const std::vector<GLuint>& corners) {
    Corners lines;
    ForEachPolygon(mode, corners, [&](const Corners& polygon) {
        for (std::size_t i = 0; i < polygon.size(); ++i)
            lines.insert(lines.end(), {polygon[i], polygon[(i + 1) % polygon.size()]});
    });
    return lines;
}

} // namespace WebGL
