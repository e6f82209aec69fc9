// The steps that make the city cheap to draw: each does what its name says, and can be left out.

#include "art/city/meshing.h"

#include <set>

#include <gmock/gmock.h>

namespace {

using namespace Art;

constexpr float behindWall = 60; // x of a wall across the fourth flight's sight, behind ...
constexpr float frontWall = 50;  // ... another one

/// Two walls across the fourth flight's sight, the far one first, and a small board that
/// turns its back to all flights.
Builder SmallCity() {
    Builder b;
    for (const float x : {behindWall, frontWall})
        b.Rect({x, 0, -50}, {0, 0, 1}, {0, 1, 0}, 120, 40, Plain(Material::Stone));
    b.Rect({70, 5, 10}, {0, 0, -1}, {0, 1, 0}, 1, 1, Plain(Material::Stone));
    return b;
}

MeshFile Without(std::initializer_list<Step> left) {
    Steps steps = allSteps;
    for (const Step step : left)
        steps.reset(static_cast<std::size_t>(step));
    static const Builder city = SmallCity();
    static const Measures measures = MeasureCity(city);
    MeshReport report;
    return MeshCity(city, measures, report, steps);
}

const MeshFile& Whole() {
    static const MeshFile mesh = Without({});
    return mesh;
}

bool HasCurtain(const MeshFile& mesh) {
    return mesh.subMeshes[0].vertices[0].texcoord.x == 64 * 32;
}

/// The x of the surfaces in the order in which they are drawn, without the curtain.
std::vector<float> PlacesOf(const MeshFile& mesh) {
    std::vector<float> places;
    for (std::size_t s = HasCurtain(mesh) ? 1 : 0; s < mesh.subMeshes.size(); ++s)
        for (const MeshVertex& v : mesh.subMeshes[s].vertices)
            if (places.empty() || places.back() != v.position.x)
                places.push_back(v.position.x);
    return places;
}

/// The view marks of all surfaces: whole repeats of the texture, 64 to a count.
std::set<std::pair<int, int>> MarksOf(const MeshFile& mesh) {
    const auto whole = [](float x) { return static_cast<int>(std::floor(x / 64 + 0.5f)); };
    std::set<std::pair<int, int>> marks;
    for (std::size_t s = HasCurtain(mesh) ? 1 : 0; s < mesh.subMeshes.size(); ++s)
        for (const MeshVertex& v : mesh.subMeshes[s].vertices)
            marks.emplace(whole(v.texcoord.x), whole(v.texcoord.y));
    return marks;
}

TEST(Steps, Together_draw_the_near_wall_first_and_leave_the_hidden_board_out) {
    EXPECT_TRUE(HasCurtain(Whole()));
    EXPECT_EQ(PlacesOf(Whole()), (std::vector<float>{frontWall, behindWall}));
    EXPECT_GT(MarksOf(Whole()).size(), 1u) << "some pictures show one wall only";
}

TEST(Steps, Without_the_curtain_there_are_surfaces_only) {
    const MeshFile mesh = Without({Step::Curtain});
    EXPECT_FALSE(HasCurtain(mesh));
    EXPECT_EQ(PlacesOf(mesh), PlacesOf(Whole()));
}

TEST(Steps, Without_the_order_surfaces_come_as_they_were_planned) {
    const MeshFile mesh = Without({Step::Order});
    EXPECT_EQ(PlacesOf(mesh), (std::vector<float>{behindWall, frontWall}));
    EXPECT_EQ(mesh.subMeshes.size(), 2u) << "the curtain, and one for the one texture";
}

TEST(Steps, Without_marks_every_picture_shows_every_surface) {
    // All ten bits: 31 in each coordinate.
    EXPECT_EQ(MarksOf(Without({Step::Marks})), (std::set<std::pair<int, int>>{{31, 31}}));
}

TEST(Steps, Without_hiding_the_board_is_there) {
    EXPECT_THAT(PlacesOf(Without({Step::Hidden})), ::testing::Contains(70.0f));
}

} // namespace
