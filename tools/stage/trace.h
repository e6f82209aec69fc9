#pragma once

#include "engine/core/GLExtensions.h"

namespace Stage {

/// A call that is about to draw.
struct DrawCall {
    const char* function; ///< as it is written in the source
    int vertices;
    int triangles; ///< 0 for points and lines
    GLuint list;   ///< the display list that is drawn, else 0
};

/// Who is told of the calls to OpenGL that the demo and the engine make. It may ask OpenGL anything
/// but must leave no trace of it: no state changed, no error flag raised.
class Watcher {
public:
    virtual ~Watcher() = default;

    /// Before drawing goes to another framebuffer, or into another texture of the bound one.
    virtual void LeavingTarget() = 0;

    /// Before a call that draws: all that it draws with is bound and switched on.
    virtual void Drawing(const DrawCall& call) = 0;

    /// Before a call of glClear().
    virtual void Clearing(GLbitfield buffers) = 0;

    /// After a uniform of the bound program was sent; `location` is -1 for one that it has not.
    virtual void UniformSent(GLint location) = 0;

    /// After a view was set: `eye` and `centre` are points of three in world units.
    virtual void LookingAt(const double* eye, const double* centre) = 0;
};

/// From now on `watcher` is told; nobody when it is null, as at first.
void Watch(Watcher* watcher);

/// Who is told now: what each call that may be watched asks first.
extern Watcher* watching;

} // namespace Stage
