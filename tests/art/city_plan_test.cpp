#include "art/city/flights.h"
#include "art/city/houses.h"
#include "art/city/plan.h"
#include "art/city/sightlines.h"
#include "art/city/waterfront.h"
#include "art/lightmap/raytracer.h"
#include "tests/art/city_distance.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace {

using namespace Art;

/// The whole city, built once for all tests.
const Builder& City() {
    static const Builder city = BuildCity(citySeed);
    return city;
}

struct Solid {
    std::vector<int> owner;
    std::vector<vec3> corners = Corners(City().surfaces, owner);
    RayTracer rays{corners};
};

const Solid& CitySolid() {
    static const Solid solid;
    return solid;
}

float Clearance(vec3 eye) {
    float nearest = 1e9f;
    const std::vector<vec3>& corners = CitySolid().corners;
    for (std::size_t i = 0; i < corners.size(); i += 3)
        nearest = std::min(nearest, ToTriangle(eye, &corners[i]));
    return nearest;
}

struct ClearRow {
    Show::FlightNumber flight;
    float clear; ///< least distance of the eye to any surface, units
};

class EyePath : public ::testing::TestWithParam<ClearRow> {};

TEST_P(EyePath, Keeps_clear_of_every_wall) {
    const Show::Flight& flight = Show::flights[GetParam().flight];
    for (int i = 0; i <= 80; ++i) {
        const Eye eye = EyeAt(flight, static_cast<float>(i) / 80);
        ASSERT_GE(Clearance(eye.position), GetParam().clear)
            << "eye " << eye.position.x << " " << eye.position.y << " " << eye.position.z;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Plan, EyePath,
    ::testing::Values(ClearRow{Show::OpenSea, 1.5f}, ClearRow{Show::CityRise, 1.5f},
                      ClearRow{Show::UnderWater, 1.5f}, ClearRow{Show::BetweenTowers, 2.0f},
                      ClearRow{Show::Canal, 1.85f}, ClearRow{Show::ToBasin, 1.9f},
                      ClearRow{Show::OverRoofs, 1.5f}, ClearRow{Show::Basin, 1.5f}),
    [](const auto& row) { return "flight_" + std::to_string(row.param.flight + 1); });

TEST(Plan, The_clearance_test_would_see_a_wall) {
    const std::vector<vec3> wall{{-5, -5, 0}, {5, -5, 0}, {0, 5, 0}};
    EXPECT_FLOAT_EQ(ToTriangle({0, 0, 1.25f}, wall.data()), 1.25f);
    EXPECT_FLOAT_EQ(ToTriangle({0, 8, 0}, wall.data()), 3);
}

TEST(Plan, Sixty_buildings_and_more_stand_around_the_basin) {
    int near = 0;
    for (const vec2 at : City().buildings)
        near += Length(at - vec2{26, 14}) < 40 ? 1 : 0;
    EXPECT_GE(near, 60);
}

/// The highest thing over a ground point, or -100.
float HeightAt(vec2 p) {
    Hit hit;
    return CitySolid().rays.Closest({p.x, 90, p.y}, {0, -1, 0}, 190, hit) ? 90 - hit.distance
                                                                          : -100;
}

TEST(Plan, The_basin_is_open_water_nine_units_round) {
    // Stairs and boats may reach in by two units; nothing else stands inside.
    for (float radius = 0; radius < 7; radius += 0.25f)
        for (int i = 0; i < 64; ++i) {
            const float angle = 2 * pi * static_cast<float>(i) / 64;
            const vec2 p{26 + radius * std::cos(angle), 14 + radius * std::sin(angle)};
            ASSERT_LT(HeightAt(p), 0) << p.x << " " << p.y;
        }
}

TEST(Plan, Land_covers_the_strip_that_the_water_darkens) {
    // The water is drawn at half brightness over 0 <= x <= 1, z > 0; as far as it can be made
    // out there must be something on it.
    for (float z = 0.5f; z < 104; z += 0.5f)
        for (const float x : {0.02f, 0.5f, 0.98f})
            ASSERT_GT(HeightAt({x, z}), 0) << "x " << x << " z " << z;
}

TEST(Plan, Each_house_of_the_far_town_keeps_to_a_part_of_its_facade) {
    // The parts are 8 bays and 8 storeys of 16: half of the texture either way.
    bool left = false;
    bool right = false;
    for (unsigned house = 0; house < 24; ++house) {
        Builder b;
        AddFacadeBox(b, {{0, 5.2f}, {0.7f, 6.7f}, {-4, 0}}, Material::Town, Plain(Material::Trim),
                     house);
        const float part = std::floor(b.surfaces[0].paint.origin.x * 2) / 2;
        (part > 0 ? right : left) = true;
        for (std::size_t side = 0; side < 4; ++side) {
            const Paint& paint = b.surfaces[side].paint;
            const float width = side % 2 == 0 ? 5.2f : 4.0f;
            EXPECT_GE(paint.origin.x, part) << house << ", side " << side;
            EXPECT_LE(paint.origin.x + width * paint.scale.x, part + 0.5f + 1e-5f)
                << house << ", side " << side;
        }
    }
    EXPECT_TRUE(left && right);
}

TEST(Plan, Four_or_five_towers_stand_out_of_the_skyline) {
    std::vector<float> heights;
    for (float x = -12; x < 72; x += 0.5f)
        for (float z = -42; z < 72; z += 0.5f)
            if (HeightAt({x, z}) > 23.9f)
                heights.push_back(HeightAt({x, z}));
    ASSERT_FALSE(heights.empty());
    EXPECT_LE(*std::max_element(heights.begin(), heights.end()), 32.5f);
}

TEST(Plan, Tower_tips_stand_out_of_the_sea_on_both_sides_of_the_first_flight) {
    // The city is 20 units low then; the eye looks along -z from x = 0.
    bool left = false;
    bool right = false;
    for (float x = -40; x < 60; x += 0.5f)
        for (float z = -42; z < -12; z += 0.5f)
            if (HeightAt({x, z}) > 21) {
                left = left || x < -2;
                right = right || x > 2;
            }
    EXPECT_TRUE(left);
    EXPECT_TRUE(right);
}

TEST(Plan, Nothing_reaches_the_second_flights_eye) {
    for (float x = 40; x < 60; x += 0.5f)
        for (float z = -110; z < -45; z += 0.5f)
            ASSERT_LT(HeightAt({x, z}), 0);
}

TEST(Plan, The_low_roofs_stay_under_the_seventh_flight) {
    for (float x = 0; x < 20; x += 0.25f)
        ASSERT_LT(HeightAt({x, 12}), 6.5f) << "x " << x;
}

TEST(Plan, The_city_reaches_twelve_units_below_the_water) {
    float lowest = 0;
    for (const Surface& surface : City().surfaces)
        if (surface.paint.material == Material::Stone)
            for (const vec2 p : surface.polygons[0])
                lowest = std::min(lowest, surface.World(p).y);
    EXPECT_LE(lowest, -12);
}

TEST(Plan, No_triangle_crosses_the_line_under_the_water) {
    // The material drops what lies under water while the eye is above; half a triangle
    // cannot be dropped.
    const std::vector<vec3>& corners = CitySolid().corners;
    constexpr float split = (Builder::splitHigh + Builder::splitLow) / 2;
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const bool first = corners[i].y < split;
        ASSERT_EQ(first, corners[i + 1].y < split) << "at " << corners[i].x << " " << corners[i].z;
        ASSERT_EQ(first, corners[i + 2].y < split) << "at " << corners[i].x << " " << corners[i].z;
    }
}

TEST(Plan, The_same_seed_builds_the_same_city_and_another_does_not) {
    const Builder again = BuildCity(citySeed);
    const Builder other = BuildCity(citySeed + 1);
    ASSERT_EQ(again.surfaces.size(), City().surfaces.size());
    for (std::size_t i = 0; i < again.surfaces.size(); ++i)
        ASSERT_TRUE(again.surfaces[i].origin == City().surfaces[i].origin);
    EXPECT_NE(other.surfaces.size(), City().surfaces.size());
}

TEST(Plan, Every_polygon_is_seen_whole_from_its_first_corner_and_faces_outwards) {
    for (const Surface& surface : City().surfaces) {
        ASSERT_NEAR(Length(surface.Normal()), 1, 1e-3f);
        for (const auto& polygon : surface.polygons)
            for (std::size_t i = 2; i < polygon.size(); ++i)
                ASSERT_GE(Cross(polygon[i - 1] - polygon[0], polygon[i] - polygon[0]), -1e-3f)
                    << "at " << surface.World(polygon[i]).x << " " << surface.World(polygon[i]).z;
    }
}

} // namespace
