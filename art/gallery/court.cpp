#include "art/gallery/court.h"

#include "art/common/palette.h"
#include "art/lightmap/baker.h"
#include "art/lightmap/packing.h"

#include <array>
#include <vector>

namespace Art {

namespace {

constexpr int mapSize = 512;
constexpr float texelsPerUnit = 11.0f;

/// A rectangle from `corner` along its two sides, which is seen with u to the right and v up.
struct Wall {
    vec3 corner;
    vec3 u;
    vec3 v;
    int texture;
    Chart chart{};
};

constexpr std::array textures = {"stone.jpg", "trim.jpg", "roof.jpg"};
enum Texture { Stone, Trim, Roof };

class Mason {
public:
    void Rect(vec3 corner, vec3 u, vec3 v, int texture) {
        Wall wall{corner, u, v, texture};
        wall.chart.width = Texels(Length(u));
        wall.chart.height = Texels(Length(v));
        walls.push_back(wall);
    }

    /// Without the side below.
    void Box(vec3 low, vec3 high, int texture) {
        const vec3 x(high.x - low.x, 0, 0);
        const vec3 y(0, high.y - low.y, 0);
        const vec3 z(0, 0, high.z - low.z);
        Rect(low + z, x, y, texture);
        Rect(low + x, -x, y, texture);
        Rect(low, z, y, texture);
        Rect(low + x + z, -z, y, texture);
        Rect(low + y + z, x, -z, texture);
    }

    /// A box with its side below, for what hangs in the air.
    void Beam(vec3 low, vec3 high, int texture) {
        Box(low, high, texture);
        Rect(low, {high.x - low.x, 0, 0}, {0, 0, high.z - low.z}, texture);
    }

