#pragma once

#include "engine/math/plane.h"
#include "engine/math/vec3.h"

namespace Vell {

/// The six clipping planes of a view, in world space, for culling.
///
/// The scene manager rebuilds them in every pass of a frame, right after the pass has set its view:
/// the light's, the camera's, the mirrored one. After the frame they are the camera's.
class Frustum {
public:
    /// The one instance, made on first use and destroyed at exit. Before the first MakePlane() its
    /// planes are zero and nothing is inside.
    static Frustum& GetInstance();

    Frustum(const Frustum&) = delete;
    Frustum& operator=(const Frustum&) = delete;

    /// Takes the planes from OpenGL's current projection and model-view matrices, which must hold
    /// the camera and no model transform. Needs a current context.
    void MakePlane();

    /// Whether `p` lies strictly inside all six planes.
    bool PointIn(const vec3& p) const;

    /// Whether a box may be visible: false only when all eight corners lie outside one of the
    /// planes. A box beside an edge or a corner of the frustum can so pass although it cannot be
    /// seen.
    bool BBoxIn(const vec3& min, const vec3& max) const;

private:
    Frustum() = default;
    ~Frustum() = default;

    Plane planes[6]; ///< right, left, bottom, top, far, near
};

} // namespace Vell
