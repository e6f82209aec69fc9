#include "art/city/sightlines.h"

namespace Art {

std::vector<vec3> Corners(const std::vector<Surface>& surfaces, std::vector<int>& owner) {
    std::vector<vec3> corners;
    owner.clear();
    for (std::size_t s = 0; s < surfaces.size(); ++s) {
        for (const auto& polygon : surfaces[s].polygons) {
            for (std::size_t i = 2; i < polygon.size(); ++i) {
                for (const vec2 p : {polygon[0], polygon[i - 1], polygon[i]})
                    corners.push_back(surfaces[s].World(p));
                owner.push_back(static_cast<int>(s));
            }
        }
    }
    return corners;
}

SightLines::SightLines(const std::vector<Surface>& surfaces)
    : corners(Corners(surfaces, owner)), rays(corners) {}

bool SightLines::Faces(int triangle, vec3 direction) const {
    const vec3* c = &corners[static_cast<std::size_t>(triangle) * 3];
    return Dot(Cross(c[1] - c[0], c[2] - c[0]), direction) < 0;
}

float SightLines::ToWater(const Eye& eye, vec3 direction) {
    const float height = eye.position.y - eye.waterHeight;
    return height * direction.y < 0 ? -height / direction.y : sightEnd;
}

} // namespace Art
