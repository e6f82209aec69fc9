#pragma once

#include "demo/spline.h"
#include "tests/support/private_member.h"

#include <vector>

// What a spline keeps to itself.

OPEN_PRIVATE(splineA, &Spline::a);
OPEN_PRIVATE(splineB, &Spline::b);
OPEN_PRIVATE(splineC, &Spline::c);
OPEN_PRIVATE(splineD, &Spline::d);
OPEN_PRIVATE(splinePoints, &Spline::points);
OPEN_PRIVATE(splineTimes, &Spline::times);
OPEN_PRIVATE(splineN, &Spline::n);

struct SplineProbe {
    static std::vector<const void*> Fields(const Spline& s) {
        return {&(s.*splineA),      &(s.*splineB),     &(s.*splineC), &(s.*splineD),
                &(s.*splinePoints), &(s.*splineTimes), &(s.*splineN)};
    }
    static std::vector<const Vell::vec3*> Coefficients(const Spline& s) {
        return {(s.*splineA), (s.*splineB), (s.*splineC), (s.*splineD)};
    }
    static Vell::vec3* A(Spline& s) { return s.*splineA; }
    static Vell::vec3* B(Spline& s) { return s.*splineB; }
    static const std::vector<Vell::vec3>& Points(const Spline& s) { return s.*splinePoints; }
    static const std::vector<float>& Times(const Spline& s) { return s.*splineTimes; }
    static int LastIndex(const Spline& s) { return s.*splineN; }
};
