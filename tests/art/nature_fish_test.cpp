#include "art/fish/fish.h"
#include "art/fish/fishskin.h"
#include "art/fish/shoal.h"

#include "demo/show.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace {

using Art::vec2;
using Art::vec3;

const std::string fishFolder = NIMBREL_SOURCE_DIR "/Data/Gfx/Fish/";

// The scene's cells: 4 x 3, two units apart, on z = -50, and two units a second to the right.
constexpr int columns = 4;
constexpr int rows = 3;
constexpr float spacing = 2;
constexpr float drift = 2;
constexpr float cellsDepth = -50;

constexpr const Show::Flight& flight = Show::flights[Show::UnderWater];

// Pixels that one unit takes at distance 1, where half the picture is tan(25 / 2 degrees) = 0.22169
// high and, by the camera's aspect of ten, 2.2169 wide: 89 / 2 / 0.22169 up and 960 / 2 / 2.2169
// across.
constexpr float pixelsUp = 200.73f;
constexpr float pixelsAcross = 216.52f;
constexpr vec2 halfPicture = {Show::width / 2.0f, Show::height / 2.0f};

/// A fish of the school before the eye.
struct Sighting {
    std::size_t swimmer;
    float depth;  ///< along the flight, units; what is behind the eye is not noted
    vec2 picture; ///< pixels from the middle, +x to the left
    float size;   ///< its length in pixels, were it seen from its side
    float height; ///< world, the surface is at 0
};

bool InPicture(const Sighting& seen) {
    return std::abs(seen.picture.x) < halfPicture.x && std::abs(seen.picture.y) < halfPicture.y;
}

/// What lies at `place` from the eye, whose flight rises by 2 on 50.
Sighting Seen(const Art::Swimmer& swimmer, std::size_t number, vec3 place, float eyeHeight) {
    const vec3 ahead = Vell::Normalized(flight.end - flight.start);
    const float depth = place.y * ahead.y + place.z * ahead.z;
    const float up = place.y * ahead.z - place.z * ahead.y;
    return {number,
            depth,
            {place.x * pixelsAcross / depth, up * pixelsUp / depth},
            swimmer.length * pixelsAcross / depth,
            eyeHeight + place.y};
}

/// The fish in the picture `second` seconds of demo time after the loading.
std::vector<Sighting> InPictureAt(float second, const std::vector<Art::Swimmer>& school) {
    const float share = (second - static_cast<float>(flight.begin)) / flight.duration;
    const vec3 eye = flight.start + (flight.end - flight.start) * share;
    std::vector<Sighting> all;
    for (std::size_t i = 0; i < school.size(); ++i)
        for (int cell = 0; cell < columns * rows; ++cell) {
            const vec3 corner = {spacing * static_cast<float>(cell % columns) - drift * second,
                                 spacing * static_cast<float>(cell / columns), cellsDepth - eye.z};
            const Sighting seen = Seen(school[i], i, corner + school[i].offset, eye.y);
            if (seen.depth > 0.1f && InPicture(seen))
                all.push_back(seen);
        }
    return all;
}

/// Moments all along the flight, seconds of demo time.
std::vector<float> Moments() {
    std::vector<float> moments;
    for (float share = 0; share <= 1; share += 1.0f / 64)
        moments.push_back(static_cast<float>(flight.begin) + flight.duration * share);
    return moments;
}

/// How the fish in all pictures of the flight stand to the ones nearest to them.
struct Order {
    int fish = 0;
    int inLine = 0;   ///< the nearest stands beside it or over it, to ten degrees
    int likeness = 0; ///< the nearest is drawn by the same part of the mesh

    float InLine() const { return static_cast<float>(inLine) / static_cast<float>(fish); }
    float Likeness() const { return static_cast<float>(likeness) / static_cast<float>(fish); }
};

const Sighting& NearestTo(const std::vector<Sighting>& all, std::size_t i) {
    std::size_t nearest = i == 0 ? 1 : 0;
    for (std::size_t j = 0; j < all.size(); ++j)
        if (j != i && Vell::Length(all[j].picture - all[i].picture) <
                          Vell::Length(all[nearest].picture - all[i].picture))
            nearest = j;
    return all[nearest];
}

Order OrderOf(const std::vector<Art::Swimmer>& school) {
    const float tenDegrees = std::sin(Art::pi / 18);
    Order order;
    for (const float moment : Moments()) {
        const std::vector<Sighting> all = InPictureAt(moment, school);
        for (std::size_t i = 0; all.size() > 1 && i < all.size(); ++i) {
            const Sighting& other = NearestTo(all, i);
            const vec2 to = Vell::Normalized(other.picture - all[i].picture);
            order.fish += 1;
            order.inLine += std::min(std::abs(to.x), std::abs(to.y)) < tenDegrees ? 1 : 0;
            order.likeness += other.swimmer == all[i].swimmer ? 1 : 0;
        }
    }
    return order;
}

