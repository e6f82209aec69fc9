#pragma once

#include "art/common/math.h"

#include <array>
#include <string>
#include <vector>

namespace Art {

/// One corner of a triangle as the engine's static mesh format stores it.
struct MeshVertex {
    vec3 position; ///< object coordinates, +y up
    vec3 normal;   ///< unit length
    vec2 texcoord; ///< for texture0..2; repeats outside 0..1
    vec2 lightmap; ///< light-map coordinates, 0..1; ignored without a light map
};

/// Triangles that share their textures. Every three vertices form one triangle.
struct SubMesh {
    /// File names under the texture directory; an empty name is written as NULL.
    std::array<std::string, 3> textures;
    std::vector<MeshVertex> vertices;
};

/// A whole static mesh, before it is written or after it was read.
struct MeshFile {
    /// Prefix glued in front of every texture name, as seen from the program's working
    /// directory; normally ends with a slash.
    std::string textureDirectory;
    bool hasLightmap = false;
    std::vector<SubMesh> subMeshes;
};

/// Says why the format cannot hold `mesh`, as place, expected and found; empty when it can.
/// Refused: no sub-mesh, an empty sub-mesh, a count that is no multiple of three, names with
/// blanks or spelled NULL, numbers that are not finite, normals that are not of unit length,
/// light-map coordinates outside 0..1.
std::string WhyNotWritable(const MeshFile& mesh);

/// Writes `mesh` as text to `path` (beside it first, then renamed). Numbers carry the fewest
/// digits that keep positions within 0.00005 and coordinates within 0.000005.
/// Returns false, having printed the reason, when the mesh is refused or the file fails.
bool WriteMesh(const std::string& path, const MeshFile& mesh);

/// Reads a mesh file strictly. On failure returns false and sets `error` to
/// "path: vertex 57 of sub-mesh 3: expected 10 numbers, found "abc"" or the like.
bool ReadMesh(const std::string& path, MeshFile& mesh, std::string& error);

/// Vertices in all sub-meshes.
std::size_t VertexCount(const MeshFile& mesh);

} // namespace Art
