#include "art/lightmap/baker.h"
#include "art/lightmap/raytracer.h"
#include "art/lightmap/texels.h"

#include <cmath>

#include <gmock/gmock.h>

namespace {

using namespace Art;

constexpr int mapSize = 64;

/// A square piece of the light map, in texels.
struct Cut {
    int x, y, side;
};

/// A rectangle from `origin` along u and v with its chart; the normal is u x v.
void AddQuad(MeshFile& mesh, vec3 origin, vec3 u, vec3 v, Cut cut, const char* texture = "white") {
    const vec3 normal = Normalized(Cross(u, v));
    const auto corner = [&](float x, float y) {
        const auto place = [&](int from, float t) {
            return (static_cast<float>(from) + 0.5f + t * static_cast<float>(cut.side - 1)) /
                   mapSize;
        };
        return MeshVertex{
            origin + u * x + v * y, normal, {x, y}, {place(cut.x, x), place(cut.y, y)}};
    };
    SubMesh sub;
    sub.textures[0] = texture;
    for (const vec2 p : {vec2{0, 0}, vec2{1, 0}, vec2{1, 1}, vec2{0, 0}, vec2{1, 1}, vec2{0, 1}})
        sub.vertices.push_back(corner(p.x, p.y));
    mesh.subMeshes.push_back(sub);
}

BakeScene EmptyScene() {
    BakeScene scene;
    scene.mesh = {"Data/", true, {}};
    return scene;
}

BakeQuality Fine(int bounces = 0, int rays = 2048) {
    return {.size = mapSize,
            .sunRays = 64,
            .bounceRays = rays,
            .finalRays = rays,
            .bounces = bounces,
            .threads = 2};
}

/// Mean light of a square of texels, from the bottom as light-map coordinates run.
vec3 Mean(const Picture& light, Cut cut) {
    vec3 sum;
    for (int y = cut.y; y < cut.y + cut.side; ++y)
        for (int x = cut.x; x < cut.x + cut.side; ++x) {
            const Rgba& p = light.At(x, mapSize - 1 - y);
            sum += {p.r, p.g, p.b};
        }
    return sum / static_cast<float>(cut.side * cut.side);
}

constexpr Cut floorChart{4, 4, 16};

TEST(Baker, An_open_plane_under_an_even_sky_has_the_light_of_the_sky) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    scene.sky = [](vec3) { return vec3{0.5f, 0.25f, 1.0f}; };
    const vec3 light = Mean(BakeLight(scene, Fine()), floorChart);
    // A white surface under an even dome of radiance L sends out L.
    EXPECT_NEAR(light.x, 0.5f, 0.005f);
    EXPECT_NEAR(light.y, 0.25f, 0.0025f);
    EXPECT_NEAR(light.z, 1.0f, 0.01f);
}

TEST(Baker, A_sky_that_grows_towards_the_zenith_counts_by_its_height) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    scene.sky = [](vec3 d) { return vec3{1, 1, 1} * d.y; };
    // Mean of cos t over the cosine-weighted hemisphere: integral of 2 sin t cos^2 t = 2 / 3.
    EXPECT_NEAR(Mean(BakeLight(scene, Fine()), floorChart).x, 2.0f / 3, 0.0067f);
}

TEST(Baker, Between_two_walls_only_the_strip_of_sky_counts) {
    BakeScene scene = EmptyScene();
    // A narrow floor midway between two black walls 2 high, 1 away on each side, 4000 long.
    AddQuad(scene.mesh, {-0.01f, 0, 0.01f}, {0.02f, 0, 0}, {0, 0, -0.02f}, floorChart);
    AddQuad(scene.mesh, {-1, 0, 2000}, {0, 0, -4000}, {0, 2, 0}, {30, 4, 8}, "black");
    AddQuad(scene.mesh, {1, 0, -2000}, {0, 0, 4000}, {0, 2, 0}, {44, 4, 8}, "black");
    scene.surfaces["black"] = Picture(1, 1);
    scene.sky = [](vec3) { return vec3{1, 1, 1}; };
    // Form factor of an endless strip seen from below its middle: the sine of the angle from
    // the zenith to the walls' edge, 1 / sqrt(1 + 2 * 2).
    EXPECT_NEAR(Mean(BakeLight(scene, Fine()), floorChart).x, 1 / std::sqrt(5.0f), 0.0045f);
}

