#include "engine/render/xt3dstatic.h"

#include "engine/core/ressourcemanager.h"
#include "tests/render/xt3dstatic_probe.h"

#include <filesystem>

using namespace Vell;

namespace {

const char* const noTextures = "NULL NULL NULL ";

class XT3DStaticDamageTest : public GlTest {
protected:
    /// The row of an error, and a mesh that is empty yet safe to draw.
    static void ExpectRefused(const std::string& name) {
        SCOPED_TRACE(name);
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "ERROR", name}}));
        EXPECT_EQ(Probe::Name(mesh), name);
        EXPECT_EQ(Probe::Count(mesh), 0);
        EXPECT_EQ(Probe::SubMeshes(mesh), nullptr);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(0, 0, 0));
        mesh.Draw();
        mesh.DrawShadow();
    }
};

} // namespace

TEST_F(XT3DStaticDamageTest, Refuses_a_missing_file) {
    ExpectRefused(NewPrefix() + "missing.xt3dstatic");
}

TEST_F(XT3DStaticDamageTest, Refuses_a_folder) {
    const std::string name = NewPrefix() + "folder";
    std::filesystem::create_directory(name);
    ExpectRefused(name);
}

TEST_F(XT3DStaticDamageTest, Refuses_any_other_magic) {
    for (const char* magic : {"", "xt3dstatic", "XT3DSTATIC2", "XT3DSTATI", "XT3DSTATIC,1"}) {
        SCOPED_TRACE(magic);
        ExpectRefused(WriteMesh(NewPrefix(), std::string(magic) + " 1 dir 0 " + noTextures +
                                                 Rectangle(0, 0, 1, 1)));
    }
}

TEST_F(XT3DStaticDamageTest, Occupies_its_path_even_when_loading_fails) {
    const std::string prefix = NewPrefix();
    const std::string name = prefix + "mesh.xt3dstatic";
    XT3DStatic first;
    first.Load(name);
    EXPECT_EQ(RessourceManager::GetInstance().Get(name), &first);
    WriteMesh(prefix, Header(prefix, 1, false) + noTextures + Rectangle(0, 0, 1, 1)); // too late
    const LogWatch log;
    {
        XT3DStatic second;
        second.Load(name);
        EXPECT_EQ(Probe::Count(second), 0);
    }
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(XT3DStaticDamageTest, Takes_negative_counts_for_none) {
    XT3DStatic none;
    none.Load(WriteMesh(NewPrefix(), "XT3DSTATIC -3 dir 0"));
    EXPECT_EQ(Probe::Count(none), 0);
    XT3DStatic empty;
    empty.Load(WriteMesh(NewPrefix(), std::string("XT3DSTATIC 1 dir 0 ") + noTextures + "-6"));
    ASSERT_EQ(Probe::Count(empty), 1);
    EXPECT_EQ(Probe::SubMesh(empty, 0).vertexCount, 0);
    empty.Draw();
}

TEST_F(XT3DStaticDamageTest, Refuses_counts_that_no_memory_would_hold) {
    for (const char* count : {"2000000000", "2147483647", "99999999999999999999"}) {
        SCOPED_TRACE(count);
        ExpectRefused(WriteMesh(NewPrefix(), std::string("XT3DSTATIC ") + count + " dir 0"));
        ExpectRefused(
            WriteMesh(NewPrefix(), std::string("XT3DSTATIC 1 dir 0 ") + noTextures + count + " 1"));
    }
}

TEST_F(XT3DStaticDamageTest, Drops_the_sub_meshes_before_one_that_is_too_large) {
    const std::string prefix = NewPrefix();
    ExpectRefused(WriteMesh(prefix, Header(prefix, 2, false) + noTextures + Rectangle(0, 0, 1, 1) +
                                        noTextures + "2000000000"));
}

TEST_F(XT3DStaticDamageTest, Reads_what_it_can_of_a_file_that_ends_early) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 3, false) + noTextures + "2  1 2 3 4 5 6 7 8  9 10");
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load(name);
    EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "LOADED", name}}));
    ASSERT_EQ(Probe::Count(mesh), 3);
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    ASSERT_EQ(part.vertexCount, 2);
    EXPECT_EQ(part.texcoords[0], vec2(7, 8));
    EXPECT_EQ(part.positions[1], vec3(9, 10, 0));
    EXPECT_EQ(part.normals[1], vec3(0, 0, 0));
    EXPECT_EQ(Probe::SubMesh(mesh, 2).vertexCount, 0);
    EXPECT_EQ(Probe::SubMesh(mesh, 2).texture0, nullptr);
    mesh.Draw();
    mesh.DrawShadow();
}

TEST_F(XT3DStaticDamageTest, Survives_every_truncated_file) {
    const size_t magicEnds = std::string("XT3DSTATIC").size();
    size_t end = 1;
    for (size_t length = 0; length <= end; ++length) {
        SCOPED_TRACE(length);
        const std::string prefix = NewPrefix(); // each with a light map path of its own
        const std::string text = Header(prefix, 2, true) + noTextures +
                                 "2  1 2 3 4 5 6 7 8 9 10  1 2 3 4 5 6 7 8 9 10 " + noTextures +
                                 "1  1 2 3 4 5 6 7 8 9 10";
        end = text.size();
        const std::string name = WriteMesh(prefix, text.substr(0, length));
        const LogWatch log;
        XT3DStatic mesh;
        mesh.Load(name);
        const std::string status = length < magicEnds ? "ERROR" : "LOADED";
        EXPECT_EQ(log.NewRows().back(), (LogRow{"XT3DStatic", status, name}));
        mesh.Draw();
        mesh.DrawShadow();
    }
}

TEST_F(XT3DStaticDamageTest, Shares_everything_of_a_path_that_is_loaded_already) {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, true) + noTextures + Rectangle(1, 1, 2, 2, 3, "0 0"));
    XT3DStatic first;
    first.Load(name);
    first.SetMaterialShader(prefix + "none.vert", prefix + "none.frag");
    first.SetBlend(true);
    std::filesystem::remove(name); // would show if the file were read again
    const LogWatch log;
    {
        XT3DStatic second;
        second.Load(name);
        EXPECT_TRUE(Probe::Shared(second));
        EXPECT_EQ(Probe::Name(second), name);
        EXPECT_EQ(Probe::Count(second), 1);
        EXPECT_EQ(Probe::SubMeshes(second), Probe::SubMeshes(first));
        EXPECT_EQ(second.GetMaterialShader(), first.GetMaterialShader());
        EXPECT_TRUE(Probe::HasLightmap(second));
        EXPECT_EQ(Probe::Lightmap(second), Probe::Lightmap(first));
        EXPECT_EQ(Probe::Directory(second), "") << "not shared, on purpose";
        EXPECT_EQ(second.GetBBox()->GetMax(), vec3(0, 0, 0)) << "not shared, on purpose";
        EXPECT_FALSE(second.GetBlend()) << "each mesh has its own";
        second.Draw();
    }
    EXPECT_EQ(log.NewRows(), Rows()) << "the end of a sharer frees nothing";
    EXPECT_FALSE(Probe::Shared(first));
    first.Draw();
}

TEST_F(XT3DStaticDamageTest, Keeps_what_it_owns_when_it_is_told_to_load_the_same_path_again) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + noTextures + Rectangle(0, 0, 1, 1));
    const LogWatch log;
    {
        XT3DStatic mesh;
        mesh.Load(name);
        mesh.Load(name);
        EXPECT_FALSE(Probe::Shared(mesh));
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "LOADED", name}, {"XT3DStatic", "FREE", name}}));
}
