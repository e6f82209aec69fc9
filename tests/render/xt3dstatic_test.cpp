#include "engine/render/xt3dstatic.h"

#include "engine/core/ressourcemanager.h"
#include "tests/render/xt3dstatic_probe.h"
#include "tests/scene/layout.h"
#include "tests/support/buffers.h"

#include <cmath>

using namespace Vell;

namespace {

const char* const noTextures = "NULL NULL NULL ";

using Floats = std::vector<float>;

bool IsBuffer(GLuint buffer) {
    return EntryPoint<PFNGLISBUFFERPROC>("glIsBuffer")(buffer) == GL_TRUE;
}

Floats BufferFloats(GLuint buffer) {
    return BufferContent<float>(GL_ARRAY_BUFFER, buffer);
}

class XT3DStaticTest : public GlTest {
protected:
    /// Loads a file of one sub-mesh without textures and light map, given from its vertex count on.
    static void LoadPlain(XT3DStatic& mesh, const std::string& vertices) {
        const std::string prefix = NewPrefix();
        mesh.Load(WriteMesh(prefix, Header(prefix, 1, false) + noTextures + vertices));
    }

    static void ExpectBox(XT3DStatic& mesh, const vec3& low, const vec3& high) {
        EXPECT_EQ(mesh.GetBBox()->GetMin(), low);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), high);
    }
};

} // namespace

TEST_F(XT3DStaticTest, Is_empty_at_first_and_logs_its_end_all_the_same) {
    const LogWatch log;
    {
        XT3DStatic mesh;
        EXPECT_EQ(Probe::Name(mesh), "");
        EXPECT_EQ(Probe::Count(mesh), 0);
        EXPECT_EQ(Probe::SubMeshes(mesh), nullptr);
        EXPECT_EQ(mesh.GetMaterialShader(), nullptr);
        EXPECT_EQ(Probe::Lightmap(mesh), nullptr);
        EXPECT_FALSE(mesh.GetBlend());
        mesh.Draw();
        mesh.DrawShadow();
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "FREE", ""}}));
}

TEST_F(XT3DStaticTest, Keeps_its_fields_and_operations_at_their_places) {
    const XT3DStatic mesh;
    EXPECT_TRUE(InOrder(Probe::Fields(mesh)));
    const XT3DSubMesh part;
    EXPECT_TRUE(InOrder({&part.vertexCount, &part.texture0, &part.texture1, &part.texture2,
                         &part.positionBuffer, &part.texcoordBuffer, &part.lightmapTexcoordBuffer,
                         &part.normalBuffer, &part.positions, &part.normals, &part.texcoords,
                         &part.lightmapTexcoords}));
    EXPECT_EQ(Slot(&XT3DStatic::Load), Slot(&Mesh::Load));
    EXPECT_EQ(Slot(&XT3DStatic::Draw), Slot(&Mesh::Draw));
    EXPECT_EQ(Slot(&XT3DStatic::DrawShadow), Slot(&Mesh::DrawShadow));
}

TEST_F(XT3DStaticTest, Reads_every_number_of_a_record_to_its_place) {
    XT3DStatic mesh;
    LoadPlain(mesh, "2  1 2 3 4 5 6 7 8   9 10 11 12 13 14 15 16");
    ASSERT_EQ(Probe::Count(mesh), 1);
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    ASSERT_EQ(part.vertexCount, 2);
    EXPECT_EQ(part.positions[0], vec3(1, 2, 3));
    EXPECT_EQ(part.normals[0], vec3(4, 5, 6));
    EXPECT_EQ(part.texcoords[0], vec2(7, 8));
    EXPECT_EQ(part.positions[1], vec3(9, 10, 11));
    EXPECT_EQ(part.normals[1], vec3(12, 13, 14));
    EXPECT_EQ(part.texcoords[1], vec2(15, 16));
    EXPECT_EQ(part.lightmapTexcoords[0], vec2(0, 0)) << "there, but not filled";
    EXPECT_EQ(part.texture0, nullptr);
    EXPECT_EQ(part.texture1, nullptr);
    EXPECT_EQ(part.texture2, nullptr);
    EXPECT_FALSE(Probe::HasLightmap(mesh));
}