/// The inside of a cube of side 2 about the origin.
void AddRoom(MeshFile& mesh, const char* texture) {
    const vec3 x{2, 0, 0};
    const vec3 y{0, 2, 0};
    const vec3 z{0, 0, 2};
    AddQuad(mesh, {-1, -1, -1}, z, x, {4, 4, 12}, texture);
    AddQuad(mesh, {-1, 1, -1}, x, z, {22, 4, 12}, texture);
    AddQuad(mesh, {-1, -1, -1}, x, y, {40, 4, 12}, texture);
    AddQuad(mesh, {-1, -1, 1}, y, x, {4, 22, 12}, texture);
    AddQuad(mesh, {-1, -1, -1}, y, z, {22, 22, 12}, texture);
    AddQuad(mesh, {1, -1, -1}, z, y, {40, 22, 12}, texture);
}

TEST(Baker, A_closed_box_that_glows_holds_the_sum_of_its_bounces) {
    BakeScene scene = EmptyScene();
    AddRoom(scene.mesh, "glowing grey");
    Picture surface(1, 1);
    surface.At(0, 0) = {0.5f, 0.5f, 0.5f, 0.0f};
    scene.surfaces["glowing grey"] = surface;
    scene.glow = 1;
    // Each gathering sees half of (the light so far + the glow 1): 1/2, then 1/2 (1/2 + 1) =
    // 3/4, then 1/2 (3/4 + 1) = 7/8. Nothing is lost, nothing leaks.
    const Picture light = BakeLight(scene, Fine(2, 512));
    for (const Cut wall : {Cut{4, 4, 12}, Cut{22, 4, 12}, Cut{40, 4, 12}, Cut{4, 22, 12},
                           Cut{22, 22, 12}, Cut{40, 22, 12}})
        EXPECT_NEAR(Mean(light, wall).x, 0.875f, 0.00875f);
}

TEST(Baker, A_triangle_that_shines_glows_though_its_texture_has_no_alpha) {
    // The same floor under the same ceiling, once with its texture coordinates below the mark and
    // once above: only then light falls on the floor.
    for (const bool shines : {false, true}) {
        BakeScene scene = EmptyScene();
        AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
        AddQuad(scene.mesh, {-50, 1, -50}, {100, 0, 0}, {0, 0, 100}, {30, 4, 8}, "opaque");
        Picture surface(1, 1);
        surface.At(0, 0) = {0.5f, 0.5f, 0.5f, 1};
        scene.surfaces["opaque"] = surface;
        scene.shiningFrom = 100;
        scene.glow = 1.6f;
        if (shines)
            for (MeshVertex& v : scene.mesh.subMeshes[1].vertices)
                v.texcoord.y += 128;
        // The ceiling fills the sky: 0.5 x 1.6.
        EXPECT_NEAR(Mean(BakeLight(scene, Fine()), floorChart).x, shines ? 0.8f : 0, 0.02f);
    }
}

TEST(Baker, No_light_leaks_into_a_closed_box) {
    BakeScene scene = EmptyScene();
    AddRoom(scene.mesh, "white");
    scene.sky = [](vec3) { return vec3{100, 100, 100}; };
    scene.sun = {{0, 1, 0}, {100, 100, 100}, 0.1f};
    EXPECT_EQ(Mean(BakeLight(scene, Fine(1, 256)), {0, 0, mapSize}).x, 0.0f);
}

