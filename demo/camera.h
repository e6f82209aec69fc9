#pragma once

#include "engine/core/clock.h"
#include "engine/math/vec3.h"

#include <vector>

/// One straight flight from `start` to `end` (world space) at constant speed, taking `duration`
/// seconds. The duration must not be 0.
struct CameraPath {
    Vell::vec3 start;
    Vell::vec3 end;
    float duration;
};

/// Plays straight flights one after the other against its own clock.
///
/// It only computes points; the scene hands them to the engine's camera each frame, asking for
/// GetTarget() first and GetPos() second. Whichever query sees the end of a flight first restarts
/// the clock and moves on to the next one, so at a cut the look-at point still belongs to the old
/// flight while the eye already stands at the start of the new one.
///
/// The time by which a frame overshot the end of a flight is dropped: the player falls behind the
/// scene's clock by at most one frame per flight.
///
/// After the last flight both queries hold its `end`, for as long as that flight took; the next
/// GetTarget() then starts again with the first flight. With no flight at all both return the
/// zero vector.
class Camera {
public:
    Camera() = default;

    /// Appends a flight between two points in world space; `duration` is in seconds and not 0.
    /// Neither the flight being played nor its clock is touched.
    void AddPath(const Vell::vec3& start, const Vell::vec3& end, float duration);

    /// Starts the first flight now. Call it once, after the last AddPath().
    void Reset();

    /// The eye, in world space, now. The frame that crosses the end of a flight gets a point a
    /// little beyond `end`; the next query is answered from the following flight.
    Vell::vec3 GetPos();

    /// The point to look at, in world space, now: a tenth of the flight ahead of the eye.
    /// Crosses the end of a flight as GetPos() does.
    Vell::vec3 GetTarget();

private:
    /// The flight at `current`, or the last one when all have run out. Needs a flight.
    const CameraPath& CurrentPath() const;

    /// Elapsed part of the current flight: 0 at its start, 1 at its end.
    float Progress();

    /// The point at `progress` of the current flight, extended beyond both ends; the last
    /// flight's `end` when all have run out.
    Vell::vec3 PointAt(float progress) const;

    std::vector<CameraPath> paths;
    unsigned int current = 0; ///< index into `paths`; equals their number after the last one
    Vell::Clock clock;        ///< time since the current flight began
};
