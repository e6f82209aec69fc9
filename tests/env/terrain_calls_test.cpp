// The terrain, call by call.

#include "tests/recording/calls.h"

#include "engine/env/terrain.h"

#include <cstring>
#include <memory>

using Vell::Terrain;
using Vell::vec3;

namespace {

class TerrainCalls : public Calls {
protected:
    static std::unique_ptr<Terrain> Make(int level) {
        gl.NameProgram("terrain");
        std::vector<std::string> labels = {"grid"};
        for (int i = 0; i < level; ++i)
            labels.push_back("indices " + std::to_string(i));
        gl.Name("buffer", labels);
        return std::make_unique<Terrain>(level);
    }

    static std::unique_ptr<Terrain> Made3() {
        auto terrain = Make(3);
        Forget();
        return terrain;
    }

    /// Gives the terrain a height map of that width and a ground texture.
    static void Furnish(Terrain& terrain, int width) {
        static int count = 0; // the registry knows every path for good
        const std::string n = std::to_string(++count);
        const std::vector<unsigned char> row(static_cast<std::size_t>(width) * 3, 7);
        WritePng("height" + n + ".png", width, 1, 3, row);
        WritePng("ground" + n + ".png", width, 1, 3, row);
        const std::string labels[] = {"heights", "ground"};
        gl.Name("texture", labels);
        terrain.Load("height" + n + ".png");
        terrain.SetTexture("ground" + n + ".png", 0);
        Forget();
    }

    static constexpr const char* refusedIndices =
        "glGetError(); glIndexPointer(GL_UNSIGNED_INT, 0, 0); glGetError()";

    static std::string Frame(const std::string& heights, const std::string& ground,
                             const std::string& tiles,
                             const std::string& indices = refusedIndices) {
        return R"(
            -- height map and ground
            glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
            )" +
               BindTexture(heights) + "glActiveTexture(GL_TEXTURE1); glEnable(GL_TEXTURE_2D)\n" +
               BindTexture(ground) +
               R"(
            glUseProgramObject(terrain)
            -- the grid without texture coordinates; the error of its index array is taken back
            glEnableClientState(GL_VERTEX_ARRAY)
            glDisableClientState(GL_TEXTURE_COORD_ARRAY)
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices 0)
            )" +
               indices +
               R"(
            glBindBuffer(GL_ARRAY_BUFFER, grid)
            glVertexPointer(3, GL_FLOAT, 0, 0)
            -- strips along a diagonal
            glPushMatrix()
            )" +
               tiles +
               R"(
            -- as it was found
            glPopMatrix()
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)
            glBindBuffer(GL_ARRAY_BUFFER, 0)
            glDisableClientState(GL_VERTEX_ARRAY)
            glUseProgramObject(0)
            glActiveTexture(GL_TEXTURE1); glDisable(GL_TEXTURE_2D)
            glActiveTexture(GL_TEXTURE0); glDisable(GL_TEXTURE_2D)
            )";
    }

    template <class T>
    static std::vector<T> ContentOf(const std::string& buffer) {
        const std::vector<unsigned char>& bytes = gl.Content(buffer);
        std::vector<T> values(bytes.size() / sizeof(T));
        std::memcpy(values.data(), bytes.data(), bytes.size());
        return values;
    }
};

} // namespace

