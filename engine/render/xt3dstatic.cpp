#include "engine/render/xt3dstatic.h"

#include "engine/core/core.h"
#include "engine/core/labels.h"
#include "engine/core/logmanager.h"
#include "engine/core/ressourcemanager.h"
#include "engine/render/tokenreader.h"
#include "engine/render/trust.h"

#include <array>
#include <new>

namespace Vell {

namespace {

const char* const magicWord = "XT3DSTATIC";
const char* const noTexture = "NULL";
const char* const lightmapFile = "lightmap.jpg"; // in the texture directory

// What one element of a count takes here, and the least that a file spends on it.
struct Element {
    std::size_t memory; // bytes
    std::size_t text;   // bytes
};
// A number and what parts it from the one before: a blank, a sign or a point.
constexpr std::size_t numberText = 2;
constexpr std::size_t plainNumbers = 8; // of a vertex: position, normal, texture coordinates
constexpr std::size_t litNumbers = 10;  // and light map coordinates
constexpr Element plainVertex = {2 * sizeof(vec3) + 2 * sizeof(vec2), plainNumbers* numberText};
constexpr Element litVertex = {plainVertex.memory, litNumbers* numberText};
// A record, three images and OpenGL's four buffers, without what the images' names take. "a b c 0"
// is the shortest there is, and the next may follow its count without a blank.
constexpr Element block = {2048, 7};

// A count as it stands in the file; a negative one, and one that is no number, is 0.
int ReadCount(TokenReader& in) {
    int count = 0;
    in >> count;
    return count > 0 ? count : 0;
}

// False when so many are more than is taken on trust and more than the rest of the file can hold.
bool IsCredible(std::size_t count, const Element& element, TokenReader& in) {
    return count <= takenOnTrust / element.memory || count <= in.BytesLeft() / element.text;
}

// On its own so that a leak report names what is left behind on purpose, see ReleaseSubMeshes():
// the coordinates of a mesh without a light map stay until the process ends.
vec2* NewLightmapTexcoords(int count) {
    return new (std::nothrow) vec2[static_cast<std::size_t>(count)];
}

bool Allocate(XT3DSubMesh& subMesh, int vertexCount) {
    subMesh.positions = new (std::nothrow) vec3[static_cast<std::size_t>(vertexCount)];
    subMesh.normals = new (std::nothrow) vec3[static_cast<std::size_t>(vertexCount)];
    subMesh.texcoords = new (std::nothrow) vec2[static_cast<std::size_t>(vertexCount)];
    subMesh.lightmapTexcoords = NewLightmapTexcoords(vertexCount);
    const bool complete = subMesh.positions != nullptr && subMesh.normals != nullptr &&
                          subMesh.texcoords != nullptr && subMesh.lightmapTexcoords != nullptr;
    subMesh.vertexCount = complete ? vertexCount : 0;
    return complete;
}

// Vectors are packed floats, so an array of them is what OpenGL expects.
template <class Vector>
void FillBuffer(GLuint buffer, const Vector* vectors, int count) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(static_cast<std::size_t>(count) * sizeof(Vector)), vectors,
                 GL_STATIC_DRAW);
}

