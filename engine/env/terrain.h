#pragma once

#include "engine/math/vec3.h"
#include "engine/render/image.h"
#include "engine/render/shader.h"

#include <memory>
#include <string>

namespace Vell {

/// Ground lifted from a height map entirely on the graphics card.
///
/// A flat 33 x 33 grid lies in a vertex buffer; the vertex shader gives each vertex the height
/// found in the height map, the fragment shader lights the ground from height differences,
/// textures it and fogs it with the fixed-function fog colour and density.
///
/// Space:   world; +y is up; the grid has one unit between vertices and starts at the origin.
///          Heights run from -10 (black in the height map) to 245 (white, red channel).
/// Texture: unit 0 height map, 1 ground texture; texturing is off on both after Draw().
/// Needs:   a current context on which InitEngine() succeeded.
///
/// Call Load(), SetTexture(path, 0) and SetScale() before the first Draw(): until SetScale() the
/// shader divides by a scale of zero and the ground's place is undefined.
class Terrain {
public:
    /// `level`: how many index buffers to create, at least 1 (a smaller number counts as 1). Only
    /// the first one is filled and drawn.
    explicit Terrain(int level);

    /// Frees the buffers and writes a "FREE" row with the height map's path to the log.
    ~Terrain();
    Terrain(const Terrain&) = delete;
    Terrain& operator=(const Terrain&) = delete;

    /// Loads the height map from a ".jpg" or ".png" file; once a terrain, see Image::Load(). The
    /// log gets a "LOADED" row for the terrain in any case, also when Image::Load() fails, which
    /// logs some failures and not others. Both shader stages read it with the filter and wrap mode
    /// that Image gives every picture: linear between pixels, repeating beyond the edges, the
    /// vertex stage always at full size.
    void Load(const std::string& path);

    /// Loads texture `i`, 0 to 3 (the caller keeps to that range), each once. Only texture 0 is
    /// drawn.
    void SetTexture(const std::string& path, int i);

    /// Sets the scale that the shader first multiplies and then divides by: any scale without a
    /// zero component gives the same picture.
    void SetScale(const vec3& factors);

    /// What the setters stored; (1, 0.5, 1) before the first SetScale(). The pictures are owned by
    /// the terrain, and `i` is 0 to 3.
    vec3 GetScale() const { return scale; }
    Image& GetTexture(int i) { return textures[i]; }
    Image& GetHeightmap() { return heightmap; }

    /// The number given to the constructor.
    int GetLevel() const { return level; }

    /// Draws n x n strips of one unit of x by eight of z, all with the same corner of the height
    /// map: strip b of column a, both from 0, begins at x = 32 (a + 1), z = 32 (a n + b + 1), so
    /// that they lie along a diagonal from (32, 32) on.
    ///
    /// They come on top of the view that is already loaded, n being the height map's width
    /// / 32 rounded down; a narrower height map draws nothing. The camera position is not used. The
    /// vertex and texture-coordinate arrays are off afterwards. OpenGL errors that were pending
    /// before are pending still, and none is added.
    void Draw(const vec3& cameraPosition);

private:
    static constexpr int textureCount = 4;

    void BuildShader();
    void CreateBuffers();
    void UploadVertices();
    void UploadIndices();
    int BufferCount() const;
    void BindTextures();
    void UnbindTextures();
    void BindGrid();
    void UnbindGrid();
    void DrawTiles();

    unsigned int vertexBuffer = 0;
    std::unique_ptr<unsigned int[]> indexBuffers; // BufferCount() names
    Shader shader;
    std::string heightmapPath;
    int level;
    Image textures[textureCount];
    Image heightmap;
    vec3 scale;
};

} // namespace Vell
