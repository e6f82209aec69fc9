#include "art/city/builder.h"

namespace Art {

const MaterialFile& FileOf(Material material) {
    static const MaterialFile files[materialCount] = {
        {"tower.png", {16, 16}}, {"house_warm.png", {8, 16}}, {"house_cool.png", {8, 16}},
        {"palace.png", {8, 16}}, {"stone.jpg", {8, 8}},       {"trim.jpg", {4, 4}},
        {"roof.jpg", {6, 6}},    {"seabed.jpg", {12, 12}},    {"lamp.png", {1, 1}},
    };
    return files[static_cast<int>(material)];
}

Paint Plain(Material material, Vec2 shift) {
    const Vec2 tile = FileOf(material).tile;
    return {material, {shift.x / tile.x, shift.y / tile.y}, {1 / tile.x, 1 / tile.y}};
}

Vec3 Place::Turn(Vec3 p) const {
    return {p.x * x.x - p.z * x.y, p.y, p.x * x.y + p.z * x.x};
}

Vec3 Place::World(Vec3 p) const {
    return origin + Turn(p);
}

Surface& Builder::Open(Vec3 origin, Vec3 u, Vec3 v, const Paint& paint) {
    surfaces.push_back({place.World(origin), place.Turn(u), place.Turn(v), paint, {}});
    return surfaces.back();
}

void Builder::Rect(Vec3 origin, Vec3 u, Vec3 v, float w, float h, const Paint& paint) {
    if (w > 1e-4f && h > 1e-4f)
        Open(origin, u, v, paint).polygons.push_back({{0, 0}, {w, 0}, {w, h}, {0, h}});
}

void Builder::Facet(const std::vector<Vec3>& c, const Paint& paint) {
    const Vec3 u = Normalize(c[1] - c[0]);
    const Vec3 normal = Normalize(Cross(c[1] - c[0], c.back() - c[0]));
    const Vec3 v = Cross(normal, u);
    std::vector<Vec2> polygon;
    polygon.reserve(c.size());
    for (const Vec3& p : c)
        polygon.push_back({Dot(p - c[0], u), Dot(p - c[0], v)});
    Open(c[0], u, v, paint).polygons.push_back(polygon);
}

void Builder::Lamp(Vec3 local, float power) {
    lamps.push_back({place.World(local), power});
}

void Builder::Building(Vec2 local) {
    const Vec3 at = place.World({local.x, 0, local.y});
    buildings.push_back({at.x, at.z});
}

} // namespace Art
