// The terrain's picture: heights, strips, light, fog, clipping.

#include "engine/env/terrain.h"

#include "tests/env/terrain_stage.h"
#include "tests/support/bound_program.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::Terrain;
using Vell::TerrainProbe;
using Vell::vec3;

class TerrainTest : public TerrainStage {};

TEST_F(TerrainTest, Program_links_without_a_warning_and_reads_units_0_and_1) {
    Terrain terrain(1);
    TerrainProbe::Program(terrain).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("heightmap"), 0);
    EXPECT_EQ(BoundUniformInt("texture0"), 1);
    EXPECT_THAT(BoundUniform("pos"), ElementsAre(0.0f, 0.0f, 0.0f, 0.0f)); // never sent
    TerrainProbe::Program(terrain).Disable();
}

TEST_F(TerrainTest, Height_is_red_in_steps_of_a_unit_from_minus_ten) {
    // One row of the map is one unit of z, and a vertex lies between two rows: vertex j has the
    // mean of rows j - 1 and j. With row j = 10 + 2 j (row -1, which is row 255 by repetition, = 8)
    // that is 9 + 2 j, and the ground lies at y = 2 j - 1.
    Terrain terrain(1);
    Prepare(terrain, HeightMap(32, 256, [](int, int y) {
                return y == 255 ? 8 : std::min(255, 10 + 2 * y);
            }));
    LookDownAt(32.5, 36.0, 16.0); // 8 pixels per unit, z runs down from 28 at the top to 44
    terrain.Draw(vec3());
    for (int row : {33, 40, 50, 64, 75, 85, 95}) {
        const double z = 36.0 + (63.5 - row) / 8.0;
        SCOPED_TRACE(z);
        const double y = eye - reach * static_cast<double>(DepthAt(size / 2, row));
        EXPECT_NEAR(y, 2.0 * (z - 32.0) - 1.0, 0.01);
    }
}

TEST_F(TerrainTest, Tile_is_a_strip_of_one_by_eight_cells) {
    Terrain terrain(1);
    Prepare(terrain, Flat(32, 10));
    LookDownAt(36.0, 40.0, 16.0); // x 28..44 to the right, z 32..48 down
    terrain.Draw(vec3());
    // x 32..33 is pixels 32..39; z 32..40 is the upper half.
    const Picture screen = ReadScreen(size, size);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const bool inside = x >= 32 && x < 40 && y >= 64;
            ASSERT_EQ(screen.At(x, y).r > 0, inside) << x << ", " << y;
        }
}

TEST_F(TerrainTest, Tiles_lie_on_a_diagonal_because_their_steps_add_up) {
    Terrain terrain(1);
    Prepare(terrain, Flat(64, 10)); // 64 / 32 = 2: two rows of two
    for (const auto& [x, z] : {std::pair{32, 32}, {32, 64}, {64, 96}, {64, 128}})
        EXPECT_TRUE(CoveredAt(terrain, x + 0.5, z + 4.0)) << x << ", " << z;
    for (const auto& [x, z] : {std::pair{0, 0}, {64, 32}, {64, 64}, {32, 96}, {96, 160}})
        EXPECT_FALSE(CoveredAt(terrain, x + 0.5, z + 4.0)) << x << ", " << z;
}

TEST_F(TerrainTest, Every_tile_shows_the_same_part_of_the_height_map) {
    Terrain terrain(1);
    Prepare(terrain, HeightMap(64, 64, [](int x, int y) { return 40 + x + 2 * y; }));
    std::vector<float> depths;
    for (const auto& [x, z] : {std::pair{32, 32}, {32, 64}, {64, 96}, {64, 128}}) {
        LookDownAt(x + 0.5, z + 4.0, 16.0);
        terrain.Draw(vec3());
        depths.push_back(DepthAt(size / 2, size / 2));
    }
    EXPECT_LT(depths[0], 1.0f);
    for (float depth : depths)
        EXPECT_NEAR(depth, depths[0], 1e-6f);
}

TEST_F(TerrainTest, Light_comes_from_minus_x_and_above_unnormalised) {
    // The normal of the height differences over two texels of 1/256: n = (-2 g / 255, 2 / 256, 0)
    // for a rise of g per texel along x. Flat: n = (0, 1, 0), light 1. g = -20: n ~ (0.1569,
    // 0.0078) / 0.1571 = (0.9988, 0.0497): light max(-0.949, 0.2) = 0.2. g = +20: n = (-0.9988,
    // 0.0497): light 1.0485. g = 20 along z: n = (0, 0.0497, -0.9988): light 0.0497, raised to 0.2.
    struct Case {
        int alongX, alongZ;
        double light;
    };
    for (const Case& c : {Case{0, 0, 1.0}, {-20, 0, 0.2}, {20, 0, 1.0485}, {0, 20, 0.2}}) {
        SCOPED_TRACE(::testing::Message() << c.alongX << " along x, " << c.alongZ << " along z");
        Terrain terrain(1);
        // Linear around the texels of the first tile's centre; texels -2 and -1 are 254 and 255 by
        // repetition.
        Prepare(terrain, HeightMap(256, 256, [&](int x, int y) {
                    const int i = x >= 254 ? x - 256 : std::min(x, 2);
                    const int j = std::clamp(y, 3, 7) - 5;
                    return 90 + c.alongX * i + c.alongZ * j;
                }));
        const int grey = static_cast<int>(std::lround(100.0 * c.light));
        EXPECT_TRUE(Near(CentreOfFirstTile(terrain), {grey, grey, grey, 255}, 1));
    }
}

