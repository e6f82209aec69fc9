#include "engine/render/xt3dstatic.h"

#include "tests/render/xt3dstatic_probe.h"
#include "tests/support/buffers.h"

#include <filesystem>

using namespace Vell;

namespace {

const char* const noTextures = "NULL NULL NULL ";

class XT3DStaticSharingTest : public GlTest {
protected:
    /// Releases what a mesh that owns nothing any more has left behind.
    static void Release(const XT3DSubMesh& part) {
        for (const GLuint buffer : {part.positionBuffer, part.normalBuffer, part.texcoordBuffer,
                                    part.lightmapTexcoordBuffer}) {
            EXPECT_TRUE(EntryPoint<PFNGLISBUFFERPROC>("glIsBuffer")(buffer));
            glDeleteBuffers(1, &buffer);
        }
        delete[] part.positions;
        delete[] part.normals;
        delete[] part.texcoords;
        delete[] part.lightmapTexcoords;
    }
};

} // namespace

TEST_F(XT3DStaticSharingTest, Shares_everything_of_a_path_that_is_loaded_already) {
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

TEST_F(XT3DStaticSharingTest, Owns_nothing_any_more_once_it_loads_its_own_path_again) {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, true) + noTextures + Rectangle(1, 1, 2, 2, 3, "0 0"));
    XT3DSubMesh* parts = nullptr;
    Shader* material = nullptr;
    Image* lightmap = nullptr;
    const LogWatch log;
    {
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_FALSE(Probe::Shared(mesh));
        parts = Probe::SubMeshes(mesh);
        material = mesh.SetMaterialShader(prefix + "none.vert", prefix + "none.frag");
        lightmap = Probe::Lightmap(mesh);
        const Rows before = log.NewRows();
        mesh.Load(name);
        EXPECT_TRUE(Probe::Shared(mesh));
        EXPECT_EQ(log.NewRows(), before);
        EXPECT_EQ(Probe::Name(mesh), name);
        EXPECT_EQ(Probe::Count(mesh), 1);
        EXPECT_EQ(Probe::SubMeshes(mesh), parts);
        EXPECT_EQ(Probe::Directory(mesh), prefix);
        EXPECT_EQ(Probe::Lightmap(mesh), lightmap);
        EXPECT_EQ(mesh.GetMaterialShader(), material);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(2, 2, 3));
        mesh.Draw();
    }
    EXPECT_EQ(log.NewRows().back().status, "ERROR") << "of the material, and nothing after it";
    EXPECT_TRUE(glIsTexture(lightmap->GetID()));
    EXPECT_EQ(parts[0].positions[1], vec3(2, 1, 3)) << "still there to be read";
    Release(parts[0]);
    delete[] parts;
    delete material;
    delete lightmap;
}

TEST_F(XT3DStaticSharingTest, Leaves_what_it_shared_alone_when_it_is_told_to_load_another_file) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + noTextures + Rectangle(0, 0, 1, 1));
    XT3DStatic first;
    first.Load(name);
    XT3DStatic second;
    second.Load(name);
    second.Load(prefix + "missing.xt3dstatic");
    EXPECT_EQ(Probe::Count(second), 0);
    EXPECT_EQ(Probe::SubMeshes(second), nullptr);
    second.Draw();
    EXPECT_EQ(Probe::SubMesh(first, 0).positions[1], vec3(1, 0, 0));
    first.Draw();
}