/// Calls `visit(moment, fish)` for the pictures of the flight.
template <class Visit>
void ForEachPicture(const Visit& visit) {
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    for (const float moment : Moments())
        visit(moment, InPictureAt(moment, school));
}

Art::FishDetail DetailOf(const Sighting& seen) {
    return Art::Swimmers()[seen.swimmer].pose.detail;
}

std::vector<Art::MeshVertex> Vertices() {
    return Art::FishMesh().subMeshes[0].vertices;
}

/// The vertices of one of the fish.
std::vector<Art::MeshVertex> FishNumber(std::size_t index) {
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    std::size_t first = 0;
    for (std::size_t i = 0; i < index; ++i)
        first += Art::VerticesOf(school[i].pose.detail);
    const std::vector<Art::MeshVertex> all = Vertices();
    const auto begin = all.begin() + static_cast<long>(first);
    return {begin, begin + static_cast<long>(Art::VerticesOf(school[index].pose.detail))};
}

/// The direction in which a swimmer's nose points, by what its heading and pitch mean.
vec3 Ahead(const Art::Swimmer& swimmer) {
    const float flat = std::cos(swimmer.pitch);
    return {-flat * std::cos(swimmer.heading), std::sin(swimmer.pitch),
            flat * std::sin(swimmer.heading)};
}

template <class Number>
std::size_t DifferentOnes(const Number& number) {
    std::set<float> all;
    for (const Art::Swimmer& swimmer : Art::Swimmers())
        all.insert(number(swimmer));
    return all.size();
}

} // namespace

TEST(NatureFish, Stays_within_the_budget_of_a_school) {
    // 60 nodes draw the mesh: 450 vertices are 27000 a frame.
    std::size_t count = 0;
    for (const Art::Swimmer& swimmer : Art::Swimmers())
        count += Art::VerticesOf(swimmer.pose.detail);
    EXPECT_EQ(Art::VertexCount(Art::FishMesh()), count);
    EXPECT_GE(count, 200U);
    EXPECT_LE(count, 450U);
}

TEST(NatureFish, Stored_mesh_is_the_drawn_one) {
    Art::MeshFile stored;
    std::string error;
    ASSERT_TRUE(Art::ReadMesh(fishFolder + "fish.xt3dstatic", stored, error)) << error;
    const Art::MeshFile drawn = Art::FishMesh();
    ASSERT_EQ(Art::VertexCount(stored), Art::VertexCount(drawn));
    EXPECT_EQ(stored.textureDirectory, "Data/Gfx/Fish/");
    EXPECT_EQ(stored.subMeshes[0].textures[0], "fish.png");
    for (std::size_t i = 0; i < drawn.subMeshes[0].vertices.size(); ++i) {
        const Art::MeshVertex& a = stored.subMeshes[0].vertices[i];
        const Art::MeshVertex& b = drawn.subMeshes[0].vertices[i];
        ASSERT_LT(Vell::Length(a.position - b.position), 1e-3f) << "vertex " << i;
        ASSERT_LT(Vell::Length(a.normal - b.normal), 1e-3f) << "vertex " << i;
        ASSERT_LT(Vell::Length(a.texcoord - b.texcoord), 1e-4f) << "vertex " << i;
    }
}

TEST(NatureFish, Swims_nose_first_along_its_own_heading) {
    // The first vertex is the nose, the last two are the tips of the tail. A tail that stands
    // aside by 0.27 of the length turns the line between them by atan 0.27 = 15 degrees.
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    for (std::size_t i = 0; i < school.size(); ++i) {
        const std::vector<Art::MeshVertex> fish = FishNumber(i);
        const std::size_t last = fish.size() - 1;
        const vec3 tail = (fish[last].position + fish[last - 1].position) * 0.5f;
        const vec3 line = Vell::Normalized(fish[0].position - tail);
        EXPECT_GT(Vell::Dot(line, Ahead(school[i])), std::cos(Art::pi / 12)) << "fish " << i;
    }
}

TEST(NatureFish, Stands_in_the_mesh_where_its_swimmer_is_ten_times_as_large) {
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    for (std::size_t i = 0; i < school.size(); ++i)
        for (const Art::MeshVertex& v : FishNumber(i)) {
            const vec3 away = v.position * 0.1f - school[i].offset;
            // Half the length, and the corner of the tail: (0.5, 0.17, bend up to 0.27).
            EXPECT_LT(Vell::Length(away), 0.6f * school[i].length) << "fish " << i;
        }
}

