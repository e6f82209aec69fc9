#pragma once

#include "engine/math/vec3.h"

#include <vector>

/// A smooth path through timed points: one cubic polynomial for each interval between two of them,
/// joined with one velocity at each point.
///
/// Use: construct, AddPoint() for every point, EndPath() once, then ask at any time and in any
/// order. Nothing is drawn and no clock is read: the caller brings the time.
///
/// With evenly spaced times this is the natural cubic spline: no acceleration at both ends, and
/// none that jumps in between. With unevenly spaced times position and velocity still have no
/// jump; see EndPath() for the shape that they take.
///
/// Before EndPath(), and after one with fewer than two points, both questions are answered with the
/// zero vector.
class Spline {
public:
    /// Empty: no point, and no coefficients yet.
    Spline() = default;

    /// Frees the coefficients that the last EndPath() made; there may be none.
    ~Spline();

    Spline(const Spline&) = delete;
    Spline& operator=(const Spline&) = delete;

    /// Appends a point, which the path reaches at `time`, in seconds. Times must increase strictly
    /// from point to point; nothing checks it. A path that was ended already needs EndPath() again
    /// before the next question.
    void AddPoint(const Vell::vec3& point, float time);

    /// Solves for the velocities at the points and makes the cubics. With fewer than two points it
    /// does nothing.
    ///
    /// The velocity at an inner point follows from both neighbours, whose difference is divided by
    /// the time to the next one only. That is intended: it gives paths with uneven times their
    /// shape, in which the acceleration jumps at the points.
    ///
    /// Meant to be called once. Another call solves anew, over all points, and leaves the earlier
    /// coefficients allocated until the process ends, which is intended: nothing guards against it.
    void EndPath();

    /// Where the path is at time `t`. From the last point's time on it is exactly the last point;
    /// before the first one's the first cubic goes on backwards.
    Vell::vec3 GetPosition(float t) const;

    /// How fast it moves at time `t`, in units per second along each axis: the derivative of
    /// GetPosition(), and from the last point's time on the velocity of arrival.
    Vell::vec3 GetDerivative(float t) const;

private:
    /// A time within the path: an interval, and the seconds since its start. Interval `n` is the
    /// last point alone.
    struct Moment {
        int interval;
        float h;
    };

    void SolveVelocities(int axis, const std::vector<float>& l);
    void FitInterval(int i, int axis);
    Moment Find(float t) const;

    // In interval i, h seconds after its start, the path is at a + b h + c h^2 + d h^3. Each array
    // has n + 1 elements, the last one for the time after the path, and is null before EndPath().
    Vell::vec3* a = nullptr; ///< the points
    Vell::vec3* b = nullptr; ///< the velocities at them
    Vell::vec3* c = nullptr;
    Vell::vec3* d = nullptr;
    std::vector<Vell::vec3> points;
    std::vector<float> times; ///< of the points, in seconds
    int n = -1;               ///< index of the last point, which is the number of intervals
};
