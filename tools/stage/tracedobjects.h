#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec3.h"

#include <string>
#include <vector>

namespace Stage {

// What was seen of the demo's objects while it loaded them. Noted at all times, for that is long
// before anybody knows which frame is to be looked at.

/// A texture's first level.
struct TracedTexture {
    int width = 0; ///< pixels; 0 for a texture that was never given a size
    int height = 0;
    std::string file; ///< its pixels were read from; empty for a target to draw into
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

/// Paths of the text files that were opened, in order: the shaders among them.
const std::vector<std::string>& TextFiles();

/// One straight flight of the demo's camera, in world units and seconds.
struct TracedFlight {
    Vell::vec3 start;
    Vell::vec3 end;
    float duration = 0.0f;
};

/// The demo's flights in their order.
const std::vector<TracedFlight>& Flights();

/// The music's lowest band as the demo heard it last; 0 before.
float LowestBand();

/// How many triangles so many vertices make in a drawing of this kind; 0 for points and lines.
int TriangleCount(GLenum mode, int vertices);

} // namespace Stage
