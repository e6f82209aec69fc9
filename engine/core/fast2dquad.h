#pragma once

#include "engine/math/vec2.h"

namespace Vell {

/// A textured rectangle from the origin to a corner, for full-screen passes.
///
/// For the rendering thread only: every Draw() rewrites the one vertex array.
class Fast2DQuad {
public:
    /// The one instance, made on first use and destroyed at exit.
    static Fast2DQuad& GetInstance();

    Fast2DQuad(const Fast2DQuad&) = delete;
    Fast2DQuad& operator=(const Fast2DQuad&) = delete;

    /// Draws (0, 0)..`size` at z = 0 in the units of the caller's matrices, with texture
    /// coordinates (0, 0) at the origin and (1, 1) at `size`. Binds no texture and sets no matrix.
    /// Leaves the vertex and texture coordinate arrays enabled. Needs a current context and no
    /// bound vertex buffer.
    void Draw(const vec2& size);

private:
    Fast2DQuad() = default;
    ~Fast2DQuad() = default;

    static constexpr int stride = 5; ///< floats per vertex: s, t, x, y, z (GL_T2F_V3F)

    /// A triangle strip of four vertices.
    float vertices[4 * stride] = {
        1, 1, 1, 1, 0, //
        0, 1, 0, 1, 0, //
        1, 0, 1, 0, 0, //
        0, 0, 0, 0, 0, //
    };
};

} // namespace Vell
