// Static meshes, call by call: loading, material, end.

#include "tests/render/xt3dstatic_calls.h"

#include <cstring>

using Vell::XT3DStatic;

namespace {

std::vector<float> FloatsOf(const std::string& buffer) {
    const std::vector<unsigned char>& bytes = gl.Content(buffer);
    std::vector<float> floats(bytes.size() / sizeof(float));
    std::memcpy(floats.data(), bytes.data(), bytes.size());
    return floats;
}

} // namespace

// ------------------------------------------------------------------------------------ Loading

TEST_F(MeshCalls, Loading_reads_the_light_map_then_textures_and_fills_four_buffers) {
    const auto mesh = Load(lit, litTextures);
    EXPECT_TRUE(Made("-- light map\n" + LoadTexture("light map") + "-- textures of the sub-mesh\n" +
                     LoadTexture("a") + LoadTexture("b") + R"(
        -- its four buffers
        glGetString(GL_EXTENSIONS)
        glGenBuffers(1, positions)
        glGenBuffers(1, texcoords)
        glGenBuffers(1, lightmap texcoords)
        glGenBuffers(1, normals)
        glBindBuffer(GL_ARRAY_BUFFER, positions)
        glBufferData(GL_ARRAY_BUFFER, 36, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ARRAY_BUFFER, normals)
        glBufferData(GL_ARRAY_BUFFER, 36, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ARRAY_BUFFER, texcoords)
        glBufferData(GL_ARRAY_BUFFER, 24, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ARRAY_BUFFER, lightmap texcoords)
        glBufferData(GL_ARRAY_BUFFER, 24, memory, GL_STATIC_DRAW)
        glBindBuffer(GL_ARRAY_BUFFER, 0)
        )"));
    EXPECT_EQ(FloatsOf("positions"), (std::vector<float>{0, 0, 0, 2, 0, 0, 0, 2, 2}));
    EXPECT_EQ(FloatsOf("normals"), (std::vector<float>{0, 1, 0, 0, 1, 0, 0, 1, 0}));
    EXPECT_EQ(FloatsOf("texcoords"), (std::vector<float>{0.25f, 0.5f, 0.75f, 0.5f, 0.25f, 1}));
    EXPECT_EQ(FloatsOf("lightmap texcoords"),
              (std::vector<float>{0.125f, 0.375f, 0.125f, 0.375f, 0.125f, 0.375f}));
}

TEST_F(MeshCalls, Loading_finishes_a_sub_mesh_before_it_begins_the_next) {
    const auto fill = [](const std::string& buffer, const std::string& bytes) {
        return "glBindBuffer(GL_ARRAY_BUFFER, " + buffer + ")\nglBufferData(GL_ARRAY_BUFFER, " +
               bytes + ", memory, GL_STATIC_DRAW)\n";
    };
    const auto fourBuffers = [&](const std::string& n) {
        return "glGetString(GL_EXTENSIONS)\nglGenBuffers(1, positions " + n +
               "); glGenBuffers(1, texcoords " + n + ")\nglGenBuffers(1, lightmap texcoords " + n +
               "); glGenBuffers(1, normals " + n + ")\n" + fill("positions " + n, "36") +
               fill("normals " + n, "36") + fill("texcoords " + n, "24") +
               fill("lightmap texcoords " + n, "24") + "glBindBuffer(GL_ARRAY_BUFFER, 0)\n";
    };
    const auto mesh = Load({{"NULL a.png NULL", "NULL NULL b.png"}, false}, {"a", "b"});
    EXPECT_TRUE(Made(LoadTexture("a") + fourBuffers("0") + LoadTexture("b") + fourBuffers("1")));
}

TEST_F(MeshCalls, Loading_asks_for_buffers_once_a_sub_mesh_and_makes_none_without) {
    gl.extensions = "";
    const auto mesh = Load({{"NULL NULL NULL", "NULL NULL NULL"}, false}, {});
    EXPECT_TRUE(Made("glGetString(GL_EXTENSIONS); glGetString(GL_EXTENSIONS)"));
}

TEST_F(MeshCalls, Loading_a_path_again_calls_nothing) {
    const auto first = Loaded(lit, litTextures);
    {
        XT3DStatic second;
        second.Load(folder + "mesh.xt3dstatic");
        EXPECT_TRUE(Made(""));
    }
    EXPECT_TRUE(Made(""));
}

TEST_F(MeshCalls, What_is_missing_or_no_mesh_calls_nothing) {
    WriteFile(folder + "other.xt3dstatic", "xt3dstatic 1");
    for (const char* name : {"missing.xt3dstatic", "other.xt3dstatic"}) {
        {
            XT3DStatic mesh;
            mesh.Load(folder + name);
            EXPECT_TRUE(Made(""));
            mesh.Draw();
            Forget();
        }
        EXPECT_TRUE(Made(""));
    }
}

// ----------------------------------------------------------------------------------- Material

TEST_F(MeshCalls, Material_is_built_and_its_samplers_set) {
    const auto mesh = Loaded(plain, {});
    SetMaterial(*mesh);
    EXPECT_TRUE(
        Made("-- the program\n" + NewProgram("material") + "glUseProgramObject(material)\n" +
             "-- its samplers\n" + Send("material", "texture0", "1i", "0") +
             Send("material", "texture1", "1i", "1") + Send("material", "texture2", "1i", "2") +
             Send("material", "texture3", "1i", "3") + Send("material", "lightmap", "1i", "6") +
             "-- the program off\nglUseProgramObject(0)"));
    mesh->SetMaterialShader("other.vert", "other.frag");
    EXPECT_TRUE(Made(""));
}

// ---------------------------------------------------------------------------------------- End

TEST_F(MeshCalls, End_deletes_buffers_material_and_light_map_but_no_texture) {
    auto mesh = Loaded(lit, litTextures);
    SetMaterial(*mesh);
    Forget();
    mesh.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteBuffers(1, positions)
        glDeleteBuffers(1, texcoords)
        glDeleteBuffers(1, normals)
        glDeleteBuffers(1, lightmap texcoords)
        )" + DeleteProgram("material") +
                     "glDeleteTextures(1, light map)"));
}

TEST_F(MeshCalls, End_without_a_light_map_keeps_its_buffer) {
    auto mesh = Loaded(plain, {});
    mesh.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteBuffers(1, positions)
        glDeleteBuffers(1, texcoords)
        glDeleteBuffers(1, normals)
        )"));
}
