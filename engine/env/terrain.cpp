#include "engine/env/terrain.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/errorguard.h"
#include "engine/core/labels.h"
#include "engine/core/logmanager.h"
#include "engine/core/textureunits.h"
#include "engine/env/fog.h"

#include <algorithm>
#include <string>
#include <vector>

namespace Vell {

namespace {

constexpr int cells = 32;         // along each side of the grid
constexpr int side = cells + 1;   // vertices along each side
constexpr int drawnIndices = 32;  // eight quads, see DrawTiles()
constexpr int tilePixels = cells; // of the height map's width, for one row of tiles

// Lifts the grid. In: the grid vertex in the tile's own units. Out: v_vertex, the place in height
// map and textures (256 units are one repeat); fogFactor, 1 without fog, 0 in full fog.
const char vertexSource[] = R"glsl(
#version 110

uniform sampler2D heightmap; // red: height, 0 to 1 is -10 to 245 units
uniform vec3 pos;            // never set, so zero: every tile shows the same part of the map
uniform vec3 scale;          // must not have a zero component

varying vec3 v_vertex;
varying float fogFactor;
)glsl" VELL_FOG_FACTOR R"glsl(
void main()
{
    v_vertex = (pos + gl_Vertex.xyz * scale) / 256.0 / scale;

    vec4 lifted = gl_Vertex;
    lifted.y = texture2D(heightmap, v_vertex.xz).r * 255.0 - 10.0;
    gl_Position = gl_ModelViewProjectionMatrix * lifted;

    // By the distance of the flat grid, not of the lifted ground.
    fogFactor = FogFactor(length((gl_ModelViewMatrix * gl_Vertex).xyz));

    // The water's reflection cuts the terrain at the surface.
    gl_ClipVertex = gl_ModelViewMatrix * lifted;
}
)glsl";

// Lights, textures and fogs the ground. The normal comes from the heights around the fragment.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D heightmap;
uniform sampler2D texture0; // the ground, 20 times over one repeat of the height map

varying vec3 v_vertex;
varying float fogFactor;

// The point of the height map at distance p from the given one; y is the height, 0 to 1.
vec3 GetVertex(vec2 p, vec3 vertex)
{
    vec3 moved = vertex + vec3(p.x, 0.0, p.y);
    moved.y = texture2D(heightmap, moved.xz).r;
    return moved;
}

void main()
{
    const float texel = 1.0 / 256.0;
    vec3 normal;
    normal.x = GetVertex(vec2(-texel, 0.0), v_vertex).y - GetVertex(vec2(texel, 0.0), v_vertex).y;
    normal.y = 2.0 * texel;
    normal.z = GetVertex(vec2(0.0, -texel), v_vertex).y - GetVertex(vec2(0.0, texel), v_vertex).y;
    normal = normalize(normal);

    // The direction to the light is longer than 1 on purpose: lit slopes may go beyond the picture's
    // own brightness. 0.2 is the light that reaches every slope.
    float light = max(dot(vec3(-1.0, 1.0, 0.0), normal), 0.2);
    vec4 color = light * texture2D(texture0, v_vertex.xz * 20.0);
    gl_FragColor = mix(gl_Fog.color, color, fogFactor);
}
)glsl";

// OpenGL has no colour-index array of this type and refuses it. The array is never enabled, so the
// call, made on purpose all the same, has no effect; without the guard it would leave an error.
void PointAtNoIndices() {
    const ErrorGuard guard;
    glIndexPointer(GL_UNSIGNED_INT, 0, nullptr);
}

} // namespace

Terrain::Terrain(int levels) : level(levels), scale(1.0f, 0.5f, 1.0f) {
    BuildShader();
    CreateBuffers();
    UploadVertices();
    UploadIndices();
}

Terrain::~Terrain() {
    Unlabel(ObjectKind::Buffer, vertexBuffer);
    for (int i = 0; i < BufferCount(); ++i)
        Unlabel(ObjectKind::Buffer, indexBuffers[static_cast<std::size_t>(i)]);
    glDeleteBuffers(1, &vertexBuffer);
    glDeleteBuffers(BufferCount(), indexBuffers.get());
    Log::GetInstance().Write("Terrain", "FREE", heightmapPath);
}

