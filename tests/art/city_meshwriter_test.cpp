#include "art/common/meshlikeness.h"
#include "art/common/meshwriter.h"

#include "engine/render/xt3dstatic.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/scratch.h"

#include <limits>

#include <gmock/gmock.h>

namespace {

using ::testing::HasSubstr;
using namespace Art;

MeshFile OneTriangle() {
    const vec3 up{0, 1, 0};
    return {"Data/",
            true,
            {{{"stone.jpg", "", ""},
              {{{0, 0, 0}, up, {0, 0}, {0.25f, 0.5f}},
               {{1, 0, 0}, up, {1, 0}, {1, 0}},
               {{0, 2.5f, -1}, up, {0, 1}, {0, 1}}}}}};
}

TEST(MeshWriter, Reads_back_what_it_wrote) {
    const ScratchDir scratch;
    ASSERT_TRUE(WriteMesh("a.xt3dstatic", OneTriangle()));
    MeshFile read;
    std::string error;
    ASSERT_TRUE(ReadMesh("a.xt3dstatic", read, error)) << error;
    EXPECT_EQ(read.textureDirectory, "Data/");
    EXPECT_TRUE(read.hasLightmap);
    ASSERT_EQ(VertexCount(read), 3u);
    EXPECT_EQ(read.subMeshes[0].textures[0], "stone.jpg");
    EXPECT_EQ(read.subMeshes[0].textures[1], "");
    EXPECT_TRUE(read.subMeshes[0].vertices[2].position == (vec3{0, 2.5f, -1}));
    EXPECT_TRUE(read.subMeshes[0].vertices[0].lightmap == (vec2{0.25f, 0.5f}));
}

TEST(MeshWriter, Writes_tokens_in_the_order_of_the_format) {
    const ScratchDir scratch;
    ASSERT_TRUE(WriteMesh("a.xt3dstatic", OneTriangle()));
    EXPECT_EQ(ReadFile("a.xt3dstatic"), "XT3DSTATIC\n1\nData/\n1\nstone.jpg\nNULL\nNULL\n3\n"
                                        "0 0 0 0 1 0 0 0 0.25 0.5\n"
                                        "1 0 0 0 1 0 1 0 1 0\n"
                                        "0 2.5 -1 0 1 0 0 1 0 1\n");
}

TEST(MeshWriter, Leaves_out_light_map_numbers_without_a_light_map) {
    const ScratchDir scratch;
    MeshFile mesh = OneTriangle();
    mesh.hasLightmap = false;
    ASSERT_TRUE(WriteMesh("a.xt3dstatic", mesh));
    EXPECT_THAT(ReadFile("a.xt3dstatic"), HasSubstr("\n1 0 0 0 1 0 1 0\n"));
}

struct Refusal {
    const char* name;
    void (*spoil)(MeshFile&);
    const char* reason;
};

const Refusal refusals[] = {
    {"no_sub_mesh", [](MeshFile& m) { m.subMeshes.clear(); }, "at least one sub-mesh, found none"},
    {"no_vertices", [](MeshFile& m) { m.subMeshes[0].vertices.clear(); },
     "sub-mesh 0: expected a positive multiple of 3 vertices, found 0"},
    {"two_corners", [](MeshFile& m) { m.subMeshes[0].vertices.pop_back(); },
     "multiple of 3 vertices, found 2"},
    {"blank_in_name", [](MeshFile& m) { m.subMeshes[0].textures[1] = "a b.jpg"; },
     "without blanks, found \"a b.jpg\""},
    {"name_that_means_none", [](MeshFile& m) { m.subMeshes[0].textures[0] = "NULL"; },
     "found \"NULL\""},
    {"blank_in_folder", [](MeshFile& m) { m.textureDirectory = "my data/"; },
     "texture directory without blanks"},
    {"no_folder", [](MeshFile& m) { m.textureDirectory = ""; }, "texture directory without blanks"},
    {"not_a_number",
     [](MeshFile& m) {
         m.subMeshes[0].vertices[1].position.y = std::numeric_limits<float>::quiet_NaN();
     },
     "vertex 1 of sub-mesh 0: expected finite numbers, found nan"},
    {"long_normal",
     [](MeshFile& m) {
         m.subMeshes[0].vertices[2].normal = {0, 2, 0};
     },
     "vertex 2 of sub-mesh 0: expected a normal of length 1, found 2.0"},
    {"outside_light_map", [](MeshFile& m) { m.subMeshes[0].vertices[0].lightmap.x = 1.5f; },
     "light-map coordinates in 0..1, found 1.5"},
};

class MeshRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(MeshRefusal, Says_why_and_writes_nothing) {
    const ScratchDir scratch;
    MeshFile mesh = OneTriangle();
    GetParam().spoil(mesh);
    EXPECT_THAT(WhyNotWritable(mesh), HasSubstr(GetParam().reason));
    EXPECT_FALSE(WriteMesh("a.xt3dstatic", mesh));
    EXPECT_FALSE(std::filesystem::exists("a.xt3dstatic"));
}

INSTANTIATE_TEST_SUITE_P(MeshWriter, MeshRefusal, ::testing::ValuesIn(refusals),
                         [](const auto& row) { return row.param.name; });

struct BrokenFile {
    const char* name;
    const char* text;
    const char* error;
};

const BrokenFile brokenFiles[] = {
    {"wrong_magic", "OBJ\n", "start: expected XT3DSTATIC, found \"OBJ\""},
    {"word_for_a_number", "XT3DSTATIC 1 D/ 0 a.jpg NULL NULL 3 0 0 0 0 1 0 0 abc",
     "vertex 0 of sub-mesh 0: of 8 numbers: expected a number, found \"abc\""},
    {"cut_off", "XT3DSTATIC 1 D/ 0 a.jpg NULL NULL 3 0 0 0", "found the end of the file"},
    {"negative_count", "XT3DSTATIC 1 D/ 0 a.jpg NULL NULL -3",
     "sub-mesh 0: expected a positive count"},
};

class BrokenMesh : public ::testing::TestWithParam<BrokenFile> {};

TEST_P(BrokenMesh, Is_refused_with_place_expected_and_found) {
    const ScratchDir scratch;
    WriteFile("b.xt3dstatic", GetParam().text);
    MeshFile mesh;
    std::string error;
    EXPECT_FALSE(ReadMesh("b.xt3dstatic", mesh, error));
    EXPECT_THAT(error, HasSubstr("b.xt3dstatic: "));
    EXPECT_THAT(error, HasSubstr(GetParam().error));
}

INSTANTIATE_TEST_SUITE_P(MeshWriter, BrokenMesh, ::testing::ValuesIn(brokenFiles),
                         [](const auto& row) { return row.param.name; });

TEST(MeshReader, Says_so_when_there_is_no_file) {
    const ScratchDir scratch;
    MeshFile mesh;
    std::string error;
    EXPECT_FALSE(ReadMesh("none.xt3dstatic", mesh, error));
    EXPECT_EQ(error, "none.xt3dstatic: cannot be opened");
}

using MeshWriterAndEngine = GlTest;

TEST_F(MeshWriterAndEngine, The_engine_loads_what_was_written) {
    MeshFile mesh = OneTriangle();
    mesh.hasLightmap = false;
    mesh.subMeshes[0].textures[0].clear();
    ASSERT_TRUE(WriteMesh("triangle.xt3dstatic", mesh));
    Vell::XT3DStatic loaded;
    loaded.Load("triangle.xt3dstatic");
    EXPECT_EQ(loaded.GetBBox()->GetMax().y, 2.5f);
    EXPECT_EQ(loaded.GetBBox()->GetMin().z, -1.0f);
}

TEST(MeshLikeness, Is_the_share_of_equal_triangles_in_any_order) {
    MeshFile one = OneTriangle();
    one.subMeshes.push_back(one.subMeshes[0]);
    one.subMeshes[1].vertices[0].position.x = 7;
    MeshFile other = one;
    EXPECT_EQ(Likeness(one, other), 1.0);
    std::swap(other.subMeshes[0], other.subMeshes[1]);
    other.subMeshes[0].vertices[1].lightmap.x = 0.5f;
    EXPECT_EQ(Likeness(one, other), 1.0) << "neither order nor light map counts";

    other.subMeshes[0].vertices[1].texcoord.x += 64; // a view mark
    EXPECT_EQ(Likeness(one, other), 0.5);
    other.subMeshes[1].textures[0] = "trim.jpg";
    EXPECT_EQ(Likeness(one, other), 0.0);
}

TEST(MeshLikeness, Counts_what_only_one_of_two_meshes_has) {
    MeshFile twice = OneTriangle();
    twice.subMeshes.push_back(twice.subMeshes[0]);
    EXPECT_EQ(Likeness(OneTriangle(), twice), 0.5);
    EXPECT_EQ(Likeness(twice, OneTriangle()), 0.5);
    EXPECT_EQ(Likeness(MeshFile(), MeshFile()), 1.0);
}

} // namespace
