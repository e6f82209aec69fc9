#pragma once

#include "art/common/math.h"

#include <array>
#include <string>
#include <vector>

namespace Art {

/// What a surface is made of: one texture file each.
enum class Material {
    Tower,
    Town,
    HouseWarm,
    HouseCool,
    Palace,
    Stone,
    Trim,
    Roof,
    SeaBed,
    Lamp,
    Plaster,
    Fittings,
    Count
};

inline constexpr int materialCount = static_cast<int>(Material::Count);

/// File name of a material's texture and how many units one repeat of it covers.
struct MaterialFile {
    const char* texture;
    vec2 tile; ///< units across and up
};
const MaterialFile& FileOf(Material material);

/// How a surface is covered: texcoord = origin + local * scale, in repeats of the texture.
struct Paint {
    Material material = Material::Stone;
    vec2 origin{};
    vec2 scale{};
    bool shines = false; ///< by itself, in the colours of its texture
};
/// The texture at its natural size, moved by `shift` units.
Paint Plain(Material material, vec2 shift = {});

/// A flat piece of the city: polygons that lie in one plane and share one light-map chart.
struct Surface {
    vec3 origin; ///< world place of local (0, 0)
    vec3 u;      ///< world direction of local x, unit length
    vec3 v;      ///< world direction of local y, unit length; normal = u x v
    Paint paint;
    /// Polygons in local coordinates, counter-clockwise; the first corner of each sees the whole
    /// of it, so that a fan of triangles from there covers it.
    std::vector<std::vector<vec2>> polygons;
    /// Stays in the mesh though no flight shows it: it keeps light out of what is seen.
    bool shades = false;

    vec3 Normal() const { return Cross(u, v); }
    vec3 World(vec2 p) const { return origin + u * p.x + v * p.y; }
};

/// A small warm light for the light map.
struct LampLight {
    vec3 position;
    float power = 1; ///< in ordinary street lamps
};

/// Where local building coordinates stand in the world: rotated about y and moved.
struct Place {
    vec3 origin{};
    vec2 x{1, 0}; ///< world (x, z) direction of local +x, unit length

    vec3 World(vec3 local) const;
    /// A direction, which is rotated only.
    vec3 Rotated(vec3 local) const;
};

/// Collects the surfaces and lamps of the city.
///
/// Parts are built in the local coordinates of the current place: +x along the front,
/// +y up, +z out of the front. Below y = 0 lies water: a wall that crosses the surface is
/// split a little under it (splitHigh, splitLow), because the material drops all that lies
/// under water while the eye is above it.
class Builder {
public:
    /// Walls above the water end here ...
    static constexpr float splitHigh = -0.04f;
    /// ... and what is under water starts here.
    static constexpr float splitLow = -0.05f;

    std::vector<Surface> surfaces;
    std::vector<LampLight> lamps;
    std::vector<vec2> buildings; ///< ground places of the houses and towers

    void SetPlace(const Place& newPlace) { place = newPlace; }
    const Place& GetPlace() const { return place; }

    /// Opens a surface at a local frame and returns it for adding polygons; the reference
    /// holds until the next surface is opened.
    Surface& Open(vec3 origin, vec3 u, vec3 v, const Paint& paint);
    /// A rectangle of w x h from a local corner.
    void Rect(vec3 origin, vec3 u, vec3 v, float w, float h, const Paint& paint);
    /// A flat polygon of three or four local corners, counter-clockwise seen from outside.
    /// Local x of its texture runs along the first edge.
    void Facet(const std::vector<vec3>& corners, const Paint& paint);
    void Lamp(vec3 local, float power = 1);
    /// Counts a building that stands at the local ground point.
    void Building(vec2 local = {});

private:
    Place place;
};

} // namespace Art
