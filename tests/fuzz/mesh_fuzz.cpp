// Meshes: whatever the file is, what the mesh then offers can be read to its end.

#include "engine/render/xt3dstatic.h"
#include "tests/fuzz/memoryfile.h"

namespace {

/// Of all that stands there, so that nothing is left unread.
float Sum(const Vell::XT3DSubMesh& part) {
    float sum = 0.0f;
    for (int i = 0; i < part.vertexCount; ++i)
        sum += part.positions[i].x + part.normals[i].z + part.texcoords[i].y +
               part.lightmapTexcoords[i].y;
    return sum;
}

} // namespace

/// A mesh that fails leaves the textures that it has loaded so far to others, on purpose.
extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file(bytes, size);
    Vell::XT3DStatic mesh;
    mesh.Load(file.Path());
    volatile float read = mesh.GetBBox()->GetMax().x;
    for (int i = 0; i < mesh.GetSubMeshCount(); ++i) {
        const Vell::XT3DSubMesh& part = mesh.GetSubMesh(i);
        read = read + Sum(part);
        // Left to other meshes on purpose; here there are none.
        for (const Vell::Image* texture : {part.texture0, part.texture1, part.texture2})
            delete texture;
        if (mesh.GetLightmap() == nullptr)
            delete[] part.lightmapTexcoords;
    }
    return 0;
}