TEST(NatureFish, Keeps_to_a_heading_from_which_its_side_is_seen) {
    for (const Art::Swimmer& swimmer : Art::Swimmers())
        EXPECT_LT(std::abs(swimmer.heading), Art::pi * 70 / 180);
}

TEST(NatureFish, No_two_share_a_heading_a_length_or_a_bend) {
    const std::size_t count = Art::Swimmers().size();
    EXPECT_EQ(DifferentOnes([](const Art::Swimmer& s) { return s.heading; }), count);
    EXPECT_EQ(DifferentOnes([](const Art::Swimmer& s) { return s.length; }), count);
    EXPECT_EQ(DifferentOnes([](const Art::Swimmer& s) { return s.pose.bend; }), count);
}

TEST(NatureFish, Any_two_differ_by_what_an_eye_can_tell) {
    // Five degrees of heading or pitch, a tenth of the length or of it the tail's bend.
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    for (std::size_t i = 0; i < school.size(); ++i)
        for (std::size_t j = i + 1; j < school.size(); ++j) {
            const Art::Swimmer& a = school[i];
            const Art::Swimmer& b = school[j];
            const bool alike = std::abs(a.heading - b.heading) < 0.087f &&
                               std::abs(a.pitch - b.pitch) < 0.087f &&
                               std::abs(a.length - b.length) < 0.1f * a.length &&
                               std::abs(a.pose.bend - b.pose.bend) < 0.1f;
            EXPECT_FALSE(alike) << "fish " << i << " and " << j;
        }
}

TEST(NatureFish, Has_no_two_on_one_spot) {
    // A fish is 0.32 of its length high and a sixth of it thick: at half a length they pass.
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    for (std::size_t i = 0; i < school.size(); ++i)
        for (std::size_t j = 0; j < school.size(); ++j)
            for (int column = 1 - columns; i != j && column < columns; ++column)
                for (int row = 1 - rows; row < rows; ++row) {
                    const vec3 cell = {spacing * static_cast<float>(column),
                                       spacing * static_cast<float>(row), 0};
                    const float apart = Vell::Length(school[i].offset - school[j].offset + cell);
                    EXPECT_GT(apart, 0.5f * std::max(school[i].length, school[j].length))
                        << "fish " << i << " and " << j;
                }
}

TEST(NatureFish, Shows_no_rows_to_the_flight) {
    // Were the directions to the nearest fish even, two of nine would lie within ten degrees of
    // one of the four along a row or a column: 4 x 20 of 360 degrees. Twice that is the limit.
    EXPECT_LT(OrderOf(Art::Swimmers()).InLine(), 4.0f / 9);
}

TEST(NatureFish, Swims_among_others_than_its_likenesses) {
    // Without any order, a fish of a shoal of five has 11 likenesses among 59 others: 0.19.
    EXPECT_LT(OrderOf(Art::Swimmers()).Likeness(), 11.0f / 59);
}

TEST(NatureFish, A_regular_grid_of_one_fish_would_be_seen_as_such) {
    // Any fish alone: its twelve likenesses are the grid of cells and nothing else.
    for (const Art::Swimmer& swimmer : Art::Swimmers()) {
        const Order order = OrderOf({swimmer});
        ASSERT_GT(order.fish, 100);
        EXPECT_GT(order.InLine(), 0.9f);
        EXPECT_EQ(order.Likeness(), 1);
    }
}

TEST(NatureFish, Swims_on_both_sides_of_the_picture_at_every_moment) {
    ForEachPicture([](float moment, const std::vector<Sighting>& fish) {
        const auto left = std::count_if(fish.begin(), fish.end(),
                                        [](const Sighting& s) { return s.picture.x > 0; });
        EXPECT_GE(left, 4) << moment << " s";
        EXPECT_GE(static_cast<long>(fish.size()) - left, 4) << moment << " s";
    });
}

TEST(NatureFish, Comes_nowhere_so_near_that_it_fills_the_picture) {
    ForEachPicture([](float moment, const std::vector<Sighting>& fish) {
        for (const Sighting& seen : fish) // half the picture's height
            EXPECT_LT(seen.size, halfPicture.y)
                << "fish " << seen.swimmer << " at " << moment << " s";
    });
}

