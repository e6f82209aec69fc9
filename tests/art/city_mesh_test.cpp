#include "art/city/meshing.h"
#include "art/city/ordering.h"
#include "art/city/plan.h"
#include "art/city/views.h"
#include "art/lightmap/texels.h"

#include <algorithm>
#include <array>
#include <map>
#include <numeric>

#include <gmock/gmock.h>

namespace {

using namespace Art;

struct Made {
    Builder city = BuildCity(citySeed);
    MeshReport report;
    MeshFile mesh = MeshCity(city, MeasureCity(city), report);
};

const Made& City() {
    static const Made made;
    return made;
}

TEST(Mesh, Fits_the_format_and_the_budget) {
    EXPECT_EQ(WhyNotWritable(City().mesh), "");
    EXPECT_LE(VertexCount(City().mesh), 90000u);
    EXPECT_EQ(VertexCount(City().mesh), City().report.vertices);
    EXPECT_TRUE(City().mesh.hasLightmap);
    EXPECT_EQ(City().mesh.textureDirectory, "Data/Gfx/City/");
}

/// The bits that the texture coordinate of a vertex carries in whole repeats of 64.
unsigned MarksOf(const MeshVertex& v) {
    const auto half = [](float x) { return static_cast<unsigned>(std::floor(x / 64 + 0.5f)); };
    return half(v.texcoord.x) + 32 * half(v.texcoord.y);
}

TEST(Mesh, Begins_with_a_ceiling_and_a_curtain_of_no_size) {
    const std::vector<MeshVertex>& screens = City().mesh.subMeshes[0].vertices;
    ASSERT_GE(screens.size(), 12u); // what drifts in the water follows
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_TRUE(screens[i].position == screens[0].position);
        EXPECT_EQ(screens[i].texcoord.x, 64 * 32);
        EXPECT_EQ(screens[i].texcoord.y, 0);
        EXPECT_EQ(screens[i].normal.z > 0, i < 6);
    }
}

TEST(Mesh, Marks_say_which_pictures_show_a_surface) {
    std::size_t shown[10] = {};
    for (std::size_t s = 1; s < City().mesh.subMeshes.size(); ++s)
        for (const MeshVertex& v : City().mesh.subMeshes[s].vertices) {
            ASSERT_LT(MarksOf(v), 1u << 11); // ten pictures, and whether it shines
            for (unsigned bit = 0; bit < 10; ++bit)
                shown[bit] += MarksOf(v) >> bit & 1;
        }
    // Each picture leaves out most of the city, and none all of it.
    for (const std::size_t vertices : shown) {
        EXPECT_GT(vertices, 300u);
        EXPECT_LT(vertices, City().report.vertices / 2);
    }
}

TEST(Mesh, Panes_of_lit_rooms_are_marked_as_shining) {
    // They are few, on one texture, and their marks say besides which pictures show them.
    std::map<std::string, std::size_t> shining;
    for (std::size_t s = 1; s < City().mesh.subMeshes.size(); ++s)
        for (const MeshVertex& v : City().mesh.subMeshes[s].vertices)
            if (v.texcoord.y > shiningFrom) {
                ++shining[City().mesh.subMeshes[s].textures[0]];
                EXPECT_EQ(MarksOf(v) >> 10, 1u);
                EXPECT_NE(MarksOf(v) & 1023u, 0u);
            }
    ASSERT_EQ(shining.size(), 1u);
    EXPECT_GT(shining["fittings.jpg"], 300u);
    EXPECT_LT(shining["fittings.jpg"], City().report.vertices / 20);
}

TEST(Views, Hold_what_a_flight_sees_and_leave_out_what_stands_behind) {
    // Two walls across the fourth flight's sight, from (40, 9, 10) towards +x, one behind the
    // other.
    Builder b;
    for (const float x : {50.0f, 60.0f})
        b.Rect({x, 0, -60}, {0, 0, 1}, {0, 1, 0}, 140, 40, Plain(Material::Stone));
    const std::vector<unsigned> seen = MeasureViews(b.surfaces);
    const unsigned fourth = 1u << flightViews[Show::BetweenTowers].plain;
    EXPECT_EQ(seen[0] & fourth, fourth);
    EXPECT_EQ(seen[1] & fourth, 0u);
}

TEST(Views, Hold_what_the_water_mirrors) {
    // A board over the water beyond the basin that looks down: out of the eighth flight's sight,
    // which looks down from y = 6, but in the water's mirror.
    Builder b;
    b.Rect({0, 9, 30}, {1, 0, 0}, {0, 0, 1}, 50, 20, Plain(Material::Stone));
    const std::vector<unsigned> seen = MeasureViews(b.surfaces);
    const unsigned mirrored = 1u << flightViews[Show::Basin].mirror;
    EXPECT_EQ(seen[0] & mirrored, mirrored);
}

