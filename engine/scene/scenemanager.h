#pragma once

#include "engine/core/fbo.h"
#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

#include <string>
#include <vector>

namespace Vell {

class Camera;
class Mesh;
class PostProcess;
class SceneNode;
class ShadowMapping;
class SkyBox;
class Terrain;
class Water;
class XT3DStatic;

/// Owns everything that makes up one 3D scene and renders it with one fixed frame pipeline.
///
/// Everything added is deleted with the manager, in a fixed order; nothing can be removed before.
/// Pointers returned here stay valid until then, or until the camera, the water or the sky box they
/// point to is replaced.
///
/// Files: two scenes with files in common share what was loaded from them, so the one that loaded
///        them goes last. A scene that comes after another loads the same paths afresh.
///
/// Needs: a current context on which InitEngine() succeeded, with the screen size final: the scene
///        target and the chain of effects take it at construction.
class SceneManager {
public:
    /// An empty scene: a camera at the origin looking along +z, fog of density 0 and white.
    SceneManager();
    ~SceneManager();
    SceneManager(const SceneManager&) = delete;
    SceneManager& operator=(const SceneManager&) = delete;

    /// Replaces the camera and takes ownership of `replacement`. The current camera is deleted
    /// first, so it must not be handed in again.
    void AddCamera(Camera* replacement);

    /// Replaces the camera by a new one; positions in world units.
    Camera* AddCamera(const vec3& position, const vec3& target);
    Camera* GetCamera() const { return camera; }

    /// Appends a node with `mesh` at `position`. The mesh is not owned by the node; it must live
    /// as long as the manager. There may be any number of nodes.
    ///
    /// A mesh takes shadows where its vertices lie without the node: a floor that its node has
    /// moved into place gets none, or others'.
    SceneNode* AddSceneNode(Mesh* mesh, const vec3& position);

    /// Returns the static mesh of that file, loading it when no one has before; a mesh loaded here
    /// is owned by the manager. A file that fails to load is logged and gives an empty mesh, again
    /// at every later call.
    ///
    /// A path that an image or a shader was loaded from fails likewise, with a new empty mesh at
    /// every call. What others have put into the registry without its kind is returned unseen.
    Mesh* GetMesh(const std::string& path);
    /// The same mesh as what it is, for those who give it a material. Likewise unseen.
    XT3DStatic* GetStaticMesh(const std::string& path);

    /// Creates the shadow mapping at the first call and configures it at every call: position
    /// and target of the light in world units, side of its depth target in texels, darkness 0..1.
    ///
    /// The side must fit the light's distance d. A difference of depth up to 0.0001 d^2 units is no
    /// shadow, so a light close by needs a large side, or lit ground darkens itself. So large a
    /// part of it does when it is lit at 45 degrees:
    ///
    ///     d      side 512   1024   2048   4096
    ///     20     100 %      91 %   32 %   0
    ///     43      85 %      23 %    0     0
    ///     100      2 %       0      0     0
    ///
    /// There is none from d * side = 86,600 on. The light may not stand exactly above its target,
    /// see ShadowMapping::SetLight(). Terrains neither cast nor take shadows. Where there is no
    /// node, on the sky and on terrains, the picture is darkened by the clear colour's red times
    /// the darkness: keep that red at 0.
    ShadowMapping* AddShadowMapping(const vec3& lightPosition, const vec3& lightTarget, int size,
                                    float intensity);
    ShadowMapping* GetShadowMap() const { return shadow; }

    /// Replaces the water by a new one with its defaults, without a normal map.
    Water* AddWater();

    /// Replaces the sky box by a new one of six pictures, named after the axis they are seen along.
    /// The box before is deleted first; pictures that both have are loaded afresh.
    SkyBox* AddSkyBox(const std::string& xpos, const std::string& xneg, const std::string& ypos,
                      const std::string& yneg, const std::string& zpos, const std::string& zneg);
    /// The same of six pictures that lie side by side: `folder`, which ends with "/", then xpos,
    /// xneg, ypos, yneg, zpos, zneg, and `ending`, ".jpg" or ".png".
    SkyBox* AddSkyBox(const std::string& folder, const std::string& ending);

    /// Appends a terrain and loads its height map; `level` as in Terrain.
    Terrain* AddTerrain(const std::string& heightMap, int level);

    /// The fog is OpenGL's own fog state, read by the water's and the terrain's shaders; drawing
    /// with the fixed pipeline stays without fog. Density per unit, colour in 0..1.
    /// OpenGL refuses a negative density with an error and keeps the one before, while
    /// GetFogDensity() answers what was asked for.
    void SetFogColor(const vec4& colour);
    vec4 GetFogColor() const { return fogColor; }
    void SetFogDensity(float density);
    float GetFogDensity() const { return fogDensity; }

    /// Lets the water and the meshes of all present nodes draw their bounding boxes, or stop it.
    /// Nodes without a mesh are passed over.
    void SetDebug(bool on);

    /// The target that Compute() renders into.
    FBO* GetFBO() { return &fbo; }
    PostProcess* GetPostProcess() const { return postProcess; }

    /// Renders one frame into the scene target. Every node must have a mesh by now. The screen is
    /// bound afterwards, model-view is current and holds the identity, and the frustum is the
    /// camera's.
    void Compute();

    /// Compute(), then the chain of effects, which puts the picture on the screen.
    void Draw();

private:
    void RenderLightDepth();
    void RenderShadowBuffer();
    void RenderReflection();
    void RenderRefraction();
    void RenderScene();

    void ClearSceneTarget();
    void LookThroughCamera();
    void DrawSky(bool reflection);
    void DrawTerrains();
    void DrawNodes();
    void DrawNodeShadows();

    SkyBox* sky = nullptr;
    Camera* camera = nullptr;
    Water* water = nullptr;
    PostProcess* postProcess = nullptr;
    std::vector<SceneNode*> nodes;
    std::vector<Mesh*> meshes; // those that GetMesh() loaded
    std::vector<Terrain*> terrains;
    FBO fbo;
    ShadowMapping* shadow = nullptr;
    float fogDensity = 0.0f;
    vec4 fogColor;
};

} // namespace Vell
