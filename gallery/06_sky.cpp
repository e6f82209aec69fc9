// 06  A sky of six pictures around the eye, and an eye that is flown.
//
// The mouse turns, the arrows (or Z, Q, S, D) fly: the FreeFlyCamera is a camera like any other,
// and the scene owns it. The sky follows the eye and never comes nearer.

#include "demo/cameraFPS.h"
#include "engine/core/core.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

using Vell::vec3;

namespace {

constexpr vec3 balloons[] = {
    {-4.2f, 3.4f, -7}, {3.2f, 3, -13}, {12, 14, -26}, {-15, 20, -38}, {22, 7, -60}};

} // namespace

int main() {
    Gallery::Window window("Vell 06: a sky (mouse and arrows fly)");
    SDL_ShowCursor(SDL_DISABLE);
    Vell::SetFovy(55);

    Vell::SceneManager scene;
    auto* eye = new FreeFlyCamera;
    eye->Place(vec3(0, 0.5f, 0), vec3(-1, 5.6f, -10));
    scene.AddCamera(eye);
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    Vell::Mesh* balloon = scene.GetMesh("gallery/data/balloon.xt3dstatic");
    for (const vec3& place : balloons)
        scene.AddSceneNode(balloon, place);

    constexpr float lowest = -4; // that the eye may fly
    while (window.NextFrame()) {
        for (SDL_Event& event : window.Events())
            eye->Update(&event, window.FrameTime(), lowest);
        scene.Draw();
    }
}
