#include "engine/render/xt3dstatic.h"

#include "engine/core/core.h"
#include "engine/core/textureunits.h"

namespace Vell {

namespace {

constexpr int textureSet = 0;  // texture coordinates of texture 0 to 2
constexpr int lightmapSet = 1; // texture coordinates of the light map
constexpr float alphaCut = 0.5f;

// The units that a mesh switches on, in the order in which they are switched off: unit 0 is the one
// left active.
constexpr int drawUnits[] = {TextureUnit::lightmap, TextureUnit::texture2, TextureUnit::texture1,
                             TextureUnit::texture0};
constexpr int shadowUnits[] = {TextureUnit::texture2, TextureUnit::texture1, TextureUnit::texture0};

void ActivateSet(int set) {
    glClientActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + set));
}

// A unit without a texture must not keep the one that the sub-mesh before has bound there. A
// texture that failed to load is no texture to OpenGL, so the surface is then drawn in the plain
// colour.
void BindTexture(int unit, const Image* image) {
    if (image != nullptr) {
        TextureUnit::Enable(unit);
        image->Bind();
    } else {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        glBindTexture(GL_TEXTURE_2D, 0);
        glDisable(GL_TEXTURE_2D);
    }
}

template <class Units>
void DisableTextures(const Units& units) {
    for (const int unit : units)
        TextureUnit::Disable(unit);
}

// Leaves of trees and the like are cut out by alpha instead of blended: no sorting is needed, and
// what is cut away writes no depth.
void BeginAlphaTest() {
    glAlphaFunc(GL_GREATER, alphaCut);
    glEnable(GL_ALPHA_TEST);
}

void EnableArrays() {
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
}

bool HasBuffers() {
    return CheckForExtension("GL_ARB_vertex_buffer_object") != 0;
}

// From here on pointers are addresses again, not offsets into a buffer; quads and outlines that are
// drawn from memory next would otherwise be read from the last buffer.
void UnbindBuffers() {
    if (HasBuffers())
        glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void PointAtTexcoords(int set, GLuint buffer) {
    ActivateSet(set);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
}

void PointAtBuffers(const XT3DSubMesh& subMesh, bool withLightmap) {
    // Each pointer call notes the buffer bound at that moment.
    glBindBuffer(GL_ARRAY_BUFFER, subMesh.positionBuffer);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, subMesh.normalBuffer);
    glNormalPointer(GL_FLOAT, 0, nullptr);
    PointAtTexcoords(textureSet, subMesh.texcoordBuffer);
    if (withLightmap)
        PointAtTexcoords(lightmapSet, subMesh.lightmapTexcoordBuffer);
}

// For drivers without buffer objects. The light map gets no coordinates here, on
// purpose: such a driver shows one texel of it everywhere.
void PointAtMemory(const XT3DSubMesh& subMesh) {
    glVertexPointer(3, GL_FLOAT, 0, subMesh.positions);
    glNormalPointer(GL_FLOAT, 0, subMesh.normals);
    glTexCoordPointer(2, GL_FLOAT, 0, subMesh.texcoords);
}

// Asks the driver again for every sub-mesh, which is intended: what it lists now decides, not what
// it listed when the mesh was loaded.
void DrawTriangles(const XT3DSubMesh& subMesh, bool withLightmap) {
    if (HasBuffers())
        PointAtBuffers(subMesh, withLightmap);
    else
        PointAtMemory(subMesh);
    glDrawArrays(GL_TRIANGLES, 0, subMesh.vertexCount);
}

} // namespace

Shader* XT3DStatic::SetMaterialShader(const std::string& vertPath, const std::string& fragPath) {
    if (materialShader != nullptr)
        return materialShader;
    materialShader = new Shader;
    materialShader->Load(vertPath, fragPath);
    materialShader->Enable();
    materialShader->Send("texture0", TextureUnit::texture0);
    materialShader->Send("texture1", TextureUnit::texture1);
    materialShader->Send("texture2", TextureUnit::texture2);
    materialShader->Send("texture3", TextureUnit::texture3); // for shaders that declare it
    materialShader->Send("lightmap", TextureUnit::lightmap);
    materialShader->Disable();
    return materialShader;
}

int XT3DStatic::GetVertexCount() const {
    int count = 0;
    for (int i = 0; i < subMeshCount; ++i)
        count += subMeshes[i].vertexCount;
    return count;
}

void XT3DStatic::Draw() {
    if (!show)
        return;
    BeginDraw();
    for (int i = 0; i < subMeshCount; ++i)
        DrawSubMesh(subMeshes[i]);
    EndDraw();
    if (debug)
        bbox.Draw(debugColour);
}

void XT3DStatic::BeginDraw() {
    if (materialShader != nullptr) {
        materialShader->Enable();
        materialShader->Send("time", clock.GetElapsedTime());
    }
    BeginAlphaTest();
    if (blend) {
        // Light adds up in any order, and must not hide what is drawn behind it later.
        glEnable(GL_BLEND);
        glBlendFunc(GL_ONE, GL_ONE);
        glDepthMask(GL_FALSE);
    }
    EnableArrays();
}

void XT3DStatic::DrawSubMesh(const XT3DSubMesh& subMesh) {
    BindTexture(0, subMesh.texture0);
    BindTexture(1, subMesh.texture1);
    BindTexture(2, subMesh.texture2);
    if (hasLightmap)
        BindTexture(TextureUnit::lightmap, lightmap);
    DrawTriangles(subMesh, hasLightmap);
}

void XT3DStatic::EndDraw() {
    UnbindBuffers();
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    for (const int set : {lightmapSet, textureSet}) {
        ActivateSet(set);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    glDisable(GL_ALPHA_TEST);
    DisableTextures(drawUnits);
    if (blend) {
        glDisable(GL_BLEND);
        glDepthMask(GL_TRUE);
    }
    if (materialShader != nullptr)
        materialShader->Disable();
}

// Only texture 0 matters to the depth: its alpha cuts the casters. A sub-mesh without one keeps
// what unit 0 holds, on purpose: its shadow is cut by whatever was bound last.
void XT3DStatic::DrawShadow() {
    if (!show)
        return;
    BeginAlphaTest();
    EnableArrays();
    for (int i = 0; i < subMeshCount; ++i) {
        if (subMeshes[i].texture0 != nullptr)
            BindTexture(TextureUnit::surface, subMeshes[i].texture0);
        DrawTriangles(subMeshes[i], false);
    }
    UnbindBuffers();
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisable(GL_ALPHA_TEST);
    DisableTextures(shadowUnits);
}

} // namespace Vell