TEST_F(XT3DStaticTest, Tells_what_was_loaded) {
    Vell::XT3DStatic mesh;
    EXPECT_EQ(mesh.GetSubMeshCount(), 0);
    EXPECT_EQ(mesh.GetVertexCount(), 0);
    EXPECT_EQ(mesh.GetLightmap(), nullptr);
    const std::string path = "told.xt3dstatic";
    WriteFile(path, "XT3DSTATIC 2 tex/ 1\n"
                    "NULL a.png NULL 1\n1 2 3  0 0 1  0 0  0 0\n"
                    "NULL NULL NULL 2\n4 5 6  0 0 1  0 0  0 0\n7 8 9  0 0 1  0 0  0 0\n");
    mesh.Load(path);
    EXPECT_EQ(mesh.GetName(), path);
    EXPECT_EQ(mesh.GetTextureDirectory(), "tex/");
    EXPECT_EQ(mesh.GetSubMeshCount(), 2);
    EXPECT_EQ(mesh.GetVertexCount(), 1 + 2);
    EXPECT_EQ(mesh.GetSubMesh(0).texture0, nullptr);
    EXPECT_EQ(mesh.GetSubMesh(0).texture1->GetName(), "tex/a.png");
    EXPECT_EQ(mesh.GetSubMesh(1).vertexCount, 2);
    EXPECT_EQ(mesh.GetSubMesh(1).positions[1], Vell::vec3(7, 8, 9));
    EXPECT_EQ(mesh.GetLightmap()->GetName(), "tex/lightmap.jpg");
    EXPECT_EQ(mesh.GetBBox()->GetMax(), Vell::vec3(7, 8, 9));
}

TEST_F(XT3DStaticTest, Logs_its_path_when_it_is_loaded_and_when_it_is_freed) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + noTextures + Rectangle(0, 0, 1, 1));
    const LogWatch log;
    {
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_EQ(Probe::Name(mesh), name);
        EXPECT_EQ(Probe::Directory(mesh), prefix);
        EXPECT_EQ(RessourceManager::GetInstance().Get(name), &mesh);
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "LOADED", name}, {"XT3DStatic", "FREE", name}}));
}

TEST_F(XT3DStaticTest, Takes_any_blank_between_tokens) {
    XT3DStatic mesh;
    const std::string name = WriteMesh(
        NewPrefix(), "\n\tXT3DSTATIC\r\n1\n\n  dir/\t0\vNULL\fNULL\nNULL 1\n1\n2\n3 4\t5\n6 7\n8");
    mesh.Load(name);
    EXPECT_EQ(Probe::Directory(mesh), "dir/");
    ASSERT_EQ(Probe::Count(mesh), 1);
    EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[0], vec3(1, 2, 3));
    EXPECT_EQ(Probe::SubMesh(mesh, 0).texcoords[0], vec2(7, 8));
}

TEST_F(XT3DStaticTest, Takes_a_number_in_any_notation_a_stream_accepts) {
    struct Case {
        const char* text;
        float value;
    };
    for (const Case& c :
         {Case{"1", 1.0f}, Case{"+1.5", 1.5f}, Case{"-0.25", -0.25f}, Case{".5", 0.5f},
          Case{"5.", 5.0f}, Case{"1e2", 100.0f}, Case{"25E-2", 0.25f}, Case{"1.5e+1", 15.0f},
          Case{"007.5", 7.5f}, Case{"-0", 0.0f}, Case{"1e-60", 0.0f}}) {
        SCOPED_TRACE(c.text);
        XT3DStatic mesh;
        LoadPlain(mesh, "1  2 " + std::string(c.text) + " 3  4 5 6  7 8");
        EXPECT_EQ(Probe::SubMesh(mesh, 0).positions[0], vec3(2.0f, c.value, 3.0f));
        EXPECT_EQ(Probe::SubMesh(mesh, 0).texcoords[0], vec2(7.0f, 8.0f)) << "reading went on";
    }
}

TEST_F(XT3DStaticTest, Keeps_the_sign_of_a_zero) {
    XT3DStatic mesh;
    LoadPlain(mesh, "1  -0 -0.0 -0e5  -0 -0 -0  -0 -0");
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    for (const float zero :
         {part.positions[0].x, part.positions[0].y, part.positions[0].z, part.normals[0].x,
          part.normals[0].y, part.normals[0].z, part.texcoords[0].x, part.texcoords[0].y}) {
        EXPECT_EQ(zero, 0.0f);
        EXPECT_TRUE(std::signbit(zero));
    }
}

TEST_F(XT3DStaticTest, Rounds_a_number_once) {
    // A little above the middle between 1 and the next float, 1 + 2^-23, but in a double just the
    // middle, from where a float would go back to 1.
    const std::string number = " 1.000000059604644775390625000001";
    XT3DStatic mesh;
    LoadPlain(mesh, "1 " + number + number + number + number + number + number + number + number);
    const float next = 1.0f + 1.0f / (1 << 23);
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    EXPECT_EQ(part.positions[0], vec3(next, next, next));
    EXPECT_EQ(part.normals[0], vec3(next, next, next));
    EXPECT_EQ(part.texcoords[0], vec2(next, next));
}

