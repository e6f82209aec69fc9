// What passes near the eye: its texels, its relief, and that it leaves the rest of a wall alone.

#include "art/city/flights.h"
#include "art/city/nearness.h"
#include "art/city/nearwalls.h"
#include "art/city/plan.h"
#include "art/city/sightlines.h"
#include "art/common/fittings.h"

#include <functional>
#include <map>

#include <gmock/gmock.h>

namespace {

using namespace Art;

const Builder& City() {
    static const Builder city = BuildCity(citySeed);
    return city;
}

const SightLines& Lines() {
    static const SightLines lines(City().surfaces);
    return lines;
}

/// Calls `met(surface, depth)` for what each of many rays through the pictures of the flights over
/// the risen city meets first.
void LookAround(const std::function<void(const Surface&, float)>& met) {
    constexpr int eyes = 40;
    constexpr int across = 240;
    constexpr int up = 24;
    for (std::size_t f = Show::BetweenTowers; f < Show::flightCount; ++f)
        for (int i = 0; i < eyes * across * up; ++i) {
            const Eye eye =
                EyeAt(Show::flights[f], (static_cast<float>(i / (across * up)) + 0.5f) / eyes);
            const int column = i % across;
            const int row = i / across % up;
            const vec3 ray = RayThrough(eye, (static_cast<float>(column) + 0.5f) / across * 2 - 1,
                                        (static_cast<float>(row) + 0.5f) / up * 2 - 1);
            Lines().Follow(eye.position, ray, SightLines::ToWater(eye, ray),
                           [&](int surface, float distance) {
                               met(City().surfaces[static_cast<std::size_t>(surface)],
                                   distance * Dot(ray, eye.forward));
                               return false;
                           });
        }
}

/// Side of a material's published texture, across and up.
vec2 TexelsOf(Material material) {
    static std::map<Material, vec2> sizes;
    if (!sizes.contains(material)) {
        const Picture picture = ReadPicture(std::string(NIMBREL_SOURCE_DIR "/Data/Gfx/City/") +
                                            FileOf(material).texture);
        sizes[material] = {static_cast<float>(picture.Width()),
                           static_cast<float>(picture.Height())};
    }
    return sizes[material];
}

/// Texels a unit, the lesser of across and up.
float DensityOf(const Surface& surface) {
    const vec2 texels = TexelsOf(surface.paint.material);
    return std::min(surface.paint.scale.x * texels.x, surface.paint.scale.y * texels.y);
}

/// One even colour has no texels to blur.
bool IsEven(const Surface& surface) {
    return surface.paint.scale.x == 0 && surface.paint.scale.y == 0;
}

TEST(NearWalls, What_passes_near_has_256_texels_a_unit) {
    int near = 0;
    std::map<std::string, int> coarse;
    LookAround([&](const Surface& surface, float depth) {
        if (depth >= nearDepth || IsEven(surface))
            return;
        ++near;
        if (DensityOf(surface) < 255.5f)
            ++coarse[FileOf(surface.paint.material).texture];
    });
    EXPECT_GT(near, 10000);
    EXPECT_THAT(coarse, ::testing::IsEmpty());
}

TEST(NearWalls, A_wall_that_passes_near_is_no_flat_face) {
    // Of what is seen near, much lies on the sides of things and not on the walls' faces: there the
    // surface is small.
    int near = 0;
    int relief = 0;
    LookAround([&](const Surface& surface, float depth) {
        if (depth >= nearDepth)
            return;
        ++near;
        relief +=
            surface.paint.material == Material::Fittings || surface.paint.material == Material::Trim
                ? 1
                : 0;
    });
    EXPECT_GT(relief, near / 6);
}

/// A front of three bays and four storeys, three units to the left of the fifth flight's path and
/// as long as the flight passes it, or far from all flights.
Builder FrontAt(bool near) {
    Builder b;
    const Show::Flight& flight = Show::flights[Show::Canal];
    const vec3 middle = Lerp(flight.start, flight.end, 0.5f);
    const vec2 along =
        vec2{flight.end.x - flight.start.x, flight.end.z - flight.start.z} * (1 / 28.3f);
    const vec2 aside{along.y, -along.x};
    const float away = near ? 3.0f : 60.0f;
    b.SetPlace({{middle.x + aside.x * away, 0, middle.z + aside.y * away}, along});
    AddFront(b, {.width = 3,
                 .y0 = 0.7f,
                 .y1 = 4.7f,
                 .z = 0,
                 .material = Material::HouseWarm,
                 .far = FacadePaint(Material::HouseWarm, {3, 4}, 1, 0),
                 .seed = 1,
                 .street = true});
    return b;
}

TEST(NearWalls, A_front_no_flight_passes_stays_one_painted_wall) {
    const Builder b = FrontAt(false);
    ASSERT_EQ(b.surfaces.size(), 1u);
    EXPECT_EQ(b.surfaces[0].paint.material, Material::HouseWarm);
    EXPECT_EQ(b.surfaces[0].polygons.size(), 1u);
}

TEST(NearWalls, A_front_that_a_flight_passes_has_windows_set_into_its_near_storeys) {
    const Builder b = FrontAt(true);
    // In the middle of the flight the eye is at 1.75, and at 3 units the picture is 1.3 high: the
    // second storey, 1.7 to 2.7, is near; the fourth, from 3.7 on, is not.
    float plaster = 0;
    float highest = 0;
    for (const Surface& surface : b.surfaces) {
        if (surface.paint.material == Material::Plaster)
            for (const auto& polygon : surface.polygons)
                for (std::size_t i = 2; i < polygon.size(); ++i)
                    plaster += Cross(polygon[i - 1] - polygon[0], polygon[i] - polygon[0]) / 2;
        if (surface.paint.material == Material::Plaster)
            highest = std::max(highest, surface.origin.y + 1);
    }
    EXPECT_GT(plaster, 1.5f) << "some storey is plastered";
    EXPECT_LT(plaster, 3 * 3 - 3 * 0.4f) << "and pierced";
    EXPECT_LT(highest, 3.8f);
}

TEST(NearWalls, A_point_is_as_near_as_the_flights_come_with_it_in_their_picture) {
    // 3 units beside the fifth flight's way and at its height the picture's edge is reached at a
    // depth of 3 / 2.217 = 1.35; far above it never is.
    const Show::Flight& flight = Show::flights[Show::Canal];
    const vec3 middle = Lerp(flight.start, flight.end, 0.5f);
    const vec3 forward = Normalized(flight.end - flight.start);
    const vec3 aside = Normalized(Cross(forward, {0, 1, 0}));
    EXPECT_NEAR(LeastDepth(middle + aside * 3), 1.35f, 0.25f);
    EXPECT_GT(LeastDepth(middle + aside * 3 + vec3{0, 30, 0}), 20);
}

} // namespace
