#include "art/city/fittingparts.h"

namespace Art {

namespace {

/// A flat piece of the hull whose planks run along the boat. `paint` begins at its lowest, rearmost
/// corner.
void AddPlanking(Builder& b, const std::vector<vec3>& corners, const Paint& paint) {
    const vec3 normal = Normalized(Cross(corners[1] - corners[0], corners.back() - corners[0]));
    const vec3 u = Normalized(vec3{1, 0, 0} - normal * normal.x);
    const vec3 v = Cross(normal, u);
    std::vector<vec2> polygon;
    polygon.reserve(corners.size());
    vec2 low{1e9f, 1e9f};
    for (const vec3& p : corners) {
        polygon.push_back({Dot(p - corners[0], u), Dot(p - corners[0], v)});
        low = {std::min(low.x, polygon.back().x), std::min(low.y, polygon.back().y)};
    }
    for (vec2& p : polygon)
        p = p - low;
    b.Open(corners[0] + u * low.x + v * low.y, u, v, paint).polygons.push_back(polygon);
}

/// A point of the hull: along and across in half lengths and half widths.
struct Hull {
    vec3 at;
    float half;
    float width;

    vec3 operator()(float along, float side, float y) const {
        return {at.x + along * half, at.y + y, at.z + side * width};
    }
};

void AddStrakes(Builder& b, const Hull& hull, float side, const Paint& paint) {
    const std::vector<std::vector<vec3>> strakes = {
        {hull(-0.62f, side * 0.7f, -0.1f), hull(0.62f, side * 0.7f, -0.1f), hull(0.6f, side, 0.26f),
         hull(-0.6f, side, 0.26f)},
        {hull(0.62f, side * 0.7f, -0.1f), hull(0.95f, 0, 0), hull(1.08f, 0, 0.55f),
         hull(0.6f, side, 0.26f)},
        {hull(-0.95f, 0, 0), hull(-0.62f, side * 0.7f, -0.1f), hull(-0.6f, side, 0.26f),
         hull(-1.08f, 0, 0.5f)},
    };
    for (std::vector<vec3> corners : strakes) {
        if (side < 0)
            std::reverse(corners.begin(), corners.end());
        for (std::size_t i = 2; i < corners.size(); ++i)
            AddPlanking(b, {corners[0], corners[i - 1], corners[i]}, paint);
    }
}

} // namespace

void AddBoat(Builder& b, vec3 at, float length) {
    const Hull hull{at, length / 2, length * 0.13f};
    const Paint wood = FittingPaint(Fitting::Wood);
    for (const float side : {1.0f, -1.0f})
        AddStrakes(b, hull, side, wood);
    for (const auto& deck : std::vector<std::vector<vec3>>{
             {hull(-0.6f, 0.98f, 0.12f), hull(0.6f, 0.98f, 0.12f), hull(0.6f, -0.98f, 0.12f),
              hull(-0.6f, -0.98f, 0.12f)},
             {hull(0.6f, 0.95f, 0.2f), hull(1.0f, 0, 0.4f), hull(0.6f, -0.95f, 0.2f)},
             {hull(-0.6f, -0.95f, 0.2f), hull(-1.0f, 0, 0.4f), hull(-0.6f, 0.95f, 0.2f)}})
        AddPlanking(b, deck, wood);
    for (const float bench : {-0.28f, 0.24f})
        AddBox(b,
               {{at.x + bench * hull.half - 0.07f, at.x + bench * hull.half + 0.07f},
                {at.y + 0.19f, at.y + 0.22f},
                {at.z - hull.width, at.z + hull.width}},
               {wood, wood});
}

} // namespace Art
