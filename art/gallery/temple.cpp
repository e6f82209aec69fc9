#include "art/gallery/temple.h"

#include "art/gallery/shapes.h"

#include <cmath>

namespace Art {

namespace {

constexpr int columns = 10;
constexpr float ring = 12.0f; // radius

vec3 OnRing(float place, float radius, float height) {
    const float angle = place * 2 * pi / columns;
    return {std::sin(angle) * radius, height, std::cos(angle) * radius};
}

void AddColumn(Vertices& out, vec3 foot) {
    AddTurned(out,
              {{1.5f, 0.0f},
               {1.5f, 0.5f},
               {1.1f, 0.7f},
               {1.0f, 4.5f},
               {0.85f, 9.0f},
               {1.3f, 9.7f},
               {1.4f, 10.2f},
               {0.0f, 10.2f}},
              12, foot, {3, 4});
}

/// A stone from column to column, over two thirds of the ring: the rest has fallen.
void AddLintel(Vertices& out, int column, float height) {
    const vec3 a = OnRing(static_cast<float>(column), ring, height);
    const vec3 b = OnRing(static_cast<float>(column) + 1.0f, ring, height);
    const vec3 along = Normalized(b - a);
    const vec3 outward = Cross(along, vec3(0, 1, 0));
    const auto side = [&](vec3 corner, vec3 right, vec3 up) {
        AddShape(
            out, [=](float u, float v) { return corner + right * u + up * v; }, 1, 1);
    };
    const vec3 length = b - a + along * 1.6f;
    const vec3 low = a - along * 0.8f;
    const vec3 up(0, 1.3f, 0);
    side(low + outward * 0.9f, length, up);
    side(low + length - outward * 0.9f, -length, up);
    side(low + outward * 0.9f + up, length, outward * -1.8f);
    side(low - outward * 0.9f, length, outward * 1.8f);
    side(low - outward * 0.9f, outward * 1.8f, up);
    side(low + length + outward * 0.9f, outward * -1.8f, up);
}

/// The tube's middle line.
vec3 KnotLine(float u) {
    const float t = u * 2 * pi;
    const float radius = 0.8f + 0.36f * std::cos(3 * t);
    return {std::cos(2 * t) * radius, std::sin(2 * t) * radius, 0.42f * std::sin(3 * t)};
}

vec3 KnotTube(float u, float v) {
    constexpr float thickness = 0.23f;
    const vec3 along = Normalized(KnotLine(u + 0.001f) - KnotLine(u - 0.001f));
    const vec3 right = Normalized(Cross(along, vec3(0, 0, 1)));
    const vec3 up = Cross(right, along);
    const float angle = v * 2 * pi;
    return KnotLine(u) + (right * std::cos(angle) + up * std::sin(angle)) * thickness;
}

} // namespace

MeshFile TempleMesh() {
    Vertices stone;
    for (int column = 0; column < columns; ++column)
        AddColumn(stone, OnRing(static_cast<float>(column), ring, 1.2f));
    for (int column = 0; column < 7; ++column)
        AddLintel(stone, column, 11.4f);
    AddTurned(stone, {{2.4f, 1.2f}, {2.4f, 2.2f}, {1.5f, 2.4f}, {0.9f, 13.5f}, {0.0f, 15.5f}}, 4,
              {}, {4, 5});
    Vertices ground;
    AddTurned(ground,
              {{16, 0},
               {16, 0.4f},
               {15.3f, 0.4f},
               {15.3f, 0.8f},
               {14.6f, 0.8f},
               {14.6f, 1.2f},
               {0, 1.2f}},
              40, {}, {16, 8});
    AddShape(
        ground, [](float u, float v) { return vec3(u * 120 - 60, 0, 60 - v * 120); }, 1, 1);
    for (std::size_t i = ground.size() - 6; i < ground.size(); ++i)
        ground[i].texcoord = ground[i].texcoord * 12.0f;
    MeshFile mesh = OneMesh("Data/Gfx/City/", "stone.jpg", std::move(stone));
    mesh.subMeshes.push_back({{"seabed.jpg", "", ""}, std::move(ground)});
    return mesh;
}

MeshFile KnotMesh() {
    Vertices out;
    AddShape(out, KnotTube, 96, 11);
    return OneMesh("gallery/data/", "balloon.png", std::move(out));
}

} // namespace Art
