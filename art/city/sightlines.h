#pragma once

#include "art/city/builder.h"
#include "art/city/flights.h"
#include "art/lightmap/raytracer.h"

#include <vector>

namespace Art {

/// Corners of all triangles of the surfaces and, for each triangle, its surface.
std::vector<vec3> Corners(const std::vector<Surface>& surfaces, std::vector<int>& owner);

/// Rays among the surfaces of a city, along which it is looked at. A surface shows its front only;
/// from behind one looks through it.
class SightLines {
public:
    static constexpr float sightEnd = 1000; ///< where sight ends, units

    explicit SightLines(const std::vector<Surface>& surfaces);

    /// The nearest triangle along the ray, seen from whichever side.
    bool Closest(vec3 from, vec3 direction, Hit& hit) const {
        return rays.Closest(from, direction, sightEnd, hit);
    }
    /// Whether a triangle turns its front to the ray.
    bool Faces(int triangle, vec3 direction) const;

    /// Calls `met(surface, distance)` for what faces the ray, near first, until that returns false
    /// or `reach` is passed. A surface of several triangles may be met more than once.
    template <class Met>
    void Follow(vec3 from, vec3 direction, float reach, const Met& met) const {
        constexpr float step = 0.002f; // over a triangle that was met
        float distance = 0;
        Hit hit;
        while (rays.Closest(from + direction * distance, direction, reach - distance, hit)) {
            distance += hit.distance + step;
            if (Faces(hit.triangle, direction) && !met(owner[hit.triangle], distance))
                return;
        }
    }

    /// Distance along the ray to the water, from above or from below, or sightEnd.
    static float ToWater(const Eye& eye, vec3 direction);

    /// Follow() along what is left of the ray after the water has thrown it back `toWater` from an
    /// eye over it.
    template <class Met>
    void FollowMirrored(const Eye& eye, vec3 direction, float toWater, const Met& met) const {
        const vec3 point = eye.position + direction * toWater + vec3{0, 0.001f, 0};
        Follow(point, {direction.x, -direction.y, direction.z}, sightEnd, met);
    }

private:
    std::vector<int> owner; ///< of each triangle: its surface
    std::vector<vec3> corners;
    RayTracer rays;
};

} // namespace Art
