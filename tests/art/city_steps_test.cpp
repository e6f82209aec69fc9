// The steps that make the city cheap to draw: each does what its name says, and can be left out.

#include "art/city/meshing.h"
#include "art/city/views.h"

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
    // 120 x 40 units near the wisps are 50 x 17 cells of two triangles: more than one call holds.
    EXPECT_EQ(mesh.subMeshes.size(), 3u) << "the curtain, and one for each wall";
}

TEST(Steps, Without_marks_every_picture_shows_every_surface) {
    // All ten bits: 31 in each coordinate.
    EXPECT_EQ(MarksOf(Without({Step::Marks})), (std::set<std::pair<int, int>>{{31, 31}}));
}

TEST(Steps, Without_hiding_the_board_is_there) {
    EXPECT_THAT(PlacesOf(Without({Step::Hidden})), ::testing::Contains(70.0f));
}

/// Small walls side by side, each of two triangles, of which all flights see something.
struct Walls {
    void Add(int count, Material material, const Sight& sight) {
        for (int i = 0; i < count; ++i, x += 2)
            city.Rect({x, 0, -50}, {1, 0, 0}, {0, 1, 0}, 1, 1, Plain(material));
        const auto more = static_cast<std::size_t>(count);
        measures.open.insert(measures.open.end(), more, true);
        measures.sights.insert(measures.sights.end(), more, sight);
        measures.views.insert(measures.views.end(), more, 1u | shownLarge);
    }

    MeshFile Mesh() const {
        MeshReport report;
        Steps steps = allSteps;
        steps.reset(static_cast<std::size_t>(Step::Curtain));
        return MeshCity(city, measures, report, steps);
    }

    Builder city;
    Measures measures;
    float x = 100;
};

TEST(Mesh, A_draw_call_holds_a_thousand_vertices_of_one_texture) {
    Walls walls;
    walls.Add(400, Material::Stone, {.rays = 100, .nearest = 10});
    std::vector<std::size_t> sizes;
    for (const SubMesh& sub : walls.Mesh().subMeshes)
        sizes.push_back(sub.vertices.size());
    // 400 walls of 6 vertices, of which 170 make 1020.
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1020, 1020, 360}));
}

TEST(Mesh, What_hides_others_comes_first_across_textures) {
    const Sight hidden = {.rays = 100, .behind = 50, .nearest = 10};
    const Sight hiding = {.rays = 100, .before = 50, .nearest = 10};
    Walls walls;
    walls.Add(170, Material::Stone, hidden);
    walls.Add(170, Material::Roof, hiding);
    walls.Add(10, Material::Stone, hiding);
    std::vector<std::string> textures;
    for (const SubMesh& sub : walls.Mesh().subMeshes)
        textures.push_back(sub.textures[0]);
    // The 10 stones that hide others share a call with 160 that do not, and so follow the roofs.
    EXPECT_EQ(textures, (std::vector<std::string>{"roof.jpg", "stone.jpg", "stone.jpg"}));
}

} // namespace
