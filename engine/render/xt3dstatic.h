#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/core/clock.h"
#include "engine/math/vec2.h"
#include "engine/math/vec3.h"
#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/scene/mesh.h"

#include <string>

namespace Vell {

class TokenReader;

/// One part of a static mesh: a plain list of triangles, three vertices each, with its textures.
/// Plain data; the mesh that loaded it creates and releases everything in it.
struct XT3DSubMesh {
    int vertexCount = 0; ///< three make a triangle

    /// Null where the file says "NULL".
    Image* texture0 = nullptr;
    Image* texture1 = nullptr;
    Image* texture2 = nullptr;

    /// Buffer names; 0 when the driver offers no vertex buffer objects.
    GLuint positionBuffer = 0;
    GLuint texcoordBuffer = 0;
    GLuint lightmapTexcoordBuffer = 0;
    GLuint normalBuffer = 0;

    /// vertexCount elements each, kept beside the buffers.
    vec3* positions = nullptr;
    vec3* normals = nullptr;
    vec2* texcoords = nullptr;
    vec2* lightmapTexcoords = nullptr; ///< all zero without a light map
};

/// A mesh that does not move in itself, read from an ".xt3dstatic" text file.
///
/// Units:  texture 0 to 2 on texture units 0 to 2, the light map on unit 6; texture coordinate set
///         0 carries the textures' coordinates, set 1 the light map's.
/// Shared: a path is not read again as long as the mesh that loaded it lives. The later mesh points
///         at the sub-meshes, material and light map of the first, owns nothing, and must not
///         outlive it; it has its own blend flag, and its bounding box stays all zero. Once the
///         first is gone the file is read afresh.
/// Needs:  a current context on which InitEngine() succeeded.
class XT3DStatic : public Mesh {
public:
    XT3DStatic();

    /// Releases buffers, arrays, material and light map and logs "FREE"; a shared mesh does
    /// neither. The sub-meshes' textures stay, for others find them in the registry, and so do,
    /// without a light map, the unused light map coordinates. A light map is shared like any image:
    /// other meshes of that directory must not outlive the mesh that loaded it.
    ~XT3DStatic() override;

    XT3DStatic(const XT3DStatic&) = delete;
    XT3DStatic& operator=(const XT3DStatic&) = delete;

    /// Reads the file, its textures and light map, and fills the buffers; to be called once a mesh.
    /// A second file would forget the first without releasing it: others may share it. The same
    /// path once more makes the mesh share with itself: it then owns nothing, like every sharer, so
    /// nothing of it is ever released and its end is not logged.
    ///
    /// Registers the path even when loading fails. Logs "LOADED", or "ERROR" and stays empty when
    /// the file is missing or no regular file (a pipe is never waited for), is none of this format,
    /// or has a count that is refused (below), or when an image or a shader was loaded from the
    /// path. Anything else wrong further on is forgiven, an early end included: what cannot be read
    /// stays zero, negative counts are taken as 0, and a texture whose name cannot be read is an
    /// image of the texture directory itself. That one has no texture; the first of its path logs
    /// "ERROR".
    /// Names within the file end at a blank, so no texture and no directory may have one; a path
    /// that is longer than the system takes counts as a missing file.
    ///
    /// A count is refused when there is no memory for it, and when it would take more than
    /// `takenOnTrust` bytes and the rest of the file could not hold it. A vertex takes 40 bytes and
    /// at least 2 bytes of the file for each of its 8 or 10 numbers; a sub-mesh without its
    /// vertices takes 2 KiB and three times the directory's name, and at least 7 bytes of the file.
    /// Reading itself takes 64 KiB of the stack and none of the heap, but for names
    /// and unusual numbers.
    void Load(const std::string& path) override;

    /// Draws every sub-mesh, with the material when there is one, cut by texture alpha at 0.5.
    /// Nothing while hidden. Leaves texturing off on units 0, 1, 2 and 6, unit 0 active, blending
    /// and alpha test off, the depth buffer writable and the fixed-function pipeline current.
    void Draw() override;

    /// Draws the depth of every sub-mesh, cut by the alpha of texture 0; no material, no blending.
    void DrawShadow() override;

    /// Builds the material from a vertex and a fragment shader file and gives its samplers
    /// (texture0 to texture3, lightmap) their units. Only the first call of a mesh counts.
    /// Returns the material, which the mesh owns; one that is set on a mesh that shares another's
    /// path is never released, so set it on the first.
    ///
    /// The vertex shader must write gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex: the water's
    /// mirror image is cut by a clip plane, and a mesh whose shader does not say where it is may be
    /// missing from it.
    Shader* SetMaterialShader(const std::string& vertPath, const std::string& fragPath);
    /// Null when none was set.
    Shader* GetMaterialShader() { return materialShader; }

    /// What was loaded; no sub-meshes and no light map before Load() and after one that failed. A
    /// mesh that shares another's path knows no texture directory and no box (GetBBox()).
    const std::string& GetName() const { return name; } // the path
    const std::string& GetTextureDirectory() const { return textureDirectory; }
    int GetSubMeshCount() const { return subMeshCount; }
    /// To read: vertices, textures and buffers of sub-mesh `i`, 0 to GetSubMeshCount() - 1 (the
    /// caller keeps to that range). Valid until the mesh that loaded the file goes.
    const XT3DSubMesh& GetSubMesh(int i) const { return subMeshes[i]; }
    /// Sum over all sub-meshes; three make a triangle.
    int GetVertexCount() const;
    /// Null without a light map.
    const Image* GetLightmap() const { return lightmap; }

    /// Additive blending, which also leaves the depth buffer unwritten; off at first.
    void SetBlend(bool on) { blend = on; }
    bool GetBlend() const { return blend; }

private:
    void Share(const XT3DStatic& other);
    bool Read(TokenReader& in);
    bool ReadHeader(TokenReader& in);
    bool ReadSubMesh(TokenReader& in, XT3DSubMesh& subMesh);
    Image* ReadTexture(TokenReader& in);
    void ReadVertices(TokenReader& in, XT3DSubMesh& subMesh);
    void LoadLightmap();
    void ComputeBBox();
    void ReleaseSubMeshes();

    void BeginDraw();
    void DrawSubMesh(const XT3DSubMesh& subMesh);
    void EndDraw();

    std::string name;
    int subMeshCount;
    std::string textureDirectory; // glued in front of every texture's file name
    XT3DSubMesh* subMeshes;       // new[]; subMeshCount elements
    Shader* materialShader;       // owned
    Clock clock;                  // runs the material's "time" since construction
    Image* lightmap;              // owned
    bool shared;                  // copied from the registry: owns nothing
    bool hasLightmap;
    bool blend;
};

} // namespace Vell