TEST_F(XT3DStaticTest, Reads_zeros_from_the_first_word_that_is_no_number_on) {
    for (const char* word : {"abc", "nan", "inf", "-", "1e", "--1"}) {
        SCOPED_TRACE(word);
        const std::string prefix = NewPrefix();
        const std::string name =
            WriteMesh(prefix, Header(prefix, 1, false) + noTextures + "2  1 2 3 4 " + word +
                                  " 6 7 8  9 10 11 12 13 14 15 16");
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "LOADED", name}}));
        const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
        ASSERT_EQ(part.vertexCount, 2);
        EXPECT_EQ(part.positions[0], vec3(1, 2, 3));
        EXPECT_EQ(part.normals[0], vec3(4, 0, 0));
        EXPECT_EQ(part.texcoords[0], vec2(0, 0));
        EXPECT_EQ(part.positions[1], vec3(0, 0, 0));
    }
}

TEST_F(XT3DStaticTest, Loads_textures_from_the_directory_glued_to_their_names) {
    const std::string prefix = NewPrefix();
    const std::string first = PlainTexture(prefix, "first.png", red);
    const std::string third = PlainTexture(prefix, "third.png", blue);
    const LogWatch log;
    XT3DStatic mesh;
    const std::string name =
        WriteMesh(prefix, Header(prefix, 2, false) + first + " NULL " + third + " 0 " + first +
                              " NULL NULL " + Rectangle(0, 0, 1, 1));
    mesh.Load(name);
    ASSERT_EQ(Probe::Count(mesh), 2);
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    ASSERT_NE(part.texture0, nullptr);
    EXPECT_EQ(part.texture0->GetName(), prefix + first);
    EXPECT_EQ(part.texture1, nullptr);
    ASSERT_NE(part.texture2, nullptr);
    EXPECT_EQ(part.texture2->GetName(), prefix + third);
    EXPECT_EQ(ReadTexture(part.texture2->GetID()).At(0, 0), blue);
    ASSERT_NE(Probe::SubMesh(mesh, 1).texture0, nullptr);
    EXPECT_EQ(Probe::SubMesh(mesh, 1).texture0->GetID(), part.texture0->GetID()) << "shared";
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", prefix + first},
                                   {"Image", "LOADED", prefix + third},
                                   {"XT3DStatic", "LOADED", name}}));
}

TEST_F(XT3DStaticTest, Takes_NULL_in_small_letters_for_a_file_name) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + "null NULL NULL " + Rectangle(0, 0, 1, 1));
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    ASSERT_NE(Probe::SubMesh(mesh, 0).texture0, nullptr);
    EXPECT_EQ(Probe::SubMesh(mesh, 0).texture0->GetID(), 0u);
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Image", "ERROR", prefix + "null"}, {"XT3DStatic", "LOADED", name}}));
}

TEST_F(XT3DStaticTest, Loads_a_light_map_and_its_coordinates_with_the_flag) {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, true) + noTextures + "2  1 2 3 4 5 6 7 8 0.25 0.5  " +
                              "9 10 11 12 13 14 15 16 0.75 1");
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    EXPECT_TRUE(Probe::HasLightmap(mesh));
    ASSERT_NE(Probe::Lightmap(mesh), nullptr);
    EXPECT_EQ(Probe::Lightmap(mesh)->GetName(), prefix + "lightmap.jpg");
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    EXPECT_EQ(part.lightmapTexcoords[0], vec2(0.25f, 0.5f));
    EXPECT_EQ(part.positions[1], vec3(9, 10, 11));
    EXPECT_EQ(part.lightmapTexcoords[1], vec2(0.75f, 1.0f));
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Image", "LOADED", prefix + "lightmap.jpg"}, {"XT3DStatic", "LOADED", name}}));
}

TEST_F(XT3DStaticTest, Loads_on_without_its_light_map_file) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, true) + noTextures + Rectangle(0, 0, 1, 1, 0, "0 0"));
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    ASSERT_NE(Probe::Lightmap(mesh), nullptr);
    EXPECT_EQ(Probe::Lightmap(mesh)->GetID(), 0u);
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Image", "ERROR", prefix + "lightmap.jpg"}, {"XT3DStatic", "LOADED", name}}));
}

TEST_F(XT3DStaticTest, Misreads_records_of_ten_numbers_without_the_flag) {
    XT3DStatic mesh;
    LoadPlain(mesh, "2  1 2 3 4 5 6 7 8 0.25 0.5  9 10 11 12 13 14 15 16 0.75 1");
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    // The second record begins at the first one's light map coordinates.
    EXPECT_EQ(part.positions[1], vec3(0.25f, 0.5f, 9.0f));
    EXPECT_EQ(part.texcoords[1], vec2(13.0f, 14.0f));
}

