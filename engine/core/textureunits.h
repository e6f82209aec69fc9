#pragma once

namespace Vell {

/// Which texture unit carries what, by role. The engine's and the demo's passes make the number
/// active and send the same one to the sampler uniform that reads it. Several roles share a unit
/// where their passes never meet. Every pass leaves unit 0 active. The two functions need a current
/// context.
namespace TextureUnit {

constexpr int surface = 0;    ///< a surface's own texture; also a full-screen pass's input image
constexpr int reflection = 1; ///< water: the mirrored scene
constexpr int refraction = 2; ///< water: the scene as the camera sees it

constexpr int noise = surface;     ///< water: the scrolling normal map
constexpr int heightmap = surface; ///< terrain: the height map, read by both shader stages
constexpr int ground = 1;          ///< terrain: the ground texture
constexpr int sceneDepth = 1;      ///< shadow composite: the scene target's depth texture

constexpr int texture0 = surface; ///< static meshes: the textures of a sub-mesh
constexpr int texture1 = 1;       ///< likewise
constexpr int texture2 = 2;       ///< likewise
constexpr int texture3 = 3;       ///< sent to materials, though no sub-mesh has a fourth texture
constexpr int lightmap = 6;       ///< static meshes: the baked light map
constexpr int shadowmap = 6;      ///< shadow pass and water: the light's depth texture

/// Makes `unit` active and switches 2D texturing on for it, ready for a texture to be bound.
void Enable(int unit);

/// Makes `unit` active and switches 2D texturing off for it; what is bound there stays bound.
void Disable(int unit);

} // namespace TextureUnit
} // namespace Vell
