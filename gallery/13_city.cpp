// 13  Nimbrel's city, in free flight.
//
// The mouse turns, the arrows (or Z, Q, S, D) fly. Everything before this comes together: a mesh
// with light map and a material of its own, wisps that light it, sky, water and bloom. The city
// alone knows that it is no longer filmed: its material leaves out what the show's flights do not
// see, and draws everything for an eye anywhere else.

#include "demo/assets.h"
#include "demo/cameraFPS.h"
#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/post/post_bloom.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "gallery/window/window.h"

#include <array>
#include <cmath>

using Vell::vec3;

namespace {

/// A wisp: its mesh, its light in the city's material, and how far round the basin it is.
struct Wisp {
    const char* mesh;
    const char* uniform;
    float angle;
};
constexpr std::array wisps = {Wisp{Assets::redWispMesh, "posred", 0.0f},
                              Wisp{Assets::greenWispMesh, "posgreen", 2.1f},
                              Wisp{Assets::blueWispMesh, "posblue", 4.2f}};

vec3 PlaceOf(const Wisp& wisp, float time) {
    const float angle = wisp.angle + time * 0.5f;
    return {26 + 4 * std::sin(angle), 2.6f + std::sin(angle * 1.7f), 14 + 4 * std::cos(angle)};
}

void AddSea(Vell::SceneManager& scene) {
    Vell::Water* water = scene.AddWater();
    water->SetNormalMap(Assets::waterNormals);
    water->SetBlend(0);
    water->SetDeform(0.02f);
    water->SetSize(Vell::ivec2(25000));
    water->SetUVRepeat(Vell::vec2(10, 10));
    water->SetSpeed(Vell::vec2(0.01f, 0));
    Vell::Water::HideShadowStripe();
}

} // namespace

int main() {
    Gallery::Window window("Vell 13: Nimbrel's city (mouse and arrows fly)");
    SDL_ShowCursor(SDL_DISABLE);
    Vell::SetFovy(45);
    Vell::PostBloom bloom;
    bloom.SetThreshold(0.5f);
    bloom.SetIntensity(0.45f);

    Vell::SceneManager scene;
    scene.GetPostProcess()->AddPostEffect(&bloom);
    auto* eye = new FreeFlyCamera;
    eye->Place(vec3(33, 4.5f, 26), vec3(22, 4, 8));
    scene.AddCamera(eye);
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    AddSea(scene);
    Vell::XT3DStatic* city = scene.GetStaticMesh(Assets::cityMesh);
    Vell::Shader* stone =
        city->SetMaterialShader(Assets::cityVertexShader, Assets::cityFragmentShader);
    scene.AddSceneNode(city, vec3(0));
    std::array<Vell::SceneNode*, wisps.size()> nodes{};
    for (std::size_t i = 0; i < wisps.size(); ++i) {
        Vell::XT3DStatic* mesh = scene.GetStaticMesh(wisps[i].mesh);
        mesh->SetMaterialShader(Assets::wispVertexShader, Assets::wispFragmentShader);
        mesh->SetBlend(true);
        nodes[i] = scene.AddSceneNode(mesh, vec3(0));
    }

    while (window.NextFrame()) {
        for (SDL_Event& event : window.Events())
            eye->Update(&event, window.FrameTime(), 0.3f);
        stone->Enable();
        for (std::size_t i = 0; i < wisps.size(); ++i) {
            const vec3 place = PlaceOf(wisps[i], window.Time());
            nodes[i]->SetPosition(place);
            stone->Send(wisps[i].uniform, place);
        }
        stone->Disable();
        scene.Draw();
    }
}