TEST(NatureFish, Leaves_through_the_surface_only_where_it_is_small) {
    // Whoever reaches the surface, or is over it and hidden by it, is less than four pixels high.
    // A fish is 0.32 of its length high.
    const std::vector<Art::Swimmer> school = Art::Swimmers();
    const auto reachesSurface = [&](const Sighting& seen) {
        return seen.height > -0.2f * school[seen.swimmer].length;
    };
    int reached = 0;
    ForEachPicture([&](float moment, const std::vector<Sighting>& fish) {
        for (const Sighting& seen : fish) {
            const bool reaches = reachesSurface(seen);
            reached += reaches ? 1 : 0;
            EXPECT_TRUE(!reaches || 0.32f * seen.size * pixelsUp / pixelsAcross < 4)
                << "fish " << seen.swimmer << " at " << moment << " s";
        }
    });
    EXPECT_GT(reached, 0);
}

TEST(NatureFish, Far_fish_are_flat_and_of_nine_vertices) {
    EXPECT_EQ(Art::OneFish({Art::FishDetail::Flat}).size(), 9U);
    EXPECT_EQ(Art::OneFish({Art::FishDetail::Round}).size(), 15U);
    // Flat ones stay below a tenth of the picture's height in its middle third; at the sides they
    // pass the eye and leave.
    int flat = 0;
    ForEachPicture([&](float moment, const std::vector<Sighting>& fish) {
        for (const Sighting& seen : fish)
            if (DetailOf(seen) == Art::FishDetail::Flat &&
                std::abs(seen.picture.x) < halfPicture.x / 3) {
                ++flat;
                EXPECT_LT(seen.size, 8.9f) << "fish " << seen.swimmer << " at " << moment << " s";
            }
    });
    EXPECT_GT(flat, 50);
}

TEST(NatureFish, A_round_one_looks_up_with_its_back_and_down_with_its_belly) {
    vec3 back;
    vec3 belly;
    float high = -1;
    float low = 1;
    for (const Art::MeshVertex& v : Art::OneFish({Art::FishDetail::Round})) {
        if (v.position.x < 0.7f && v.position.y > high) {
            high = v.position.y;
            back = v.normal;
        }
        if (v.position.x < 0.7f && v.position.y < low) {
            low = v.position.y;
            belly = v.normal;
        }
    }
    EXPECT_LT(Vell::Dot(Vell::Normalized(back), Vell::Normalized(belly)), 0) << "over 90 degrees";
    EXPECT_GT(back.y, 0);
    EXPECT_LT(belly.y, 0);
}

TEST(NatureFish, A_round_one_bulges_to_the_side_it_is_told) {
    for (const float bulge : {1.0f, -1.0f}) {
        float most = 0;
        for (const Art::MeshVertex& v : Art::OneFish({Art::FishDetail::Round, 0, bulge, 0}))
            most = std::abs(v.position.z) > std::abs(most) ? v.position.z : most;
        EXPECT_FLOAT_EQ(most, -0.08f * bulge);
    }
}

TEST(NatureFish, Skin_covers_every_vertex_in_its_own_shade) {
    for (int shade = 0; shade < Art::skinShades; ++shade)
        for (const Art::MeshVertex& v : Art::OneFish({Art::FishDetail::Round, 0, 1, shade})) {
            EXPECT_GE(v.texcoord.x, 0);
            EXPECT_LE(v.texcoord.x, 1);
            EXPECT_GE(v.texcoord.y * Art::skinShades, shade);
            EXPECT_LE(v.texcoord.y * Art::skinShades, shade + 1);
        }
}

namespace {

/// How bright the skin is at a point of the side view.
float Brightness(const Art::Picture& skin, vec2 side, int shade) {
    const vec2 place = Art::SkinPlace(side, shade);
    const Art::Rgba p = skin.Sample(place.x, place.y);
    return (p.r + p.g + p.b) / 3;
}

} // namespace

TEST(NatureFish, Skin_has_a_lit_back_a_bright_flank_and_a_dark_belly) {
    const Art::Picture skin = Art::FishSkin(512);
    const float flank = Brightness(skin, {0.5f, 0.01f}, 0);
    EXPECT_GT(flank, Brightness(skin, {0.5f, -0.12f}, 0) + 0.2f) << "belly";
    EXPECT_GT(flank, Brightness(skin, {0.5f, 0.07f}, 0) + 0.2f) << "band";
    EXPECT_GT(Brightness(skin, {0.5f, 0.125f}, 0), Brightness(skin, {0.5f, 0.07f}, 0) + 0.2f)
        << "back";
    EXPECT_LT(Brightness(skin, {0.10f, 0.012f}, 0), 0.2f) << "pupil";
}

TEST(NatureFish, Each_shade_of_the_skin_is_darker_than_the_one_before) {
    const Art::Picture skin = Art::FishSkin(512);
    for (int shade = 1; shade < Art::skinShades; ++shade)
        EXPECT_LT(Brightness(skin, {0.5f, 0.01f}, shade),
                  Brightness(skin, {0.5f, 0.01f}, shade - 1) - 0.05f);
}