TEST_F(XT3DStaticTest, Has_a_box_around_all_its_vertices) {
    const std::string prefix = NewPrefix();
    XT3DStatic mesh;
    mesh.Load(WriteMesh(prefix, Header(prefix, 2, false) + noTextures + "2 " +
                                    Vertex(-3, -5, -7, 0, 0) + Vertex(-2, -6, -7, 0, 0) +
                                    noTextures + "1 " + Vertex(-1, -5.5f, -8, 0, 0)));
    // All coordinates are negative: a box begun at the origin would reach too far.
    ExpectBox(mesh, vec3(-3, -6, -8), vec3(-1, -5, -7));
}

TEST_F(XT3DStaticTest, Has_a_zero_box_when_it_has_no_vertices) {
    const std::string prefix = NewPrefix();
    XT3DStatic none;
    none.Load(WriteMesh(prefix, Header(prefix, 0, false)));
    EXPECT_EQ(Probe::Count(none), 0);
    ExpectBox(none, vec3(0, 0, 0), vec3(0, 0, 0));
    XT3DStatic empty;
    LoadPlain(empty, "0");
    ASSERT_EQ(Probe::Count(empty), 1);
    EXPECT_EQ(Probe::SubMesh(empty, 0).vertexCount, 0);
    ExpectBox(empty, vec3(0, 0, 0), vec3(0, 0, 0));
    empty.Draw();
    empty.DrawShadow();
}

TEST_F(XT3DStaticTest, Begins_its_box_at_the_first_vertex_there_is) {
    const std::string prefix = NewPrefix();
    XT3DStatic mesh;
    mesh.Load(WriteMesh(prefix, Header(prefix, 2, false) + noTextures + "0 " + noTextures + "2 " +
                                    Vertex(1, 2, 3, 0, 0) + Vertex(4, 5, 6, 0, 0)));
    ExpectBox(mesh, vec3(1, 2, 3), vec3(4, 5, 6));
}

TEST_F(XT3DStaticTest, Fills_a_buffer_for_each_array) {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    XT3DStatic mesh;
    mesh.Load(WriteMesh(prefix, Header(prefix, 1, true) + noTextures + "2  1 2 3 4 5 6 7 8 0.25 " +
                                    "0.5  9 10 11 12 13 14 15 16 0.75 1"));
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    EXPECT_EQ(BufferFloats(part.positionBuffer), (Floats{1, 2, 3, 9, 10, 11}));
    EXPECT_EQ(BufferFloats(part.normalBuffer), (Floats{4, 5, 6, 12, 13, 14}));
    EXPECT_EQ(BufferFloats(part.texcoordBuffer), (Floats{7, 8, 15, 16}));
    EXPECT_EQ(BufferFloats(part.lightmapTexcoordBuffer), (Floats{0.25f, 0.5f, 0.75f, 1}));
}

TEST_F(XT3DStaticTest, Fills_the_buffer_of_light_map_coordinates_even_without_a_light_map) {
    XT3DStatic mesh;
    LoadPlain(mesh, "2  1 2 3 4 5 6 7 8   9 10 11 12 13 14 15 16");
    EXPECT_EQ(BufferFloats(Probe::SubMesh(mesh, 0).lightmapTexcoordBuffer), (Floats{0, 0, 0, 0}));
}

TEST_F(XT3DStaticTest, Leaves_no_buffer_bound) {
    XT3DStatic mesh;
    LoadPlain(mesh, Rectangle(0, 0, 1, 1));
    GLint bound = -1;
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST_F(XT3DStaticTest, Frees_its_light_map_and_all_its_buffers) {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, true) + noTextures + Rectangle(0, 0, 1, 1, 0, "0 0"));
    auto mesh = std::make_unique<XT3DStatic>();
    mesh->Load(name);
    const XT3DSubMesh part = Probe::SubMesh(*mesh, 0);
    const LogWatch log;
    mesh.reset();
    for (const GLuint buffer :
         {part.positionBuffer, part.normalBuffer, part.texcoordBuffer, part.lightmapTexcoordBuffer})
        EXPECT_FALSE(IsBuffer(buffer));
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Image", "FREE", prefix + "lightmap.jpg"}, {"XT3DStatic", "FREE", name}}));
}

TEST_F(XT3DStaticTest, Leaves_textures_and_unused_light_map_coordinates_behind) {
    const std::string prefix = NewPrefix();
    const std::string file = PlainTexture(prefix, "a.png", red);
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + file + " NULL NULL " + Rectangle(0, 0, 1, 1));
    auto mesh = std::make_unique<XT3DStatic>();
    mesh->Load(name);
    const XT3DSubMesh part = Probe::SubMesh(*mesh, 0);
    const LogWatch log;
    mesh.reset();
    EXPECT_FALSE(IsBuffer(part.positionBuffer));
    EXPECT_TRUE(IsBuffer(part.lightmapTexcoordBuffer));
    EXPECT_EQ(part.lightmapTexcoords[5], vec2(0, 0)) << "still there to be read";
    EXPECT_TRUE(glIsTexture(part.texture0->GetID()));
    EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "FREE", name}}));
}