TEST(Mesh, No_two_charts_share_a_texel) {
    // A texel whose middle is strictly inside triangles of two different planes would be both.
    std::map<std::pair<int, int>, vec3> normals;
    int shared = 0;
    for (std::size_t number = 1; number < City().mesh.subMeshes.size();
         ++number) { // 0 has no charts
        const SubMesh& sub = City().mesh.subMeshes[number];
        for (std::size_t i = 0; i < sub.vertices.size(); i += 3) {
            const MeshVertex* v = &sub.vertices[i];
            const vec2 middle =
                (v[0].lightmap + v[1].lightmap + v[2].lightmap) * (lightmapSize / 3.0f);
            const auto key = std::pair{static_cast<int>(middle.x), static_cast<int>(middle.y)};
            const auto found = normals.emplace(key, v[0].normal).first;
            shared += Length(found->second - v[0].normal) > 0.05f ? 1 : 0;
        }
    }
    EXPECT_EQ(shared, 0);
}

/// What tells surfaces apart: a corner and, in case several meet there, where they look.
using Corner = std::array<float, 6>;
Corner CornerOf(vec3 p, vec3 normal) {
    const auto coarse = [](float x) { return std::round(x * 1000); };
    return {p.x, p.y, p.z, coarse(normal.x), coarse(normal.y), coarse(normal.z)};
}
Corner CornerOf(const Surface& surface) {
    return CornerOf(surface.World(surface.polygons[0][0]), surface.Normal());
}

/// Texels a unit of a triangle: the root of the ratio of its areas in map and world.
float DensityOf(const MeshVertex* v) {
    const float map =
        std::abs(Cross(v[1].lightmap - v[0].lightmap, v[2].lightmap - v[0].lightmap)) *
        lightmapSize * lightmapSize;
    const float world = Length(Cross(v[1].position - v[0].position, v[2].position - v[0].position));
    return std::sqrt(map / std::max(world, 1e-6f));
}

/// What the flights see of the city, which takes half a minute to find out.
const std::vector<Sight>& Sights() {
    static const std::vector<Sight> sights = MeasureSights(BuildCity(citySeed).surfaces);
    return sights;
}

TEST(Mesh, What_the_flights_see_has_a_light_map_density_within_a_factor_of_three) {
    const Builder city = BuildCity(citySeed);
    const std::vector<Sight>& sights = Sights();
    std::map<Corner, bool> seen;
    for (std::size_t i = 0; i < city.surfaces.size(); ++i)
        if (sights[i].rays > 0)
            seen[CornerOf(city.surfaces[i])] = true;
    std::vector<float> densities;
    for (const SubMesh& sub : City().mesh.subMeshes)
        for (std::size_t i = 0; i < sub.vertices.size(); i += 3) {
            const vec3 p = sub.vertices[i].position;
            // Charts of a few texels are rounded up to whole ones; only real areas count.
            const float area =
                Length(Cross(sub.vertices[i + 1].position - p, sub.vertices[i + 2].position - p)) /
                2;
            if (area > 1 && seen.contains(CornerOf(p, sub.vertices[i].normal)))
                densities.push_back(DensityOf(&sub.vertices[i]));
        }
    ASSERT_GT(densities.size(), 500u);
    std::sort(densities.begin(), densities.end());
    const float low = densities[densities.size() / 200];
    const float high = densities[densities.size() - 1 - densities.size() / 200];
    EXPECT_LE(high / low, 3.05f) << low << " to " << high << " texels a unit";
}

TEST(Mesh, What_hides_others_tends_to_come_first) {
    const Builder city = BuildCity(citySeed);
    const std::vector<Sight>& sights = Sights();
    std::map<Corner, float> orders;
    for (std::size_t i = 0; i < city.surfaces.size(); ++i)
        orders[CornerOf(city.surfaces[i])] = sights[i].DrawingOrder();
    std::vector<float> drawn;
    for (const SubMesh& sub : City().mesh.subMeshes)
        for (std::size_t i = 0; i < sub.vertices.size(); i += 3) {
            const auto found =
                orders.find(CornerOf(sub.vertices[i].position, sub.vertices[i].normal));
            if (found != orders.end())
                drawn.push_back(found->second);
        }
    const auto middle = drawn.begin() + static_cast<std::ptrdiff_t>(drawn.size() / 2);
    const double half = static_cast<double>(drawn.size()) / 2;
    const double early = std::accumulate(drawn.begin(), middle, 0.0) / half;
    const double late = std::accumulate(middle, drawn.end(), 0.0) / half;
    EXPECT_LT(early, late - 0.3);
}

TEST(Mesh, Enclosed_surfaces_are_found_and_open_ones_kept) {
    Builder b;
    const auto box = [&](float half) {
        const Paint stone = Plain(Material::Stone);
        b.Rect({-half, -half, half}, {1, 0, 0}, {0, 1, 0}, 2 * half, 2 * half, stone);
        b.Rect({half, -half, -half}, {-1, 0, 0}, {0, 1, 0}, 2 * half, 2 * half, stone);
        b.Rect({half, -half, half}, {0, 0, -1}, {0, 1, 0}, 2 * half, 2 * half, stone);
        b.Rect({-half, -half, -half}, {0, 0, 1}, {0, 1, 0}, 2 * half, 2 * half, stone);
        b.Rect({-half, half, half}, {1, 0, 0}, {0, 0, -1}, 2 * half, 2 * half, stone);
        b.Rect({-half, -half, -half}, {1, 0, 0}, {0, 0, 1}, 2 * half, 2 * half, stone);
    };
    box(5);
    box(1);
    const std::vector<bool> open = FindOpenSurfaces(b.surfaces);
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_EQ(open[i], i < 6) << "surface " << i;
}

} // namespace
