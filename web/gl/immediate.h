#pragma once

#include "web/gl/vertices.h"

#include <bitset>
#include <memory>
#include <vector>

#include <GL/gl.h>

namespace WebGL {

/// What came between glBegin() and glEnd().
struct Primitive {
    GLenum mode = GL_POINTS;
    GLsizei count = 0;
    std::bitset<Slot::count> slots;   ///< that were set in between, the vertex included
    std::vector<unsigned char> bytes; ///< per vertex, four floats for each of these slots in order
    std::array<Vector4, Slot::count> last{}; ///< values of these slots at the end
};

/// Collects vertices between glBegin() and glEnd().
class Immediate {
public:
    bool Begun() const { return open != nullptr; }
    void Begin(GLenum mode);

    /// To be called while begun only.
    void Set(std::size_t slot, const Vector4& value);
    void AddVertex(const Vector4& position);
    std::shared_ptr<const Primitive> End();

private:
    using Corner = std::array<Vector4, Slot::count>;
    std::shared_ptr<Primitive> open;
    Corner now{};
    std::vector<Corner> corners;
};

} // namespace WebGL
