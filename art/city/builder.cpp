#include "art/city/builder.h"

namespace Art {

const MaterialFile& FileOf(Material material) {
    static const MaterialFile files[materialCount] = {
        {"tower.png", {16, 16}},     {"town.png", {16, 16}},  {"house_warm.png", {8, 16}},
        {"house_cool.png", {8, 16}}, {"palace.png", {8, 16}}, {"stone.jpg", {4, 4}},
        {"trim.jpg", {4, 4}},        {"roof.jpg", {6, 6}},    {"seabed.jpg", {12, 12}},
        {"lamp.png", {1, 1}},        {"plaster.jpg", {4, 4}}, {"fittings.jpg", {4, 4}},
    };
    return files[static_cast<int>(material)];
}

Paint Plain(Material material, vec2 shift) {
    const vec2 tile = FileOf(material).tile;
    return {material, {shift.x / tile.x, shift.y / tile.y}, {1 / tile.x, 1 / tile.y}};
}

vec3 Place::Rotated(vec3 p) const {
    return {p.x * x.x - p.z * x.y, p.y, p.x * x.y + p.z * x.x};
}

vec3 Place::World(vec3 p) const {
    return origin + Rotated(p);
}

Surface& Builder::Open(vec3 origin, vec3 u, vec3 v, const Paint& paint) {
    surfaces.push_back({place.World(origin), place.Rotated(u), place.Rotated(v), paint, {}, false});
    return surfaces.back();
}

void Builder::Rect(vec3 origin, vec3 u, vec3 v, float w, float h, const Paint& paint) {
    if (w > 1e-4f && h > 1e-4f)
        Open(origin, u, v, paint).polygons.push_back({{0, 0}, {w, 0}, {w, h}, {0, h}});
}

void Builder::Facet(const std::vector<vec3>& c, const Paint& paint) {
    const vec3 u = Normalized(c[1] - c[0]);
    const vec3 normal = Normalized(Cross(c[1] - c[0], c.back() - c[0]));
    const vec3 v = Cross(normal, u);
    std::vector<vec2> polygon;
    polygon.reserve(c.size());
    for (const vec3& p : c)
        polygon.push_back({Dot(p - c[0], u), Dot(p - c[0], v)});
    Open(c[0], u, v, paint).polygons.push_back(polygon);
}

void Builder::Lamp(vec3 local, float power) {
    lamps.push_back({place.World(local), power});
}

void Builder::Building(vec2 local) {
    const vec3 at = place.World({local.x, 0, local.y});
    buildings.push_back({at.x, at.z});
}

} // namespace Art
