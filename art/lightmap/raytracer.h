#pragma once

#include "art/common/math.h"

#include <memory>
#include <vector>

namespace Art {

/// Where a ray met a triangle.
struct Hit {
    float distance = 0;
    int triangle = -1;
    float u = 0; ///< weight of the triangle's second corner
    float v = 0; ///< weight of its third corner
};

/// Closest-hit and any-hit queries on a fixed set of triangles (Embree 3 underneath).
/// Queries may run on several threads at once and are the same on every number of them.
class RayTracer {
public:
    /// `corners`: three per triangle. An empty set is allowed; nothing is ever hit.
    explicit RayTracer(const std::vector<vec3>& corners);
    ~RayTracer();
    RayTracer(const RayTracer&) = delete;
    RayTracer& operator=(const RayTracer&) = delete;

    /// The nearest triangle from `origin` along unit `direction` closer than `reach`.
    bool Closest(vec3 origin, vec3 direction, float reach, Hit& hit) const;
    /// Whether anything lies closer than `reach`; nothing does when that is zero or less.
    bool Blocked(vec3 origin, vec3 direction, float reach) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace Art
