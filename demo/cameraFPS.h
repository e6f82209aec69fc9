#pragma once

#include "engine/math/vec3.h"
#include "engine/scene/camera.h"

#include <SDL.h>

/// A camera that is flown by hand, for looking round a scene: the mouse turns it, the keys
/// Z, Q, S, D and the arrows move it.
///
/// What moves is the target. Each Update() puts the eye one unit away from it, at two angles, so
/// the view turns about the point that it looks at. Hand it to whatever takes a Vell::Camera;
/// Draw() is the base's.
///
/// Space: world. Units: the scene's; the angles are in degrees.
/// Needs: an SDL window that the pointer can be put into; it is held at (200, 200) of it, in
/// pixels from the upper left corner, so the window has to be larger than that.
class FreeFlyCamera : public Vell::Camera {
public:
    /// Looks at (0, 10, 0), from the origin until the first Update() places the eye. A key in that
    /// update moves ten times as far as any later one: a step is measured by the way from eye to
    /// target, and that is still 10 units long.
    FreeFlyCamera();

    /// Puts the eye there, aimed at `point`, which must lie elsewhere: where a flight is to begin.
    /// The target is the point one unit ahead; `point` itself is not kept. Straight up or down the
    /// next Update() aims a degree beside it.
    void Place(const Vell::vec3& eye, const Vell::vec3& point);

    /// Applies one event, then places the eye. Once a frame, with the frame's event:
    ///
    ///     mouse moved         turns by half a degree a pixel away from (200, 200) and puts the
    ///                         pointer back there
    ///     Z, up               forward: towards the target, up and down too
    ///     S, down             back
    ///     Q, left, D, right   sideways, at the same height
    ///     anything else       nothing
    ///
    /// A key moves once for each time it is reported as pressed, 10 units a second for `dt` seconds
    /// and not for as long as it is held; an event that is handed over twice moves twice. The
    /// letters are those of a Z-Q-S-D keyboard, on purpose: on another layout they lie apart.
    ///
    /// `event`: read only, not null, and still the caller's. `dt`: the frame's duration in seconds.
    /// `floorY`: the lowest height that the target may have; it is lifted to it.
    ///
    /// The angle from straight up is kept off both poles, where no view can be made: 180 degrees or
    /// more become 179, and 1 or less becomes 1. Even without any event both angles lose a few
    /// float steps over the first calls, and none after them: they become radians by a double and
    /// degrees again by a slightly smaller float, which is intended.
    void Update(SDL_Event* event, float dt, float floorY);

private:
    void Turn(const SDL_MouseMotionEvent& motion);
    void Move(SDLKey key, const Vell::vec3& step);
    void PlaceEye(float floorY);

    float azimuth = 50.0f;    ///< degrees about the vertical; 0 is an eye on the target's +z side
    float polar = 20.0f;      ///< degrees from straight up, off both poles after an Update()
    float speed = 10.0f;      ///< units per second
    float sensitivity = 0.5f; ///< degrees per pixel
    Vell::vec3 unused;        ///< read and written by nothing; it keeps the object's size
};