TEST_F(TerrainTest, Ground_texture_repeats_twenty_times_over_the_map) {
    // Place (x, z) / 256 * 20: a repeat is 12.8 units of z. Left half of the picture black, right
    // half white along t: z 0 to 6.4 in the tile is the first half.
    Terrain terrain(1);
    terrain.Load(Flat(32, 10));
    const std::string path = FreshName("halves", ".png");
    WritePicture(path, MakePicture(64, 64, [](int, int y) {
                     return y < 32 ? Rgba{20, 20, 20, 255} : Rgba{200, 200, 200, 255};
                 }));
    terrain.SetTexture(path, 0);
    terrain.SetScale(vec3(1));
    LookDownAt(32.5, 36.0, 16.0);
    terrain.Draw(vec3());
    const Picture screen = ReadScreen(size, size);
    const auto row = [](double z) {
        return static_cast<int>(std::lround(63.5 - (32.0 + z - 36.0) * 8.0));
    };
    EXPECT_TRUE(Near(screen.At(64, row(1.0)), {20, 20, 20, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, row(6.0)), {20, 20, 20, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, row(6.8)), {200, 200, 200, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, row(7.8)), {200, 200, 200, 255}, 1));
}

TEST_F(TerrainTest, Fog_goes_by_the_distance_of_the_flat_ground) {
    // Seen from y = 100 the flat grid is 100 units away, while the ground is lifted to 60 - 10
    // = 50.
    Terrain terrain(1);
    Prepare(terrain, Flat(32, 60));
    const GLfloat blue[] = {0.0f, 0.0f, 1.0f, 1.0f};
    glFogfv(GL_FOG_COLOR, blue);
    for (double density : {0.0, 0.004, 0.00833, 0.02, 1.0}) {
        SCOPED_TRACE(density);
        glFogf(GL_FOG_DENSITY, static_cast<float>(density));
        const double clear = std::exp(-density * density * 100.0 * 100.0);
        const int grey = static_cast<int>(std::lround(100.0 * clear));
        const int b = static_cast<int>(std::lround(100.0 * clear + 255.0 * (1.0 - clear)));
        EXPECT_TRUE(Near(CentreOfFirstTile(terrain), {grey, grey, b, 255}, 1));
    }
}

TEST_F(TerrainTest, Clip_plane_cuts_the_lifted_ground) {
    Terrain terrain(1);
    Prepare(terrain, Flat(32, 60)); // at y = 50; the flat grid is at 0
    LookDownAt(32.5, 36.0, 16.0);
    for (double floor : {40.0, 60.0}) {
        const GLdouble plane[] = {0.0, 1.0, 0.0, -floor}; // keeps y >= floor
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glClipPlane(GL_CLIP_PLANE0, plane);
        glEnable(GL_CLIP_PLANE0);
        terrain.Draw(vec3());
        glDisable(GL_CLIP_PLANE0);
        EXPECT_EQ(DepthAt(size / 2, size / 2) < 1.0f, floor < 50.0) << floor;
    }
}

TEST_F(TerrainTest, Scale_is_one_half_high_but_reaches_the_program_only_when_set) {
    Terrain terrain(1);
    EXPECT_EQ(terrain.GetScale(), vec3(1.0f, 0.5f, 1.0f));
    TerrainProbe::Program(terrain).Enable();
    EXPECT_THAT(BoundUniform("scale"), ElementsAre(0.0f, 0.0f, 0.0f, 0.0f));
    terrain.SetScale(vec3(2.0f, 3.0f, 4.0f));
    EXPECT_EQ(BoundProgram(), 0u); // the setter leaves none bound
    EXPECT_EQ(terrain.GetScale(), vec3(2.0f, 3.0f, 4.0f));
    TerrainProbe::Program(terrain).Enable();
    EXPECT_THAT(BoundUniform("scale"), ElementsAre(2.0f, 3.0f, 4.0f, 0.0f));
    TerrainProbe::Program(terrain).Disable();
}

TEST_F(TerrainTest, Any_scale_without_a_zero_gives_the_same_picture) {
    Terrain terrain(1);
    Prepare(terrain, HeightMap(64, 64, [](int x, int y) { return 40 + x + 2 * y; }));
    std::vector<Picture> pictures;
    for (const vec3& scale : {vec3(1, 1, 1), vec3(8, 0.5f, 2)}) { // powers of two: no rounding
        terrain.SetScale(scale);
        LookDownAt(32.5, 36.0, 16.0);
        terrain.Draw(vec3());
        pictures.push_back(ReadScreen(size, size));
    }
    EXPECT_GT(pictures[0].At(size / 2, size / 2).r, 0);
    EXPECT_TRUE(Matches(pictures[1], pictures[0]));
}