TEST_F(TerrainCalls, Construction_builds_the_shader_and_fills_two_buffers) {
    const auto terrain = Make(3);
    EXPECT_TRUE(Made("-- the program and its samplers\n" + NewProgram("terrain") +
                     "glUseProgramObject(terrain)\n" + Send("terrain", "heightmap", "1i", "0") +
                     Send("terrain", "texture0", "1i", "1") + R"(
        glUseProgramObject(0)
        -- names for the buffers
        glGenBuffers(1, grid)
        glGenBuffers(3, indices 0 indices 1 indices 2)
        -- the grid
        glBindBuffer(GL_ARRAY_BUFFER, grid)
        glBufferData(GL_ARRAY_BUFFER, 13068, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ARRAY_BUFFER, 0)
        -- its indices
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices 0)
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, 16384, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0)
        )"));
    const std::vector<float> grid = ContentOf<float>("grid");
    const std::vector<GLuint> indices = ContentOf<GLuint>("indices 0");
    for (std::size_t i = 0; i <= 32; ++i)
        for (std::size_t j = 0; j <= 32; ++j) {
            EXPECT_EQ(grid[(i * 33 + j) * 3], static_cast<float>(i));
            EXPECT_EQ(grid[(i * 33 + j) * 3 + 1], 0.0f);
            EXPECT_EQ(grid[(i * 33 + j) * 3 + 2], static_cast<float>(j));
        }
    for (GLuint r = 0; r < 32; ++r)
        for (GLuint k = 0; k < 32; ++k) {
            const std::size_t at = (r * 32 + k) * 4;
            EXPECT_EQ(indices[at], r * 33 + k);
            EXPECT_EQ(indices[at + 1], (r + 1) * 33 + k);
            EXPECT_EQ(indices[at + 2], (r + 1) * 33 + k + 1);
            EXPECT_EQ(indices[at + 3], r * 33 + k + 1);
        }
}

TEST_F(TerrainCalls, Scale_is_sent_at_once) {
    const auto terrain = Made3();
    terrain->SetScale(vec3(2, 3, 4));
    EXPECT_TRUE(Made("glUseProgramObject(terrain)\n" + Send("terrain", "scale", "3f", "2, 3, 4") +
                     "glUseProgramObject(0)"));
}

TEST_F(TerrainCalls, Tiles_add_up_their_steps) {
    const auto terrain = Made3();
    Furnish(*terrain, 95); // 95 / 32 = 2 rows of 2 tiles
    terrain->Draw(vec3(5, 6, 7));
    EXPECT_TRUE(Made(Frame("heights", "ground", R"(
        glTranslatef(32, 0, 0)
        glTranslatef(0, 0, 32); glDrawElements(GL_QUADS, 32, GL_UNSIGNED_INT, 0)
        glTranslatef(0, 0, 32); glDrawElements(GL_QUADS, 32, GL_UNSIGNED_INT, 0)
        glTranslatef(32, 0, 0)
        glTranslatef(0, 0, 32); glDrawElements(GL_QUADS, 32, GL_UNSIGNED_INT, 0)
        glTranslatef(0, 0, 32); glDrawElements(GL_QUADS, 32, GL_UNSIGNED_INT, 0)
        )")));
}

TEST_F(TerrainCalls, Narrow_height_map_draws_no_tile_but_sets_and_restores_everything) {
    const auto terrain = Made3();
    Furnish(*terrain, 31);
    terrain->Draw(vec3(0, 0, 0));
    EXPECT_TRUE(Made(Frame("heights", "ground", "")));
}

TEST_F(TerrainCalls, Drawing_raises_an_error_again_that_was_pending) {
    const auto terrain = Made3();
    Furnish(*terrain, 31);
    gl.errors = {GL_INVALID_ENUM};
    terrain->Draw(vec3(0, 0, 0));
    EXPECT_TRUE(Made(Frame("heights", "ground", "", R"(
            glGetError(); glGetError()
            glIndexPointer(GL_UNSIGNED_INT, 0, 0)
            glGetError(); glEnable(GL_RGBA)
            )")));
}

TEST_F(TerrainCalls, Height_map_of_32_pixels_is_one_tile) {
    const auto terrain = Made3();
    Furnish(*terrain, 32);
    terrain->Draw(vec3(0, 0, 0));
    EXPECT_TRUE(Made(Frame("heights", "ground", R"(
        glTranslatef(32, 0, 0)
        glTranslatef(0, 0, 32); glDrawElements(GL_QUADS, 32, GL_UNSIGNED_INT, 0)
        )")));
}

TEST_F(TerrainCalls, End_deletes_the_buffers_then_pictures_and_shader) {
    auto terrain = Made3();
    terrain.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteBuffers(1, grid)
        glDeleteBuffers(3, indices 0 indices 1 indices 2)
        -- five pictures, none loaded
        glDeleteTextures(1, 0); glDeleteTextures(1, 0); glDeleteTextures(1, 0)
        glDeleteTextures(1, 0); glDeleteTextures(1, 0)
        )" + DeleteProgram("terrain")));
}
