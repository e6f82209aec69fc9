#include "art/fish/fish.h"
#include "art/fish/fishskin.h"

#include <algorithm>
#include <array>
#include <string>

#include <gtest/gtest.h>

namespace {

constexpr int fishInMesh = 14;
constexpr std::array<std::size_t, 5> shoals = {0, 3, 7, 11,
                                               fishInMesh}; // first fish of each, and the end

const std::string fishFolder = NIMBREL_SOURCE_DIR "/Data/Gfx/Fish/";

std::vector<Art::MeshVertex> Vertices() {
    return Art::FishMesh().subMeshes[0].vertices;
}

/// The vertices of one of the fish.
std::vector<Art::MeshVertex> FishNumber(std::size_t index) {
    const std::vector<Art::MeshVertex> all = Vertices();
    const std::size_t each = all.size() / fishInMesh;
    return {all.begin() + static_cast<long>(index * each),
            all.begin() + static_cast<long>((index + 1) * each)};
}

struct Extent {
    float low = 1e9f;
    float high = -1e9f;

    void Hold(float value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    float Size() const { return high - low; }
};

/// Height of what lies within a slice of the fish; `from` and `to` are shares of its length.
Extent HeightBetween(const std::vector<Art::MeshVertex>& fish, float from, float to) {
    Extent length;
    for (const Art::MeshVertex& v : fish)
        length.Hold(v.position.x);
    Extent height;
    for (const Art::MeshVertex& v : fish) {
        const float share = (v.position.x - length.low) / length.Size();
        if (share >= from && share <= to)
            height.Hold(v.position.y);
    }
    return height;
}

} // namespace

TEST(NatureFish, Stays_within_the_budget_of_a_school) {
    const std::size_t count = Art::VertexCount(Art::FishMesh());
    EXPECT_GE(count, 300U);
    EXPECT_LE(count, 900U);
    EXPECT_EQ(count % fishInMesh, 0U);
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
        ASSERT_LT(Vell::Length(a.texcoord - b.texcoord), 1e-4f) << "vertex " << i;
    }
}

TEST(NatureFish, Swims_towards_minus_x_nose_first) {
    for (std::size_t i = 0; i < fishInMesh; ++i) {
        const std::vector<Art::MeshVertex> fish = FishNumber(i);
        const float nose = HeightBetween(fish, 0, 0.05f).Size();
        const float root = HeightBetween(fish, 0.72f, 0.78f).Size();
        const float tail = HeightBetween(fish, 0.88f, 1).Size();
        EXPECT_LT(nose, 1.0f) << "fish " << i << ": the end at -x is a point";
        EXPECT_GT(tail, 2 * root) << "fish " << i << ": the end at +x is a fork";
    }
}

TEST(NatureFish, Shows_its_side_to_a_viewer_who_looks_along_z) {
    for (std::size_t i = 0; i < fishInMesh; ++i) {
        Extent x;
        Extent y;
        Extent z;
        for (const Art::MeshVertex& v : FishNumber(i)) {
            x.Hold(v.position.x);
            y.Hold(v.position.y);
            z.Hold(v.position.z);
        }
        // Scaled by 0.1 in the scene: 15 units of mesh are 1.5 in the world. The next fish of its
        // row is 2 away, so nobody may be longer.
        EXPECT_GT(x.Size(), 15.0f) << "fish " << i;
        EXPECT_LT(x.Size(), 20.0f) << "fish " << i;
        EXPECT_GT(y.Size(), 0.3f * x.Size()) << "fish " << i;
        EXPECT_LT(z.Size(), y.Size()) << "fish " << i << ": thinner than high";
    }
}

TEST(NatureFish, Keeps_the_whole_school_below_the_surface_while_it_is_in_view) {
    // The top row of cells lies 4 above the camera, which rises from -4 to -2 over the flight.
    Extent height;
    for (const Art::MeshVertex& v : Vertices())
        height.Hold(v.position.y * 0.1f);
    EXPECT_LT(-2.0f + 4 + height.high, 0);
}