void Terrain::Load(const std::string& path) {
    heightmapPath = path;
    heightmap.Load(path);
    Log::GetInstance().Write("Terrain", "LOADED", path);
}

void Terrain::SetTexture(const std::string& path, int i) {
    textures[i].Load(path);
}

void Terrain::SetScale(const vec3& factors) {
    scale = factors;
    shader.Enable();
    shader.Send("scale", factors);
    shader.Disable();
}

void Terrain::Draw(const vec3&) {
    BindTextures();
    shader.Enable();
    BindGrid();
    DrawTiles();
    UnbindGrid();
    shader.Disable();
    UnbindTextures();
}

// The scale stays unsent here, on purpose: until SetScale() the ground has no place.
void Terrain::BuildShader() {
    shader.LoadToChar(vertexSource, fragmentSource);
    shader.SetLabel("terrain");
    shader.Enable();
    shader.Send("heightmap", TextureUnit::heightmap);
    shader.Send("texture0", TextureUnit::ground);
    shader.Disable();
}

int Terrain::BufferCount() const {
    return std::max(level, 1); // the first one is always drawn
}

void Terrain::CreateBuffers() {
    indexBuffers = std::make_unique<unsigned int[]>(static_cast<std::size_t>(BufferCount()));
    glGenBuffers(1, &vertexBuffer);
    glGenBuffers(BufferCount(), indexBuffers.get());
    Label(ObjectKind::Buffer, vertexBuffer, "terrain, vertices");
    for (int i = 0; i < BufferCount(); ++i)
        Label(ObjectKind::Buffer, indexBuffers[static_cast<std::size_t>(i)],
              "terrain, indices of level " + std::to_string(i));
}

void Terrain::UploadVertices() {
    std::vector<vec3> vertices;
    vertices.reserve(static_cast<std::size_t>(side) * side);
    for (int i = 0; i < side; ++i)
        for (int j = 0; j < side; ++j)
            vertices.emplace_back(static_cast<float>(i), 0.0f, static_cast<float>(j));

    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(vec3)),
                 vertices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void Terrain::UploadIndices() {
    std::vector<GLuint> indices;
    indices.reserve(static_cast<std::size_t>(cells) * cells * 4);
    for (GLuint r = 0; r < cells; ++r)
        for (GLuint k = 0; k < cells; ++k) {
            const GLuint corner = r * side + k;
            indices.insert(indices.end(), {corner, corner + side, corner + side + 1, corner + 1});
        }

    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffers[0]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(GLuint)),
                 indices.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

void Terrain::BindTextures() {
    TextureUnit::Enable(TextureUnit::heightmap);
    heightmap.Bind();
    TextureUnit::Enable(TextureUnit::ground);
    textures[0].Bind();
}

void Terrain::UnbindTextures() {
    TextureUnit::Disable(TextureUnit::ground);
    TextureUnit::Disable(TextureUnit::heightmap);
}

void Terrain::BindGrid() {
    glEnableClientState(GL_VERTEX_ARRAY);
    // Full-screen passes leave this array on, pointing at the four corners of their quad: the grid
    // has more vertices, and a driver may read the array for each.
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffers[0]);
    PointAtNoIndices();
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
}

void Terrain::UnbindGrid() {
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisableClientState(GL_VERTEX_ARRAY);
}

// Two things here are intended: the steps along x and z add up over all tiles, so the tiles lie on
// a rising diagonal; and a tile is a strip of 1 x 8 cells, so most of the grid is never seen.
void Terrain::DrawTiles() {
    const int n = heightmap.GetSize().x / tilePixels;
    glPushMatrix();
    for (int a = 0; a < n; ++a) {
        glTranslatef(static_cast<float>(cells), 0.0f, 0.0f);
        for (int b = 0; b < n; ++b) {
            glTranslatef(0.0f, 0.0f, static_cast<float>(cells));
            glDrawElements(GL_QUADS, drawnIndices, GL_UNSIGNED_INT, nullptr);
        }
    }
    glPopMatrix();
}

} // namespace Vell