    std::vector<Wall> walls;

private:
    static int Texels(float units) {
        return std::max(2, static_cast<int>(units * texelsPerUnit) + 1);
    }
};

/// A pillar, with a foot and a head, on the ground at (x, z).
void AddPillar(Mason& mason, float x, float z) {
    mason.Box({x - 0.36f, 0, z - 0.36f}, {x + 0.36f, 0.3f, z + 0.36f}, Trim);
    mason.Box({x - 0.24f, 0.3f, z - 0.24f}, {x + 0.24f, 3.0f, z + 0.24f}, Trim);
    mason.Beam({x - 0.36f, 3.0f, z - 0.36f}, {x + 0.36f, 3.3f, z + 0.36f}, Trim);
}

void AddColonnade(Mason& mason) {
    for (const float place : {-4.6f, -2.1f, 0.4f, 2.9f, 5.4f}) {
        AddPillar(mason, place, -4.6f);
        if (place > -4.0f)
            AddPillar(mason, -4.6f, place);
    }
    mason.Beam({-5.0f, 3.3f, -5.0f}, {7.0f, 3.8f, -4.2f}, Trim);
    mason.Beam({-5.0f, 3.3f, -4.2f}, {-4.2f, 3.8f, 7.0f}, Trim);
    mason.Beam({-7.0f, 3.8f, -7.0f}, {7.0f, 4.0f, -4.0f}, Roof);
    mason.Beam({-7.0f, 3.8f, -4.0f}, {-4.0f, 4.0f, 7.0f}, Roof);
}

/// The stone in the middle, its steps, and what was left lying about.
void AddMiddle(Mason& mason) {
    mason.Box({-0.4f, 0, -0.4f}, {3.2f, 0.25f, 3.2f}, Trim);
    mason.Box({0.0f, 0.25f, 0.0f}, {2.8f, 0.5f, 2.8f}, Trim);
    mason.Box({0.7f, 0.5f, 0.7f}, {2.1f, 1.3f, 2.1f}, Stone);
    mason.Box({1.05f, 1.3f, 1.05f}, {1.75f, 4.6f, 1.75f}, Trim);
    mason.Box({4.4f, 0, -2.6f}, {5.3f, 0.9f, -1.7f}, Trim);
    mason.Box({4.6f, 0.9f, -2.5f}, {5.2f, 1.5f, -1.9f}, Roof);
    mason.Box({-2.6f, 0, 4.2f}, {-1.8f, 0.8f, 5.0f}, Roof);
}

std::vector<Wall> BuildCourt() {
    Mason mason;
    mason.Rect({-7, 0, 7}, {14, 0, 0}, {0, 0, -14}, Stone);
    mason.Rect({-7, 0, -7}, {14, 0, 0}, {0, 5.5f, 0}, Stone);
    mason.Rect({-7, 0, 7}, {0, 0, -14}, {0, 5.5f, 0}, Stone);
    AddColonnade(mason);
    AddMiddle(mason);
    return mason.walls;
}

void Pack(std::vector<Wall>& walls) {
    std::vector<Chart> charts;
    charts.reserve(walls.size());
    for (const Wall& wall : walls)
        charts.push_back(wall.chart);
    PackCharts(charts, mapSize);
    for (std::size_t i = 0; i < walls.size(); ++i)
        walls[i].chart = charts[i];
}

/// The chart's edges fall on the middles of texels.
MeshVertex VertexAt(const Wall& wall, float u, float v) {
    const Chart& c = wall.chart;
    const vec2 texel(static_cast<float>(c.x) + 0.5f + u * static_cast<float>(c.width - 1),
                     static_cast<float>(c.y) + 0.5f + v * static_cast<float>(c.height - 1));
    return {wall.corner + wall.u * u + wall.v * v, Normalized(Cross(wall.u, wall.v)),
            vec2(u * Length(wall.u), v * Length(wall.v)) * 0.5f, texel / mapSize};
}

vec3 EveningSky(vec3 direction) {
    const float up = Clamp01(direction.y);
    return Lerp(vec3(0.62f, 0.48f, 0.46f), vec3(0.20f, 0.30f, 0.58f), up) * 0.75f;
}

} // namespace

MeshFile CourtMesh() {
    std::vector<Wall> walls = BuildCourt();
    Pack(walls);
    MeshFile mesh;
    mesh.textureDirectory = "gallery/data/court/";
    mesh.hasLightmap = true;
    for (const char* texture : textures)
        mesh.subMeshes.push_back({{std::string("../../../Data/Gfx/City/") + texture, "", ""}, {}});
    constexpr float corners[6][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}};
    for (const Wall& wall : walls)
        for (const auto& [u, v] : corners)
            mesh.subMeshes[static_cast<std::size_t>(wall.texture)].vertices.push_back(
                VertexAt(wall, u, v));
    return mesh;
}

Picture CourtLight(const MeshFile& court, const std::string& folder) {
    BakeScene scene;
    scene.mesh = court;
    for (const SubMesh& sub : court.subMeshes) {
        const std::string& name = sub.textures[0];
        Picture surface = ReadAsEngine(folder + name.substr(name.rfind('/')));
        while (surface.Width() > 64)
            surface = Halved(surface);
        for (int y = 0; y < surface.Height(); ++y)
            for (int x = 0; x < surface.Width(); ++x) {
                const Rgba p = surface.At(x, y);
                const vec3 c = ToLinear({p.r, p.g, p.b});
                surface.At(x, y) = {c.x, c.y, c.z, 1};
            }
        scene.surfaces[name] = surface;
    }
    scene.sun = {Normalized(vec3(0.75f, 0.50f, 0.25f)), vec3(4.6f, 2.9f, 1.45f), 0.02f};
    scene.sky = EveningSky;
    for (const float place : {-3.35f, 1.65f, 4.15f}) {
        scene.lamps.push_back({{place, 2.9f, -5.9f}, vec3(1.0f, 0.45f, 0.12f) * 2.2f, 0.08f});
        scene.lamps.push_back({{-5.9f, 2.9f, place}, vec3(1.0f, 0.45f, 0.12f) * 2.2f, 0.08f});
    }
    return BakeLight(scene, {.size = mapSize, .sunRays = 32, .finalRays = 256, .bounces = 3});
}

} // namespace Art
