// The part of the city that the sea has taken, and what drifts in the water before it.

#include "art/city/drift.h"
#include "art/city/flights.h"
#include "art/city/quarter.h"
#include "art/city/sightlines.h"
#include "art/city/waterfront.h"
#include "art/common/meshwriter.h"
#include "art/common/picture.h"
#include "tests/art/city_distance.h"
#include "tests/support/scratch.h"

#include <algorithm>
#include <array>
#include <string>

#include <gmock/gmock.h>

namespace {

using namespace Art;

constexpr float repeatsPerMark = 64;
constexpr float lastMark = 31.5f; // the material's LAST_MARK
constexpr float split = -0.045f;  // the material's SPLIT: what lies lower is wholly under water

/// A triangle of what drifts.
using Triangle = std::array<MeshVertex, 3>;

/// What drifts, as the mesh holds it: 32 marks along u are beyond those of all surfaces.
std::vector<Triangle> Drifting() {
    const std::vector<MeshVertex> v = DriftingThings(32 * repeatsPerMark, repeatsPerMark);
    std::vector<Triangle> triangles;
    for (std::size_t i = 0; i + 2 < v.size(); i += 3)
        triangles.push_back({v[i], v[i + 1], v[i + 2]});
    return triangles;
}

/// A mark as the material reads it off a texture coordinate.
float MarkOf(float coordinate) {
    return std::floor(coordinate / repeatsPerMark + 0.5f);
}

float TextureV(const MeshVertex& v) {
    return v.texcoord.y - repeatsPerMark * MarkOf(v.texcoord.y);
}

std::vector<Triangle> Drifting(Drift kind) {
    std::vector<Triangle> all = Drifting();
    std::erase_if(all, [&](const Triangle& t) {
        return MarkOf(t[0].texcoord.y) != static_cast<float>(kind);
    });
    return all;
}

/// The sea bed with the quarter on it, as the city has it.
const Builder& SeaBed() {
    static const Builder bed = [] {
        Builder b;
        AddSeaBed(b, 1);
        return b;
    }();
    return bed;
}

const Builder& Quarter() {
    static const Builder quarter = [] {
        Builder b;
        AddQuarter(b, 1);
        return b;
    }();
    return quarter;
}

std::vector<vec3> QuarterCorners() {
    std::vector<int> owner;
    return Corners(Quarter().surfaces, owner);
}

/// The uppermost thing under a point a little over the streets.
float GroundAt(vec2 p) {
    static const SightLines lines(SeaBed().surfaces);
    constexpr float from = quarterFloor + 0.6f;
    Hit hit;
    return lines.Closest({p.x, from, p.y}, {0, -1, 0}, hit) ? from - hit.distance : -100.0f;
}

float Clearance(vec3 eye, const std::vector<vec3>& corners) {
    float nearest = 1e9f;
    for (std::size_t i = 0; i < corners.size(); i += 3)
        nearest = std::min(nearest, ToTriangle(eye, &corners[i]));
    return nearest;
}

constexpr int eyes = 80;

/// Least distance of the eyes of the flight under water to triangles.
float ClearanceOfFlight(const std::vector<vec3>& corners) {
    float nearest = 1e9f;
    for (int i = 0; i <= eyes; ++i) {
        const float t = static_cast<float>(i) / eyes;
        const Eye eye = EyeAt(Show::flights[Show::UnderWater], t);
        nearest = std::min(nearest, Clearance(eye.position, corners));
    }
    return nearest;
}

std::vector<vec3> CornersOf(const std::vector<Triangle>& triangles) {
    std::vector<vec3> corners;
    for (const Triangle& triangle : triangles)
        for (const MeshVertex& v : triangle)
            corners.push_back(v.position);
    return corners;
}

float TopOf(const std::vector<vec3>& corners) {
    float top = -1e9f;
    for (const vec3 p : corners)
        top = std::max(top, p.y);
    return top;
}

TEST(Quarter, Stays_wholly_under_water) {
    EXPECT_LT(TopOf(QuarterCorners()), split);
}

TEST(Quarter, Keeps_clear_of_the_eye_that_flies_through_it) {
    EXPECT_GT(ClearanceOfFlight(QuarterCorners()), 1.5f);
}

TEST(Quarter, Stands_on_both_sides_of_the_flight_and_all_along_it) {
    const std::vector<vec3> corners = QuarterCorners();
    for (float z = -99; z < -45; z += 5)
        for (const float side : {-1.0f, 1.0f}) {
            const auto stands = [&](vec3 p) {
                return p.z >= z && p.z < z + 10 && (p.x - 30) * side > 2 && p.y > quarterFloor + 1;
            };
            EXPECT_TRUE(std::any_of(corners.begin(), corners.end(), stands)) << z << " " << side;
        }
}

TEST(Quarter, Stays_within_its_budget) {
    const std::size_t vertices = QuarterCorners().size();
    EXPECT_GT(vertices, 3000u);
    EXPECT_LT(vertices, 6000u);
}

TEST(Quarter, The_clearance_test_would_see_a_wall) {
    const std::vector<vec3> wall{{25, -10, -70}, {35, -10, -70}, {30, 0, -70}};
    EXPECT_LT(ClearanceOfFlight(wall), 0.5f); // eyes are 50 / 80 units apart
}

TEST(Drift, Is_marked_as_what_the_material_moves) {
    // Beyond all view marks along u; its kind along v, whose rest runs from root to tip.
    for (const Triangle& triangle : Drifting())
        for (const MeshVertex& v : triangle) {
            ASSERT_GT(MarkOf(v.texcoord.x), lastMark);
            ASSERT_EQ(MarkOf(v.texcoord.y), MarkOf(triangle[0].texcoord.y));
            ASSERT_GE(MarkOf(v.texcoord.y), 1);
            ASSERT_LE(MarkOf(v.texcoord.y), 3);
            ASSERT_GE(TextureV(v), 0);
            ASSERT_LE(TextureV(v), 1);
        }
    for (const Drift kind : {Drift::Weed, Drift::Bubble, Drift::Mote})
        EXPECT_GT(Drifting(kind).size(), 50u);
}

TEST(Drift, Is_never_taken_for_the_ceiling) {
    for (const Triangle& triangle : Drifting())
        for (const MeshVertex& v : triangle) {
            ASSERT_LT(v.normal.z, 0);
            ASSERT_NEAR(Length(v.normal), 1, 1e-5f);
        }
}

TEST(Drift, Moves_each_triangle_as_one) {
    for (const Triangle& triangle : Drifting())
        for (const MeshVertex& v : triangle)
            ASSERT_TRUE(v.normal == triangle[0].normal); // it holds the phases
}

TEST(Drift, Weed_grows_out_of_the_ground) {
    int roots = 0;
    for (const Triangle& triangle : Drifting(Drift::Weed))
        for (const MeshVertex& v : triangle)
            if (TextureV(v) == 0) {
                ++roots;
                const vec2 at{v.position.x, v.position.z};
                EXPECT_LE(v.position.y, GroundAt(at)) << at.x << " " << at.y;
                EXPECT_GT(v.position.y, GroundAt(at) - 1.2f) << at.x << " " << at.y;
            }
    EXPECT_GT(roots, 200);
}

TEST(Drift, Weed_and_dust_stay_under_the_surface) {
    EXPECT_LT(TopOf(CornersOf(Drifting(Drift::Weed))), split);
    EXPECT_LT(TopOf(CornersOf(Drifting(Drift::Mote))), split);
}

TEST(Drift, Bubbles_rise_from_the_ground_and_begin_again_before_the_surface) {
    for (const Triangle& triangle : Drifting(Drift::Bubble))
        for (const MeshVertex& v : triangle) {
            EXPECT_LT(v.position.y + driftRise, split);
            EXPECT_NEAR(v.position.y, quarterFloor + 0.2f, 0.3f);
        }
}

TEST(Drift, The_material_lets_bubbles_rise_as_far) {
    const std::string shader = ReadFile(NIMBREL_SOURCE_DIR "/Data/Gfx/City/shader.vert");
    const std::string name = "const float DRIFT_RISE = ";
    const std::size_t at = shader.find(name);
    ASSERT_NE(at, std::string::npos);
    EXPECT_FLOAT_EQ(std::stof(shader.substr(at + name.size())), driftRise);
}

TEST(Drift, Leaves_the_eye_its_line) {
    // Bubbles swing by 0.07 and weed by 0.3 to each side; dust may be nearer, it is 0.03 small.
    EXPECT_GT(ClearanceOfFlight(CornersOf(Drifting(Drift::Weed))), 2 + 0.3f);
    EXPECT_GT(ClearanceOfFlight(CornersOf(Drifting(Drift::Mote))), 0.45f);
    for (const vec3 p : CornersOf(Drifting(Drift::Bubble)))
        EXPECT_GT(std::abs(p.x - 30), 2 + 0.07f);
}

TEST(Drift, Stays_within_its_budget) {
    EXPECT_LT(Drifting().size() * 3, 3000u);
}

const std::string cityFolder = NIMBREL_SOURCE_DIR "/Data/Gfx/City/";

MeshFile PublishedMesh() {
    MeshFile mesh;
    std::string error;
    EXPECT_TRUE(ReadMesh(cityFolder + "city.xt3dstatic", mesh, error)) << error;
    return mesh;
}

/// The published light on the middles of all triangles that lie wholly between two heights, added
/// up.
vec3 LightBetween(const MeshFile& mesh, const Picture& lightmap, float low, float high) {
    vec3 sum;
    for (const SubMesh& sub : mesh.subMeshes)
        for (std::size_t i = 0; i + 2 < sub.vertices.size(); i += 3) {
            const MeshVertex* v = &sub.vertices[i];
            const auto [lowest, highest] =
                std::minmax({v[0].position.y, v[1].position.y, v[2].position.y});
            if (lowest < low || highest > high || v[0].lightmap == v[1].lightmap)
                continue;
            const vec2 at = (v[0].lightmap + v[1].lightmap + v[2].lightmap) * (1.0f / 3);
            const Rgba light = lightmap.Sample(at.x, at.y);
            sum += {light.r, light.g, light.b};
        }
    return sum;
}

TEST(Quarter, Lies_in_a_light_that_has_lost_its_red) {
    const MeshFile mesh = PublishedMesh();
    const Picture lightmap = ReadAsEngine(cityFolder + "lightmap.jpg");
    // The sea leaves 0.10 of the red and 0.62 of the green, as display values 0.35 and 0.80 of
    // what they were: less than half, for a dusk whose light is a little red.
    const vec3 drowned = LightBetween(mesh, lightmap, -20, -1);
    EXPECT_LT(drowned.x, 0.5f * drowned.y);
    const vec3 dry = LightBetween(mesh, lightmap, 1, 40);
    EXPECT_GT(dry.x, 0.9f * dry.y);
}

TEST(Drift, Follows_the_curtain_in_the_published_mesh) {
    const MeshFile mesh = PublishedMesh();
    const std::vector<MeshVertex>& first = mesh.subMeshes[0].vertices;
    constexpr std::size_t screens = 12;
    ASSERT_EQ(first.size(), screens + 3 * Drifting().size());
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ(MarkOf(first[i].texcoord.y) > 0, i >= screens) << i;
}

} // namespace
