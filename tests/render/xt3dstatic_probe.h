#pragma once

#include "engine/render/xt3dstatic.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"

#include <memory>
#include <string>
#include <vector>

// What the tests of the static meshes share.

OPEN_PRIVATE(meshFileSubMeshCount, &Vell::XT3DStatic::subMeshCount);
OPEN_PRIVATE(meshFileSubMeshes, &Vell::XT3DStatic::subMeshes);
OPEN_PRIVATE(meshFileName, &Vell::XT3DStatic::name);
OPEN_PRIVATE(meshFileTextureDirectory, &Vell::XT3DStatic::textureDirectory);
OPEN_PRIVATE(meshFileLightmap, &Vell::XT3DStatic::lightmap);
OPEN_PRIVATE(meshFileHasLightmap, &Vell::XT3DStatic::hasLightmap);
OPEN_PRIVATE(meshFileShared, &Vell::XT3DStatic::shared);
OPEN_PRIVATE(meshFileMaterialShader, &Vell::XT3DStatic::materialShader);
OPEN_PRIVATE(meshFileClock, &Vell::XT3DStatic::clock);
OPEN_PRIVATE(meshFileBlend, &Vell::XT3DStatic::blend);

namespace Vell {

struct XT3DStaticProbe {
    static int Count(const XT3DStatic& mesh) { return mesh.*meshFileSubMeshCount; }
    static XT3DSubMesh* SubMeshes(const XT3DStatic& mesh) { return mesh.*meshFileSubMeshes; }
    static const XT3DSubMesh& SubMesh(const XT3DStatic& mesh, int i) {
        return (mesh.*meshFileSubMeshes)[i];
    }
    static const std::string& Name(const XT3DStatic& mesh) { return mesh.*meshFileName; }
    static const std::string& Directory(const XT3DStatic& mesh) {
        return mesh.*meshFileTextureDirectory;
    }
    static Image* Lightmap(const XT3DStatic& mesh) { return mesh.*meshFileLightmap; }
    static bool HasLightmap(const XT3DStatic& mesh) { return mesh.*meshFileHasLightmap; }
    static bool Shared(const XT3DStatic& mesh) { return mesh.*meshFileShared; }
    static std::vector<const void*> Fields(const XT3DStatic& m) {
        return {
            &(m.*meshFileName),      &(m.*meshFileSubMeshCount),   &(m.*meshFileTextureDirectory),
            &(m.*meshFileSubMeshes), &(m.*meshFileMaterialShader), &(m.*meshFileClock),
            &(m.*meshFileLightmap),  &(m.*meshFileShared),         &(m.*meshFileHasLightmap),
            &(m.*meshFileBlend)};
    }
};

} // namespace Vell

using Rows = std::vector<LogRow>;
using Probe = Vell::XT3DStaticProbe;

inline constexpr Rgba black{0, 0, 0, 255};
inline constexpr Rgba white{255, 255, 255, 255};
inline constexpr Rgba red{255, 0, 0, 255};
inline constexpr Rgba green{0, 255, 0, 255};
inline constexpr Rgba blue{0, 0, 255, 255};

/// A prefix that no other test uses: the registry remembers paths longer than meshes live. As a
/// texture directory without a slash it also shows that none is added.
inline std::string NewPrefix() {
    static int count = 0;
    return "mesh" + std::to_string(++count) + "_";
}

inline std::string WriteMesh(const std::string& prefix, const std::string& text) {
    const std::string name = prefix + "mesh.xt3dstatic";
    WriteFile(name, text);
    return name;
}

/// The start of a file: magic, count, directory, flag.
inline std::string Header(const std::string& prefix, int subMeshes, bool lightmap) {
    return "XT3DSTATIC " + std::to_string(subMeshes) + " " + prefix + (lightmap ? " 1\n" : " 0\n");
}

/// One vertex facing +z; with a light map a record ends with its coordinates.
inline std::string Vertex(float x, float y, float z, float u, float v,
                          const std::string& lightmapUv = "") {
    std::string text;
    for (const float value : {x, y, z, 0.0f, 0.0f, 1.0f, u, v})
        text += std::to_string(value) + " ";
    return text + lightmapUv + "\n";
}

/// Two triangles from (left, bottom) to (right, top) at height z, texture coordinates 0 to 1.
inline std::string Rectangle(float left, float bottom, float right, float top, float z = 0.0f,
                             const std::string& lightmapUv = "") {
    const std::string lowerLeft = Vertex(left, bottom, z, 0, 0, lightmapUv);
    const std::string lowerRight = Vertex(right, bottom, z, 1, 0, lightmapUv);
    const std::string upperLeft = Vertex(left, top, z, 0, 1, lightmapUv);
    const std::string upperRight = Vertex(right, top, z, 1, 1, lightmapUv);
    return "6\n" + lowerLeft + lowerRight + upperRight + lowerLeft + upperRight + upperLeft;
}

/// A texture of one colour with alpha under the prefix; returns its file name without the prefix.
inline std::string PlainTexture(const std::string& prefix, const std::string& file, Rgba colour) {
    std::vector<unsigned char> bytes;
    for (int i = 0; i < 4; ++i)
        for (const int channel : {colour.r, colour.g, colour.b, colour.a})
            bytes.push_back(static_cast<unsigned char>(channel));
    WritePng(prefix + file, 2, 2, 4, bytes);
    return file;
}

/// A light map under the prefix: `left` at the left in texture space (u from 0 to 0.5), `right` at
/// the right.
inline void WriteLightmap(const std::string& prefix, Rgba left, Rgba right) {
    constexpr int side = 32;
    std::vector<unsigned char> bytes;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const Rgba& colour = x < side / 2 ? right : left; // JPEG pictures load turned around
            for (const int channel : {colour.r, colour.g, colour.b})
                bytes.push_back(static_cast<unsigned char>(channel));
        }
    WriteJpeg(prefix + "lightmap.jpg", side, side, bytes);
}

/// JPEG rounds brightness and colour differences: up to two steps a channel at quality 100.
inline constexpr int jpegRounding = 2;
