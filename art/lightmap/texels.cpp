#include "art/lightmap/texels.h"

#include <algorithm>
#include <cmath>

namespace Art {

namespace {

/// A triangle in texel coordinates of the light map.
struct Footprint {
    vec2 a, b, c;

    /// Weights of b and c at p.
    vec2 Weights(vec2 p) const {
        const float area = Cross(b - a, c - a);
        if (std::abs(area) < 1e-9f)
            return {0, 0};
        return {Cross(p - a, c - a) / area, Cross(b - a, p - a) / area};
    }
};

vec2 NearestOnEdge(vec2 p, vec2 a, vec2 b) {
    const vec2 along = b - a;
    const float length = Dot(along, along);
    return a + along * (length > 0 ? std::clamp(Dot(p - a, along) / length, 0.0f, 1.0f) : 0.0f);
}

/// The point of the triangle nearest to p.
vec2 NearestIn(const Footprint& t, vec2 p) {
    const vec2 w = t.Weights(p);
    if (w.x >= 0 && w.y >= 0 && w.x + w.y <= 1 && std::abs(Cross(t.b - t.a, t.c - t.a)) > 1e-9f)
        return p;
    vec2 best = NearestOnEdge(p, t.a, t.b);
    for (const vec2 q : {NearestOnEdge(p, t.b, t.c), NearestOnEdge(p, t.c, t.a)})
        if (Length(q - p) < Length(best - p))
            best = q;
    return best;
}

/// Who owns a texel so far, and how far its middle lies from the owner.
struct Claim {
    int triangle = -1;
    float distance = 1e9f;
    vec2 point;
};

void ClaimTexels(std::vector<Claim>& claims, const Footprint& t, int triangle, int size) {
    // A texel's middle may lie this far outside and still be claimed for the filter's sake.
    constexpr float margin = 1.0f;
    const auto low = [&](float v) { return std::max(0, static_cast<int>(std::floor(v - margin))); };
    const auto high = [&](float v) {
        return std::min(size - 1, static_cast<int>(std::ceil(v + margin)));
    };
    const int y1 = high(std::max({t.a.y, t.b.y, t.c.y}));
    const int x1 = high(std::max({t.a.x, t.b.x, t.c.x}));
    for (int y = low(std::min({t.a.y, t.b.y, t.c.y})); y <= y1; ++y) {
        for (int x = low(std::min({t.a.x, t.b.x, t.c.x})); x <= x1; ++x) {
            const vec2 middle{static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f};
            const vec2 point = NearestIn(t, middle);
            const float distance = Length(point - middle);
            Claim& claim = claims[static_cast<std::size_t>(y) * size + x];
            if (distance <= margin && distance < claim.distance)
                claim = {triangle, distance, point};
        }
    }
}

Footprint FootprintOf(const MeshVertex* v, float size) {
    return {v[0].lightmap * size, v[1].lightmap * size, v[2].lightmap * size};
}

std::vector<const MeshVertex*> Triangles(const MeshFile& mesh) {
    std::vector<const MeshVertex*> triangles;
    for (const SubMesh& sub : mesh.subMeshes)
        for (std::size_t i = 0; i < sub.vertices.size(); i += 3)
            triangles.push_back(&sub.vertices[i]);
    return triangles;
}

} // namespace

std::vector<Texel> FindTexels(const MeshFile& mesh, int size) {
    const std::vector<const MeshVertex*> triangles = Triangles(mesh);
    std::vector<Claim> claims(static_cast<std::size_t>(size) * size);
    for (std::size_t i = 0; i < triangles.size(); ++i)
        ClaimTexels(claims, FootprintOf(triangles[i], static_cast<float>(size)),
                    static_cast<int>(i), size);
    std::vector<Texel> texels;
    for (std::size_t i = 0; i < claims.size(); ++i) {
        const Claim& claim = claims[i];
        if (claim.triangle < 0)
            continue;
        const MeshVertex* v = triangles[claim.triangle];
        const vec2 w = FootprintOf(v, static_cast<float>(size)).Weights(claim.point);
        const vec3 position = v[0].position + (v[1].position - v[0].position) * w.x +
                              (v[2].position - v[0].position) * w.y;
        texels.push_back({static_cast<int>(i) % size, static_cast<int>(i) / size, claim.triangle,
                          position, v[0].normal});
    }
    return texels;
}

namespace {

/// The mean of the known texels among the eight round (x, y); false when there is none.
bool MeanAround(const std::vector<vec3>& values, const std::vector<std::uint8_t>& known, int size,
                int x, int y, vec3& mean) {
    vec3 sum;
    float count = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            const int nx = x + dx;
            const int ny = y + dy;
            if (nx < 0 || ny < 0 || nx >= size || ny >= size ||
                known[static_cast<std::size_t>(ny) * size + nx] == 0)
                continue;
            sum += values[static_cast<std::size_t>(ny) * size + nx];
            count += 1;
        }
    }
    mean = count > 0 ? sum / count : vec3{};
    return count > 0;
}

} // namespace

void Dilate(std::vector<vec3>& values, std::vector<std::uint8_t>& known, int size) {
    std::vector<std::size_t> unknown;
    for (std::size_t i = 0; i < known.size(); ++i)
        if (known[i] == 0)
            unknown.push_back(i);
    while (!unknown.empty() && unknown.size() < known.size()) {
        std::vector<std::size_t> rest;
        std::vector<std::size_t> filled;
        for (const std::size_t i : unknown) {
            vec3 mean;
            if (MeanAround(values, known, size, static_cast<int>(i) % size,
                           static_cast<int>(i) / size, mean)) {
                values[i] = mean;
                filled.push_back(i);
            } else {
                rest.push_back(i);
            }
        }
        for (const std::size_t i : filled)
            known[i] = 1;
        unknown = std::move(rest);
    }
}

} // namespace Art