void CreateBuffers(XT3DSubMesh& subMesh) {
    glGenBuffers(1, &subMesh.positionBuffer);
    glGenBuffers(1, &subMesh.texcoordBuffer);
    glGenBuffers(1, &subMesh.lightmapTexcoordBuffer);
    glGenBuffers(1, &subMesh.normalBuffer);
    FillBuffer(subMesh.positionBuffer, subMesh.positions, subMesh.vertexCount);
    FillBuffer(subMesh.normalBuffer, subMesh.normals, subMesh.vertexCount);
    FillBuffer(subMesh.texcoordBuffer, subMesh.texcoords, subMesh.vertexCount);
    FillBuffer(subMesh.lightmapTexcoordBuffer, subMesh.lightmapTexcoords, subMesh.vertexCount);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void LabelBuffers(const XT3DSubMesh& subMesh, const std::string& owner) {
    Label(ObjectKind::Buffer, subMesh.positionBuffer, owner + ", positions");
    Label(ObjectKind::Buffer, subMesh.texcoordBuffer, owner + ", texture coordinates");
    Label(ObjectKind::Buffer, subMesh.lightmapTexcoordBuffer, owner + ", light map coordinates");
    Label(ObjectKind::Buffer, subMesh.normalBuffer, owner + ", normals");
}

// Without vertex buffer objects there is neither a buffer nor an entry point to delete it.
void DeleteBuffer(GLuint buffer) {
    if (buffer == 0)
        return;
    Unlabel(ObjectKind::Buffer, buffer);
    glDeleteBuffers(1, &buffer);
}

void Release(XT3DSubMesh& subMesh, bool hasLightmap) {
    DeleteBuffer(subMesh.positionBuffer);
    DeleteBuffer(subMesh.texcoordBuffer);
    DeleteBuffer(subMesh.normalBuffer);
    delete[] subMesh.positions;
    delete[] subMesh.normals;
    delete[] subMesh.texcoords;
    // The light map coordinates of a mesh without a light map stay behind, on purpose: they belong
    // to the light map and go with it only; without one they stay until the process ends.
    if (hasLightmap) {
        DeleteBuffer(subMesh.lightmapTexcoordBuffer);
        delete[] subMesh.lightmapTexcoords;
    }
}

const vec3* FirstPosition(const XT3DSubMesh* subMeshes, int count) {
    for (int i = 0; i < count; ++i)
        if (subMeshes[i].vertexCount > 0)
            return subMeshes[i].positions;
    return nullptr;
}

// Widens the box from `low` to `high` so that it holds the position.
void Include(const vec3& position, vec3& low, vec3& high) {
    for (int axis = 0; axis < 3; ++axis)
        if (position[axis] > high[axis])
            high[axis] = position[axis];
        else if (position[axis] < low[axis])
            low[axis] = position[axis];
}

} // namespace

XT3DStatic::XT3DStatic()
    : subMeshCount(0),
      subMeshes(nullptr),
      materialShader(nullptr),
      lightmap(nullptr),
      shared(false),
      hasLightmap(false),
      blend(false) {}

XT3DStatic::~XT3DStatic() {
    RessourceManager::MarkDeleted(this);
    if (shared)
        return;
    ReleaseSubMeshes();
    delete materialShader;
    delete lightmap;
    Log::GetInstance().Write("XT3DStatic", "FREE", name);
}

// The sub-meshes' textures stay, on purpose, until the process ends: the registry still points at
// them, and other meshes may share them.
void XT3DStatic::ReleaseSubMeshes() {
    for (int i = 0; i < subMeshCount; ++i)
        Release(subMeshes[i], hasLightmap);
    delete[] subMeshes;
    subMeshes = nullptr;
    subMeshCount = 0;
}

void XT3DStatic::Load(const std::string& path) {
    RessourceManager& registry = RessourceManager::GetInstance();
    if (registry.IsTakenBy(RessourceKind::Mesh, path)) {
        Share(*static_cast<XT3DStatic*>(registry.Get(path)));
        return;
    }
    name = path;
    if (registry.IsTaken(path)) { // by a picture or a shader, whose file is no mesh
        Log::GetInstance().Write("XT3DStatic", "ERROR", name);
        return;
    }
    // Before the file is opened: a failed path stays taken, so that a missing file is tried once.
    registry.Register(this, path, RessourceKind::Mesh);
    // Sub-meshes of an earlier file are forgotten, not released: other meshes may share them.
    subMeshes = nullptr;
    subMeshCount = 0;
    TokenReader file(path);
    // What failed keeps its light map: the registry points at it.
    const bool complete = file.IsOpen() && Read(file);
    if (!complete)
        ReleaseSubMeshes();
    Log::GetInstance().Write("XT3DStatic", complete ? "LOADED" : "ERROR", name);
}

