#pragma once

#include "engine/core/GLExtensions.h"

#include <vector>

namespace Stage {

// What was seen of the demo's objects while it loaded them. Noted at all times, for that is long
// before anybody knows which frame is to be looked at.

/// A texture's first level.
struct TracedTexture {
    int width = 0; ///< pixels; 0 for a texture that was never given a size
    int height = 0;
    bool picture = false; ///< made of pixels; a target to draw into has none yet
};

/// What is known of a texture.
TracedTexture FindTexture(GLuint texture);

/// What a display list draws.
struct TracedList {
    int vertices = 0;
    int triangles = 0;
    std::vector<GLuint> textures; ///< in the order in which it binds them
};

/// What is known of a display list; all 0 for one without vertices.
TracedList FindList(GLuint list);

/// The music's lowest band as the demo heard it last; 0 before.
float LowestBand();

/// How many triangles so many vertices make in a drawing of this kind; 0 for points and lines.
int TriangleCount(GLenum mode, int vertices);

} // namespace Stage
