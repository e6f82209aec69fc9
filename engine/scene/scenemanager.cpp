#include "engine/scene/scenemanager.h"

#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/ressourcemanager.h"
#include "engine/env/shadowmapping.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/math/frustum.h"
#include "engine/post/postprocess.h"
#include "engine/render/xt3dstatic.h"

namespace Vell {

namespace {

template <typename T>
void DeleteAll(const std::vector<T*>& objects) {
    for (T* object : objects)
        delete object;
}

} // namespace

SceneManager::SceneManager() {
    AddCamera(vec3(0.0f, 0.0f, 0.0f), vec3(0.0f, 0.0f, 1.0f));
    fbo.SetLabel("scene target");
    fbo.SetSize(GetScreen());
    postProcess = new PostProcess(&fbo);
    SetFogDensity(0.0f);
    SetFogColor(vec4(1.0f, 1.0f, 1.0f, 1.0f));
}

SceneManager::~SceneManager() {
    DeleteAll(nodes);
    DeleteAll(terrains);
    DeleteAll(meshes);
    delete shadow;
    delete sky;
    delete camera;
    delete water;
    delete postProcess;
}

void SceneManager::AddCamera(Camera* replacement) {
    delete camera;
    camera = replacement;
}

Camera* SceneManager::AddCamera(const vec3& position, const vec3& target) {
    delete camera;
    camera = new Camera;
    camera->Set(position, target);
    return camera;
}

SceneNode* SceneManager::AddSceneNode(Mesh* mesh, const vec3& position) {
    nodes.push_back(new SceneNode);
    nodes.back()->SetMesh(mesh);
    nodes.back()->SetPosition(position);
    return nodes.back();
}

Mesh* SceneManager::GetMesh(const std::string& path) {
    RessourceManager& registry = RessourceManager::GetInstance();
    if (registry.IsTakenBy(RessourceKind::Mesh, path))
        return static_cast<XT3DStatic*>(registry.Get(path));
    XT3DStatic* mesh = new XT3DStatic;
    mesh->Load(path);
    meshes.push_back(mesh);
    return mesh;
}

XT3DStatic* SceneManager::GetStaticMesh(const std::string& path) {
    return static_cast<XT3DStatic*>(GetMesh(path));
}

ShadowMapping* SceneManager::AddShadowMapping(const vec3& lightPosition, const vec3& lightTarget,
                                              int size, float intensity) {
    if (shadow == nullptr)
        shadow = new ShadowMapping;
    shadow->SetSize(size);
    shadow->SetIntensity(intensity);
    shadow->SetLight(lightPosition, lightTarget);
    return shadow;
}

Water* SceneManager::AddWater() {
    delete water;
    water = new Water;
    return water;
}

SkyBox* SceneManager::AddSkyBox(const std::string& xpos, const std::string& xneg,
                                const std::string& ypos, const std::string& yneg,
                                const std::string& zpos, const std::string& zneg) {
    delete sky;
    sky = new SkyBox(xpos, xneg, ypos, yneg, zpos, zneg);
    return sky;
}

SkyBox* SceneManager::AddSkyBox(const std::string& folder, const std::string& ending) {
    const auto face = [&](const char* name) { return folder + name + ending; };
    return AddSkyBox(face("xpos"), face("xneg"), face("ypos"), face("yneg"), face("zpos"),
                     face("zneg"));
}

Terrain* SceneManager::AddTerrain(const std::string& heightMap, int level) {
    terrains.push_back(new Terrain(level));
    terrains.back()->Load(heightMap);
    return terrains.back();
}

void SceneManager::SetFogColor(const vec4& colour) {
    fogColor = colour;
    const GLfloat components[] = {colour.x, colour.y, colour.z, colour.w};
    glFogfv(GL_FOG_COLOR, components);
}

void SceneManager::SetFogDensity(float density) {
    fogDensity = density;
    glFogf(GL_FOG_DENSITY, density);
}

void SceneManager::SetDebug(bool on) {
    if (water != nullptr)
        water->SetDebug(on);
    for (SceneNode* node : nodes)
        if (Mesh* mesh = node->GetMesh())
            mesh->SetDebug(on);
}

void SceneManager::Compute() {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();

    if (shadow != nullptr) {
        RenderLightDepth();
        RenderShadowBuffer();
    }
    // Asks about the previous frame's main pass: one frame of lag saves the two passes whenever
    // the water is out of view.
    if (water != nullptr && water->GetInFrustum()) {
        RenderReflection();
        RenderRefraction();
    }
    RenderScene();
}

void SceneManager::Draw() {
    Compute();
    postProcess->Draw();
}

// Node shadows -> depth of the light buffer.
// First of all, for the shadow buffer compares with it.
void SceneManager::RenderLightDepth() {
    shadow->BeginLightDraw();
    Frustum::GetInstance().MakePlane();
    glClear(GL_DEPTH_BUFFER_BIT);
    DrawNodeShadows();
    shadow->EndLightDraw();
}

// Node shadows and water, the light buffer -> share of shadow per pixel in the shadow buffer.
// Before the main pass, which ends with laying it over the scene; and before the water, whose
// shader reads the light buffer where this pass leaves it bound.
void SceneManager::RenderShadowBuffer() {
    shadow->BindShadowMap();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    LookThroughCamera();
    DrawNodeShadows();
    if (water != nullptr)
        water->DrawShadow();
    shadow->UnBindShadowMap();
}

// Sky, terrains and nodes -> the water's reflection image, mirrored and cut at the surface.
// Before the main pass, so that the water shows this frame's scene.
void SceneManager::RenderReflection() {
    water->BeginReflection(*camera);
    Frustum::GetInstance().MakePlane();
    DrawSky(true);
    DrawTerrains();
    DrawNodes();
    water->EndReflection();
}

// Sky, terrains and nodes -> the water's refraction image, as the camera sees them.
// Before the main pass as well.
void SceneManager::RenderRefraction() {
    water->BeginRefraction(*camera);
    Frustum::GetInstance().MakePlane();
    DrawSky(false);
    DrawTerrains();
    DrawNodes();
    water->EndRefraction();
}

// Everything, the water's two images, the shadow buffer -> the scene target.
// The water comes after the ground it covers and before the nodes, which may blend over it; the
// shadow comes last, over the finished picture.
void SceneManager::RenderScene() {
    fbo.Enable();
    ClearSceneTarget();
    LookThroughCamera();
    DrawSky(false);
    DrawTerrains();
    if (water != nullptr)
        water->Draw();
    DrawNodes();
    if (shadow != nullptr)
        shadow->Draw(&fbo);
    fbo.Disable();
}

// A sky box covers every pixel, so only its absence costs a clear of the colours.
void SceneManager::ClearSceneTarget() {
    glClear(sky != nullptr ? GL_DEPTH_BUFFER_BIT : GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void SceneManager::LookThroughCamera() {
    camera->Draw();
    Frustum::GetInstance().MakePlane();
}

void SceneManager::DrawSky(bool reflection) {
    if (sky != nullptr)
        sky->Draw(camera, reflection);
}

void SceneManager::DrawTerrains() {
    for (Terrain* terrain : terrains)
        terrain->Draw(camera->GetPosition());
}

void SceneManager::DrawNodes() {
    for (SceneNode* node : nodes)
        node->Draw();
}

void SceneManager::DrawNodeShadows() {
    for (SceneNode* node : nodes)
        node->DrawShadow();
}

} // namespace Vell
