#include "art/gallery/shapes.h"

#include <cmath>
#include <utility>

namespace Art {

namespace {

constexpr float step = 0.001f; // of u and v, to tell a slope

vec3 NormalAt(const Shape& shape, float u, float v) {
    const vec3 across = shape(u + step, v) - shape(u - step, v);
    const vec3 up = shape(u, v + step) - shape(u, v - step);
    const vec3 normal = Cross(across, up);
    // At a pole a line round the axis has no length.
    return Length(normal) > 1e-9f ? Normalized(normal) : vec3(0, v > 0.5f ? 1.0f : -1.0f, 0);
}

MeshVertex VertexAt(const Shape& shape, float u, float v) {
    return {shape(u, v), NormalAt(shape, u, v), {u, v}, {}};
}

/// Between two points of a line, by a number of points from its begin.
vec2 Along(const std::vector<vec2>& line, float place) {
    const int last = static_cast<int>(line.size()) - 2;
    const int i = std::clamp(static_cast<int>(std::floor(place)), 0, last);
    const auto index = static_cast<std::size_t>(i);
    return Lerp(line[index], line[index + 1], place - static_cast<float>(i));
}

void AddSide(Vertices& out, vec3 corner, vec3 right, vec3 up, float repeats) {
    const std::size_t first = out.size();
    AddShape(
        out, [&](float u, float v) { return corner + right * u + up * v; }, 1, 1);
    for (std::size_t i = first; i < out.size(); ++i)
        out[i].texcoord =
            vec2(out[i].texcoord.x * Length(right), out[i].texcoord.y * Length(up)) * repeats;
}

} // namespace

void AddShape(Vertices& out, const Shape& shape, int columns, int rows) {
    static constexpr int corners[6][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
            for (const auto& [right, up] : corners)
                out.push_back(VertexAt(
                    shape, static_cast<float>(column + right) / static_cast<float>(columns),
                    static_cast<float>(row + up) / static_cast<float>(rows)));
}

void AddTurned(Vertices& out, const std::vector<vec2>& line, int sides, vec3 middle, vec2 repeats) {
    const std::size_t first = out.size();
    const auto pieces = static_cast<float>(line.size() - 1);
    AddShape(
        out,
        [&](float u, float v) {
            const vec2 p = Along(line, v * pieces);
            return middle + vec3(std::sin(u * 2 * pi) * p.x, p.y, std::cos(u * 2 * pi) * p.x);
        },
        sides, static_cast<int>(line.size()) - 1);
    for (std::size_t i = first; i < out.size(); ++i)
        out[i].texcoord = out[i].texcoord * repeats;
}

void AddBox(Vertices& out, vec3 low, vec3 high, float repeats) {
    const vec3 x(high.x - low.x, 0, 0);
    const vec3 y(0, high.y - low.y, 0);
    const vec3 z(0, 0, high.z - low.z);
    AddSide(out, low + z, x, y, repeats);
    AddSide(out, low + x, -x, y, repeats);
    AddSide(out, low, z, y, repeats);
    AddSide(out, low + x + z, -z, y, repeats);
    AddSide(out, low + y + z, x, -z, repeats);
    AddSide(out, low, x, z, repeats);
}

MeshFile OneMesh(const char* textureDirectory, const char* texture, Vertices vertices) {
    MeshFile mesh;
    mesh.textureDirectory = textureDirectory;
    mesh.subMeshes.push_back({{texture, "", ""}, std::move(vertices)});
    return mesh;
}

} // namespace Art
