// How far points are from triangles; header only.
#pragma once

#include "art/common/math.h"

#include <algorithm>
#include <cmath>

namespace Art {

/// Distance from p to the segment a-b.
inline float ToSegment(vec3 p, vec3 a, vec3 b) {
    const vec3 along = b - a;
    const float t = Clamp01(Dot(p - a, along) / std::max(Dot(along, along), 1e-12f));
    return Length(p - (a + along * t));
}

/// Distance from p to a triangle: to its plane when p stands over it, else to its edges.
inline float ToTriangle(vec3 p, const vec3* c) {
    const vec3 normal = Normalized(Cross(c[1] - c[0], c[2] - c[0]));
    bool over = true;
    float edges = 1e9f;
    for (int i = 0; i < 3; ++i) {
        const vec3 a = c[i];
        const vec3 b = c[(i + 1) % 3];
        over = over && Dot(Cross(normal, b - a), p - a) >= 0;
        edges = std::min(edges, ToSegment(p, a, b));
    }
    return over ? std::abs(Dot(p - c[0], normal)) : edges;
}

} // namespace Art
