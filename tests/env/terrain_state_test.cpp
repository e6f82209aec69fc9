// What the terrain holds and leaves: buffers, OpenGL's state and errors, rows of the log.

#include "engine/env/terrain.h"

#include "engine/core/fast2dquad.h"
#include "engine/math/vec2.h"
#include "tests/env/terrain_stage.h"
#include "tests/support/buffers.h"
#include "tests/support/gl_state.h"
#include "tests/support/log_page.h"
#include "tests/support/pending_errors.h"

#include <vector>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::Terrain;
using Vell::TerrainProbe;
using Vell::vec2;
using Vell::vec3;

namespace {

class TerrainStateTest : public TerrainStage {
protected:
    static void BindAsDrawLeavesThem(Terrain& terrain) {
        glActiveTexture(GL_TEXTURE1);
        terrain.GetTexture(0).Bind();
        glActiveTexture(GL_TEXTURE0);
        terrain.GetHeightmap().Bind();
    }
};

} // namespace

TEST_F(TerrainStateTest, Grid_has_33_by_33_vertices_one_unit_apart) {
    Terrain terrain(1);
    const GLuint buffer = TerrainProbe::Vertices(terrain);
    ASSERT_EQ(BufferSize(GL_ARRAY_BUFFER, buffer), 13068); // 33 * 33 * 3 * 4
    const auto floats = BufferContent<float>(GL_ARRAY_BUFFER, buffer);
    for (std::size_t i = 0; i < 33; ++i)
        for (std::size_t j = 0; j < 33; ++j) {
            const float* vertex = &floats[(i * 33 + j) * 3];
            ASSERT_THAT(std::vector<float>(vertex, vertex + 3),
                        ElementsAre(static_cast<float>(i), 0.0f, static_cast<float>(j)));
        }
}

TEST_F(TerrainStateTest, Grid_has_32_by_32_cells_of_four_indices) {
    Terrain terrain(1);
    const GLuint buffer = TerrainProbe::Indices(terrain, 0);
    ASSERT_EQ(BufferSize(GL_ELEMENT_ARRAY_BUFFER, buffer), 16384); // 32 * 32 * 4 * 4
    const auto indices = BufferContent<GLuint>(GL_ELEMENT_ARRAY_BUFFER, buffer);
    const auto cell = [&](std::size_t i) {
        return std::vector<GLuint>(&indices[i * 4], &indices[i * 4] + 4);
    };
    EXPECT_THAT(cell(0), ElementsAre(0u, 33u, 34u, 1u));
    EXPECT_THAT(cell(1), ElementsAre(1u, 34u, 35u, 2u));
    EXPECT_THAT(cell(32), ElementsAre(33u, 66u, 67u, 34u));           // row 1
    EXPECT_THAT(cell(1023), ElementsAre(1054u, 1087u, 1088u, 1055u)); // 31 * 33 + 31
}

TEST_F(TerrainStateTest, Makes_as_many_index_buffers_as_its_level_and_fills_the_first) {
    Terrain terrain(3);
    EXPECT_EQ(terrain.GetLevel(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(BufferSize(GL_ELEMENT_ARRAY_BUFFER, TerrainProbe::Indices(terrain, i)),
                  i == 0 ? 16384 : 0);
}

TEST_F(TerrainStateTest, Level_below_one_still_has_the_buffer_that_is_drawn) {
    for (int level : {0, -5}) {
        Terrain terrain(level);
        EXPECT_EQ(terrain.GetLevel(), level);
        Prepare(terrain, Flat(32, 10));
        EXPECT_TRUE(CoveredAt(terrain, 32.5, 36.0));
    }
}

TEST_F(TerrainStateTest, Deletes_its_buffers) {
    const auto isBuffer = EntryPoint<PFNGLISBUFFERPROC>("glIsBuffer");
    GLuint vertices = 0;
    GLuint indices = 0;
    {
        Terrain terrain(2);
        vertices = TerrainProbe::Vertices(terrain);
        indices = TerrainProbe::Indices(terrain, 0);
        ASSERT_TRUE(isBuffer(vertices) && isBuffer(indices));
    }
    EXPECT_FALSE(isBuffer(vertices) || isBuffer(indices));
}

TEST_F(TerrainStateTest, Map_narrower_than_32_pixels_draws_nothing_but_keeps_the_state) {
    Terrain terrain(1);
    Prepare(terrain, Flat(31, 10));
    BindAsDrawLeavesThem(terrain);
    LookDownAt(36.0, 40.0, 64.0);
    const GlState before = CaptureGlState();
    terrain.Draw(vec3());
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    std::vector<float> depth(static_cast<std::size_t>(size) * size);
    glReadPixels(0, 0, size, size, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
    EXPECT_THAT(depth, ::testing::Each(1.0f));
}

TEST_F(TerrainStateTest, Changes_no_state_but_what_is_bound_to_units_0_and_1) {
    Terrain terrain(1);
    Prepare(terrain, Flat(64, 10));
    BindAsDrawLeavesThem(terrain);
    const GlState before = CaptureGlState();
    terrain.Draw(vec3(1, 2, 3));
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)); // of the refused index array type
}

TEST_F(TerrainStateTest, Leaves_errors_that_were_pending_when_it_is_drawn) {
    Terrain terrain(1);
    Prepare(terrain, Flat(64, 10));
    for (const PendingError& pending : pendingErrors) {
        SCOPED_TRACE(pending.name);
        pending.raise();
        terrain.Draw(vec3());
        EXPECT_TRUE(OnlyPending(pending.error));
    }
}

TEST_F(TerrainStateTest, Does_not_read_the_coordinates_that_a_full_screen_pass_left_enabled) {
    Terrain terrain(1);
    Prepare(terrain, Flat(32, 10));
    Vell::Fast2DQuad::GetInstance().Draw(vec2(1.0f)); // four vertices; the strip has up to 42
    ASSERT_TRUE(glIsEnabled(GL_TEXTURE_COORD_ARRAY));
    terrain.Draw(vec3());
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_COORD_ARRAY));
}

TEST_F(TerrainStateTest, Without_a_scale_its_place_is_undefined_but_drawing_is_harmless) {
    Terrain terrain(1);
    terrain.Load(Flat(32, 10));
    LookDownAt(32.5, 36.0, 16.0);
    terrain.Draw(vec3()); // divides by zero in the shader
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(TerrainStateTest, Logs_loaded_whatever_the_picture_did_and_free_at_the_end) {
    const std::string missing = FreshName("missing", ".png");
    const LogWatch log;
    {
        Terrain terrain(1);
        terrain.Load(missing);
        EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"Image", "ERROR", missing},
                                               LogRow{"Terrain", "LOADED", missing}));
        terrain.Draw(vec3()); // no height map: no tiles
    }
    EXPECT_EQ(log.NewRows().at(2), (LogRow{"Terrain", "FREE", missing}));
}

TEST_F(TerrainStateTest, Keeps_four_textures_and_draws_the_first) {
    Terrain terrain(1);
    terrain.Load(Flat(32, 10));
    terrain.SetScale(vec3(1));
    for (int i = 0; i < 4; ++i)
        terrain.SetTexture(Ground({10 + 50 * i, 0, 0, 255}), i);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(terrain.GetTexture(i).GetData()[0], 10 + 50 * i);
    EXPECT_TRUE(Near(CentreOfFirstTile(terrain), {10, 0, 0, 255}, 1));
}