TEST(Baker, The_sun_counts_by_its_height) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    // 30 degrees over the horizon: half of its strength falls on the ground.
    scene.sun = {{std::sqrt(0.75f), 0.5f, 0}, {pi, 2 * pi, 0}, 0};
    const vec3 light = Mean(BakeLight(scene, Fine()), floorChart);
    EXPECT_NEAR(light.x, 0.5f, 0.0005f);
    EXPECT_NEAR(light.y, 1.0f, 0.001f);
    EXPECT_EQ(light.z, 0.0f);
}

TEST(Baker, A_broad_sun_makes_a_soft_shadow_edge) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    AddQuad(scene.mesh, {-50, 4, -50}, {50, 0, 0}, {0, 0, 100}, {30, 4, 8});
    scene.sun = {{0, 1, 0}, {pi, pi, pi}, 0.1f};
    const Picture light = BakeLight(scene, Fine());
    // The lid covers x < 0, 4 over the floor: the shadow's edge is 2 * 4 * 0.1 = 0.8 wide.
    const auto at = [&](int column) { return light.At(floorChart.x + column, mapSize - 1 - 12).r; };
    EXPECT_EQ(at(0), 0.0f) << "x = -1 lies in full shadow";
    EXPECT_NEAR(at(15), 1.0f, 1e-4f) << "x = 1 lies in full light";
    EXPECT_NEAR((at(7) + at(8)) / 2, 0.5f, 0.03f) << "x = 0 sees half the disc";
    for (int column = 1; column < 16; ++column)
        EXPECT_GE(at(column), at(column - 1) - 0.05f);
}

TEST(Baker, A_lamp_weakens_with_the_square_of_its_distance) {
    for (const float height : {2.0f, 4.0f}) {
        BakeScene scene = EmptyScene();
        AddQuad(scene.mesh, {-0.01f, 0, 0.01f}, {0.02f, 0, 0}, {0, 0, -0.02f}, floorChart);
        scene.lamps.push_back({{0, height, 0}, {pi, 0, 0}, 0});
        EXPECT_NEAR(Mean(BakeLight(scene, Fine()), floorChart).x, 1 / (height * height),
                    0.01f / (height * height));
    }
}

TEST(Baker, A_lamp_right_beside_a_wall_lights_it) {
    // 0.2 over the floor, so within its own glass. A point of it is 0.15 to 0.25 high and at most
    // 0.07 aside: pi / pi * cos / d^2 lies between 0.96 / 0.26^2 = 14 and 1 / 0.15^2 = 45.
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-0.01f, 0, 0.01f}, {0.02f, 0, 0}, {0, 0, -0.02f}, floorChart);
    scene.lamps.push_back({{0, 0.2f, 0}, {pi, 0, 0}, 0.1f});
    const float light = Mean(BakeLight(scene, Fine()), floorChart).x;
    EXPECT_GT(light, 14);
    EXPECT_LT(light, 45);
}

TEST(Baker, Nothing_stands_in_the_way_of_a_ray_without_length) {
    const RayTracer rays({{-5, -5, 1}, {5, -5, 1}, {0, 5, 1}});
    EXPECT_TRUE(rays.Blocked({}, {0, 0, 1}, 2));
    EXPECT_FALSE(rays.Blocked({}, {0, 0, 1}, 0.5f));
    EXPECT_FALSE(rays.Blocked({}, {0, 0, 1}, 0));
    EXPECT_FALSE(rays.Blocked({}, {0, 0, 1}, -0.1f));
}

TEST(Baker, A_veil_dims_what_it_covers) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, -3, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    scene.sky = [](vec3) { return vec3{1, 1, 1}; };
    scene.veil = [](vec3 p) { return p.y < 0 ? vec3{0.25f, 0.5f, 1.0f} : vec3{1, 1, 1}; };
    const vec3 light = Mean(BakeLight(scene, Fine()), floorChart);
    EXPECT_NEAR(light.x, 0.25f, 0.0025f);
    EXPECT_NEAR(light.y, 0.5f, 0.005f);
}

