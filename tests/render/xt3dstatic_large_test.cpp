// Meshes of more vertices than any of the demo has.

#include "engine/render/xt3dstatic.h"

#include "tests/render/xt3dstatic_probe.h"
#include "tests/support/buffers.h"

#include <fstream>

using namespace Vell;

namespace {

constexpr int vertexCount = 4194306; // triangles, just beyond 2^22 vertices

class XT3DStaticLargeTest : public GlTest {
protected:
    /// A mesh of one sub-mesh that claims so many vertices. All that are there but the last are 0.
    static std::string WriteLarge(int there) {
        const std::string prefix = NewPrefix();
        std::string name = WriteMesh(prefix, Header(prefix, 1, false) + "NULL NULL NULL " +
                                                 std::to_string(vertexCount) + "\n");
        constexpr int chunk = 4096;
        std::string zeros;
        for (int i = 0; i < chunk; ++i)
            zeros += "0 0 0 0 0 0 0 0\n";
        std::ofstream file(name, std::ios::app);
        for (int left = there - 1; left > 0; left -= chunk)
            file << (left >= chunk ? zeros : zeros.substr(0, static_cast<std::size_t>(left) * 16));
        file << "1 2 3 4 5 6 7 8";
        return name;
    }

    static void ExpectLoaded(XT3DStatic& mesh, const std::string& name) {
        const LogWatch log;
        mesh.Load(name);
        EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "LOADED", name}}));
        ASSERT_EQ(Probe::Count(mesh), 1);
        const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
        ASSERT_EQ(part.vertexCount, vertexCount);
        EXPECT_EQ(BufferSize(GL_ARRAY_BUFFER, part.positionBuffer), vertexCount * 12);
        EXPECT_EQ(BufferSize(GL_ARRAY_BUFFER, part.normalBuffer), vertexCount * 12);
        EXPECT_EQ(BufferSize(GL_ARRAY_BUFFER, part.texcoordBuffer), vertexCount * 8);
        EXPECT_EQ(BufferSize(GL_ARRAY_BUFFER, part.lightmapTexcoordBuffer), vertexCount * 8);
        EXPECT_EQ(mesh.GetBBox()->GetMax(), vec3(1, 2, 3));
        mesh.Draw();
    }
};

} // namespace

TEST_F(XT3DStaticLargeTest, Loads_a_complete_mesh_of_four_million_vertices) {
    XT3DStatic mesh;
    ASSERT_NO_FATAL_FAILURE(ExpectLoaded(mesh, WriteLarge(vertexCount)));
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    EXPECT_EQ(part.positions[vertexCount - 1], vec3(1, 2, 3));
    EXPECT_EQ(part.normals[vertexCount - 1], vec3(4, 5, 6));
    EXPECT_EQ(part.texcoords[vertexCount - 1], vec2(7, 8));
    EXPECT_EQ(part.positions[vertexCount - 2], vec3(0, 0, 0));
}

TEST_F(XT3DStaticLargeTest, Loads_what_is_there_of_a_short_file_that_claims_as_many) {
    XT3DStatic mesh;
    ASSERT_NO_FATAL_FAILURE(ExpectLoaded(mesh, WriteLarge(2)));
    const XT3DSubMesh& part = Probe::SubMesh(mesh, 0);
    EXPECT_EQ(part.positions[1], vec3(1, 2, 3));
    for (const int i : {2, vertexCount - 1}) {
        EXPECT_EQ(part.positions[i], vec3(0, 0, 0));
        EXPECT_EQ(part.normals[i], vec3(0, 0, 0));
        EXPECT_EQ(part.texcoords[i], vec2(0, 0));
        EXPECT_EQ(part.lightmapTexcoords[i], vec2(0, 0));
    }
}
