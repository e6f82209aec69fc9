#pragma once

#include "engine/math/vec3.h"

namespace Vell {

/// An eye in the world and the point it looks at; up is always +y.
///
/// Until Set() is called both are the origin: no view can be made of that, and what is drawn
/// through such a camera collapses. The same happens when it looks straight up or down.
///
/// Space: world.
/// Needs: a current context, for Draw() alone.
class Camera {
public:
    Camera();
    virtual ~Camera();

    /// Moves the eye and aims it; the two setters below do one of both.
    void Set(const vec3& eye, const vec3& point);
    void SetPosition(const vec3& eye);
    void SetTarget(const vec3& point);
    vec3 GetPosition() const { return position; }
    vec3 GetTarget() const { return target; }

    /// Multiplies the view onto the current matrix, which the caller has made the identity.
    virtual void Draw();

protected:
    vec3 position; ///< of the eye
    vec3 target;   ///< that it looks at
};

} // namespace Vell