TEST(Baker, One_thread_and_two_bake_the_same_texels) {
    BakeScene scene = EmptyScene();
    AddRoom(scene.mesh, "white");
    AddQuad(scene.mesh, {-0.5f, 0, 0.5f}, {1, 0, 0}, {0, 0, -1}, {4, 40, 12});
    scene.lamps.push_back({{0.2f, 0.6f, 0.1f}, {1, 0.6f, 0.3f}, 0.1f});
    BakeQuality quality = Fine(1, 32);
    quality.threads = 1;
    const Picture one = BakeLight(scene, quality);
    quality.threads = 2;
    const Picture two = BakeLight(scene, quality);
    for (int y = 0; y < mapSize; ++y)
        for (int x = 0; x < mapSize; ++x)
            ASSERT_TRUE(one.At(x, y).r == two.At(x, y).r && one.At(x, y).b == two.At(x, y).b)
                << x << " " << y;
}

TEST(Baker, Free_texels_take_the_light_of_the_nearest_chart) {
    BakeScene scene = EmptyScene();
    AddQuad(scene.mesh, {-1, 0, 1}, {2, 0, 0}, {0, 0, -2}, floorChart);
    scene.sky = [](vec3) { return vec3{1, 1, 1}; };
    const Picture light = BakeLight(scene, Fine());
    EXPECT_NEAR(light.At(floorChart.x - 2, mapSize - 1 - floorChart.y).r, 1.0f, 0.02f);
    EXPECT_NEAR(light.At(mapSize - 1, 0).r, 1.0f, 0.02f);
}

TEST(Baker, Half_of_full_scale_is_white) {
    Picture light(2, 1);
    light.At(0, 0) = {1, 1, 1, 1};
    light.At(1, 0) = {0.5f, 0, 4.0f, 1};
    const Picture encoded = EncodeLight(light);
    EXPECT_FLOAT_EQ(encoded.At(0, 0).r, 0.5f);
    EXPECT_NEAR(encoded.At(1, 0).r, 0.5f * std::pow(0.5f, 1 / 2.2f), 1e-5f);
    EXPECT_EQ(encoded.At(1, 0).g, 0.0f);
}

TEST(RayTracer, Finds_the_nearest_triangle_and_says_when_there_is_none) {
    const RayTracer empty({});
    Hit hit;
    EXPECT_FALSE(empty.Closest({0, 0, 0}, {0, 1, 0}, 100, hit));
    EXPECT_FALSE(empty.Blocked({0, 0, 0}, {0, 1, 0}, 100));
    std::vector<vec3> corners;
    for (const float height : {5.0f, 2.0f})
        for (const vec3 c : {vec3{-1, height, -1}, vec3{3, height, -1}, vec3{-1, height, 3}})
            corners.push_back(c);
    const RayTracer rays(corners);
    ASSERT_TRUE(rays.Closest({0, 0, 0}, {0, 1, 0}, 100, hit));
    EXPECT_EQ(hit.triangle, 1);
    EXPECT_FLOAT_EQ(hit.distance, 2);
    EXPECT_FLOAT_EQ(hit.u, 0.25f);
    EXPECT_FALSE(rays.Blocked({0, 0, 0}, {0, 1, 0}, 1.9f));
    EXPECT_TRUE(rays.Blocked({0, 0, 0}, {0, 1, 0}, 2.1f));
}

TEST(Texels, Are_claimed_once_by_the_triangle_that_covers_them) {
    MeshFile mesh{"Data/", true, {}};
    AddQuad(mesh, {0, 0, 0}, {1, 0, 0}, {0, 0, -1}, {10, 20, 5});
    const std::vector<Texel> texels = FindTexels(mesh, mapSize);
    // 5 x 5 texels and one ring about them, whose corners lie farther off than one texel.
    EXPECT_EQ(texels.size(), 7u * 7u - 4u);
    for (const Texel& texel : texels) {
        EXPECT_GE(texel.x, 9);
        EXPECT_LE(texel.y, 25);
        EXPECT_GE(texel.position.x, -1e-4f);
        EXPECT_LE(texel.position.x, 1.0001f);
    }
}

} // namespace