TEST(NatureFish, Has_no_two_fish_of_a_cell_on_one_spot) {
    for (std::size_t i = 0; i < fishInMesh; ++i)
        for (std::size_t j = i + 1; j < fishInMesh; ++j) {
            const Vell::vec3 a = FishNumber(i)[0].position;
            const Vell::vec3 b = FishNumber(j)[0].position;
            EXPECT_GT(Vell::Length(a - b), 30) << "fish " << i << " and " << j;
        }
}

TEST(NatureFish, Shows_no_two_grids_of_one_mesh_in_a_shoal) {
    // Twelve copies of a fish stand on a grid of 2 units. Where it is 2 units deeper than
    // another's, at most 50 before the camera, its grid looks at least 4 % narrower.
    for (std::size_t shoal = 0; shoal + 1 < shoals.size(); ++shoal)
        for (std::size_t i = shoals[shoal]; i < shoals[shoal + 1]; ++i)
            for (std::size_t j = i + 1; j < shoals[shoal + 1]; ++j) {
                const float apart = FishNumber(i)[0].position.z - FishNumber(j)[0].position.z;
                EXPECT_GT(std::abs(apart), 20) << "fish " << i << " and " << j;
            }
}

TEST(NatureFish, Swims_on_both_sides_of_the_picture) {
    // At 36 s the first column of cells is 72 to the right of the camera, which stands 20.6 before
    // them: 50 * (1 - (36 - 27.824) / 13.912).
    int left = 0;
    int right = 0;
    for (std::size_t i = 0; i < fishInMesh; ++i) {
        const Vell::vec3 at = FishNumber(i)[0].position * 0.1f;
        const float aside = (72 - at.x) / (20.6f + at.z);
        left += aside > -2.217f && aside < -0.5f ? 1 : 0;
        right += aside < 2.217f && aside > 0.5f ? 1 : 0;
    }
    EXPECT_GE(left, 3);
    EXPECT_GE(right, 3);
}

TEST(NatureFish, Has_a_shoal_in_view_at_every_moment_of_the_flight) {
    // The camera looks along +z from x = 30; a cell's first column lies 2 t to the right of it. It
    // comes from z = -100 to -50, where the cells are. Half the picture is 2.217 wide at
    // distance 1.
    for (int second = 28; second <= 41; ++second) {
        const float t = static_cast<float>(second);
        const float depth = 50 - 50 * (t - 27.824f) / 13.912f;
        int inView = 0;
        for (std::size_t i = 0; i < fishInMesh; ++i) {
            const Vell::vec3 at = FishNumber(i)[0].position * 0.1f;
            for (int column = 0; column < 4; ++column) {
                const float aside = 2 * (t - static_cast<float>(column)) - at.x;
                inView += std::abs(aside) < 2.217f * (depth + at.z) ? 1 : 0;
            }
        }
        EXPECT_GE(inView, 4) << second << " s";
    }
}

TEST(NatureFish, Skin_covers_every_vertex) {
    for (const Art::MeshVertex& v : Art::OneFish()) {
        EXPECT_GE(v.texcoord.x, 0);
        EXPECT_LE(v.texcoord.x, 1);
        EXPECT_GE(v.texcoord.y, 0);
        EXPECT_LE(v.texcoord.y, 1);
    }
}

TEST(NatureFish, Skin_is_dark_above_and_bright_below) {
    const Art::Picture skin = Art::FishSkin(128);
    const auto at = [&](float x, float y) {
        const Art::Rgba p = skin.Sample((x - Art::skinLow.x) / (Art::skinHigh.x - Art::skinLow.x),
                                        (y - Art::skinLow.y) / (Art::skinHigh.y - Art::skinLow.y));
        return (p.r + p.g + p.b) / 3;
    };
    EXPECT_GT(at(0.5f, -0.12f), at(0.5f, 0.16f) + 0.4f);
    EXPECT_LT(at(0.115f, 0.030f), 0.2f) << "pupil";
}