// The texture directory, the bounding box and the blend flag stay this mesh's own, on purpose: with
// its box all zero it is culled as a point. The
// mesh that loads its own path again shares with itself, and nobody owns what it shares.
void XT3DStatic::Share(const XT3DStatic& other) {
    name = other.name;
    subMeshCount = other.subMeshCount;
    subMeshes = other.subMeshes;
    materialShader = other.materialShader;
    hasLightmap = other.hasLightmap;
    lightmap = other.lightmap;
    shared = true;
}

// False for a file that is no mesh or promises more than there can be. A file that ends early, or
// has a word where a number belongs, is not noticed, on purpose: the reader then gives nothing
// more, and everything not read keeps its zeros.
bool XT3DStatic::Read(TokenReader& in) {
    if (!ReadHeader(in))
        return false;
    if (hasLightmap)
        LoadLightmap();
    for (int i = 0; i < subMeshCount; ++i)
        if (!ReadSubMesh(in, subMeshes[i]))
            return false;
    ComputeBBox();
    return true;
}

bool XT3DStatic::ReadHeader(TokenReader& in) {
    std::string magic;
    in >> magic;
    if (magic != magicWord)
        return false;
    const int count = ReadCount(in);
    in >> textureDirectory >> hasLightmap;
    // What is not there is loaded from the directory itself, whose name each image keeps.
    const Element named = {block.memory + 3 * textureDirectory.size(), block.text};
    if (!IsCredible(static_cast<std::size_t>(count), named, in))
        return false;
    subMeshes = new (std::nothrow) XT3DSubMesh[static_cast<std::size_t>(count)];
    if (subMeshes == nullptr)
        return false;
    subMeshCount = count;
    return true;
}

void XT3DStatic::LoadLightmap() {
    lightmap = new Image;
    lightmap->Load(textureDirectory + lightmapFile);
}

bool XT3DStatic::ReadSubMesh(TokenReader& in, XT3DSubMesh& subMesh) {
    subMesh.texture0 = ReadTexture(in);
    subMesh.texture1 = ReadTexture(in);
    subMesh.texture2 = ReadTexture(in);
    const int count = ReadCount(in);
    if (!IsCredible(static_cast<std::size_t>(count), hasLightmap ? litVertex : plainVertex, in))
        return false;
    if (!Allocate(subMesh, count))
        return false;
    ReadVertices(in, subMesh);
    if (CheckForExtension("GL_ARB_vertex_buffer_object") == 0)
        return true;
    CreateBuffers(subMesh);
    LabelBuffers(subMesh, name + ", sub-mesh " + std::to_string(&subMesh - subMeshes));
    return true;
}

// A name that is not there, because the file ends or reading has failed, is an empty one: no
// "NULL", so an image of the directory itself, which is none.
Image* XT3DStatic::ReadTexture(TokenReader& in) {
    std::string file;
    in >> file;
    if (file == noTexture)
        return nullptr;
    Image* image = new Image;
    image->Load(textureDirectory + file);
    return image;
}

void XT3DStatic::ReadVertices(TokenReader& in, XT3DSubMesh& subMesh) {
    for (int i = 0; i < subMesh.vertexCount && in; ++i) {
        std::array<float, litNumbers> record{};
        in >> std::span(record).first(hasLightmap ? litNumbers : plainNumbers);
        subMesh.positions[i] = vec3(record[0], record[1], record[2]);
        subMesh.normals[i] = vec3(record[3], record[4], record[5]);
        subMesh.texcoords[i] = vec2(record[6], record[7]);
        if (hasLightmap)
            subMesh.lightmapTexcoords[i] = vec2(record[8], record[9]);
    }
}

// A mesh without any vertex keeps the box at zero; empty sub-meshes in front are stepped over.
void XT3DStatic::ComputeBBox() {
    const vec3* first = FirstPosition(subMeshes, subMeshCount);
    if (first == nullptr)
        return;
    vec3 low = *first;
    vec3 high = low;
    for (int i = 0; i < subMeshCount; ++i)
        for (int v = 0; v < subMeshes[i].vertexCount; ++v)
            Include(subMeshes[i].positions[v], low, high);
    bbox.Set(low, high);
}

} // namespace Vell
