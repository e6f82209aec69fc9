#include "demo/spline.h"

using Vell::vec3;

namespace {

constexpr int axes = 3;

/// The leak checker knows the arrays that a second EndPath() leaves behind by this function's name.
vec3* NewCoefficients(int count) {
    return new vec3[count];
}

/// What elimination leaves of the diagonal 2, 4, ... 4, 2 of a matrix with 1 on both sides of it;
/// the same for all axes, and for all times.
std::vector<float> EliminatedDiagonal(int n) {
    std::vector<float> l(n + 1);
    l[0] = 2.0;
    for (int i = 1; i < n; ++i)
        l[i] = 4.0 - 1.0 / l[i - 1];
    l[n] = 2.0 - 1.0 / l[n - 1];
    return l;
}

} // namespace

Spline::~Spline() {
    delete[] a;
    delete[] b;
    delete[] c;
    delete[] d;
}

void Spline::AddPoint(const vec3& point, float time) {
    points.push_back(point);
    times.push_back(time);
    ++n;
}

void Spline::EndPath() {
    if (n < 1)
        return; // no interval
    const std::vector<float> l = EliminatedDiagonal(n);
    // What a, b, c and d held before is not freed: intended, a path ended twice leaves it behind.
    a = NewCoefficients(n + 1);
    b = NewCoefficients(n + 1);
    c = NewCoefficients(n + 1);
    d = NewCoefficients(n + 1);
    for (int axis = 0; axis < axes; ++axis) {
        SolveVelocities(axis, l);
        for (int i = 0; i < n; ++i)
            FitInterval(i, axis);
    }
    a[n] = points[n];
    c[n] = vec3(0);
    d[n] = vec3(0);
}

/// Elimination down to the last point, then substitution back to the first.
void Spline::SolveVelocities(int axis, const std::vector<float>& l) {
    const auto point = [&](int i) { return points[i][axis]; };
    const auto duration = [&](int i) { return times[i + 1] - times[i]; };
    std::vector<float> z(n + 1);
    z[0] = 3.0 * (point(1) - point(0)) / duration(0);
    // The following interval alone divides: intended, it is what gives uneven times their shape.
    for (int i = 1; i < n; ++i)
        z[i] = 3.0 * (point(i + 1) - point(i - 1)) / duration(i) - z[i - 1] / l[i - 1];
    z[n] = 3.0 * (point(n) - point(n - 1)) / duration(n - 1) - z[n - 1] / l[n - 1];
    b[n][axis] = z[n] / l[n];
    for (int i = n - 1; i >= 0; --i)
        b[i][axis] = (z[i] - b[i + 1][axis]) / l[i];
}

/// The cubic that has the points and velocities of both ends of interval `i`.
void Spline::FitInterval(int i, int axis) {
    const float start = points[i][axis];
    const float end = points[i + 1][axis];
    const float startVelocity = b[i][axis];
    const float endVelocity = b[i + 1][axis];
    const float h = times[i + 1] - times[i];
    a[i][axis] = start;
    c[i][axis] = (3.0 * (end - start) - (endVelocity + 2 * startVelocity) * h) / (h * h);
    d[i][axis] = (2 * (start - end) + (endVelocity + startVelocity) * h) / (h * h * h);
}

Spline::Moment Spline::Find(float t) const {
    if (!(times[n] > t)) // a time that is not a number is after the end, too
        return {n, 0.0f};
    int i = 0;
    while (t > times[i + 1]) // a point's own time belongs to the interval that ends there
        ++i;
    return {i, t - times[i]};
}

vec3 Spline::GetPosition(float t) const {
    if (a == nullptr)
        return vec3();
    const auto [i, h] = Find(t);
    vec3 position;
    for (int axis = 0; axis < axes; ++axis)
        position[axis] =
            d[i][axis] * (h * h * h) + (c[i][axis] * (h * h) + (b[i][axis] * h + a[i][axis]));
    return position;
}

vec3 Spline::GetDerivative(float t) const {
    if (a == nullptr)
        return vec3();
    const auto [i, h] = Find(t);
    vec3 velocity;
    for (int axis = 0; axis < axes; ++axis)
        velocity[axis] = 3.0 * d[i][axis] * (h * h) + (2 * c[i][axis] * h + b[i][axis]);
    return velocity;
}
