// 07  Water, from above and from below.
//
// It stands at y = 0 and mixes two pictures of the scene, which the scene manager draws for it in
// every frame: the world mirrored, and the world as it is, refracted. SetBlend() says how much of
// which; SetDeform() how far the normal map bends both.

#include "demo/assets.h"
#include "demo/spline.h"
#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "gallery/window/window.h"

#include <cmath>

using Vell::vec2;
using Vell::vec3;

namespace {

constexpr float flightTime = 40.0f;          // seconds
const vec3 shoalMiddle(30.7f, -3.1f, -7.0f); // of the fish mesh, at a tenth of its size

/// Into the bay, under the surface, past the fish, and out again.
void Plan(Spline& flight) {
    flight.AddPoint(vec3(22, 3.2f, 30), 0);
    flight.AddPoint(vec3(15, 1.6f, 24), flightTime * 0.25f);
    flight.AddPoint(vec3(10, -1.1f, 16), flightTime * 0.5f);
    flight.AddPoint(vec3(14, -0.9f, 20), flightTime * 0.75f);
    flight.AddPoint(vec3(22, 3.2f, 30), flightTime);
    flight.EndPath();
}

void AddWater(Vell::SceneManager& scene) {
    Vell::Water* water = scene.AddWater();
    water->SetNormalMap(Assets::waterNormals);
    water->SetSize(Vell::ivec2(2000));
    water->SetUVRepeat(vec2(14, 14));
    water->SetSpeed(vec2(0.012f, 0.004f));
    water->SetBlend(0.45f);
    water->SetDeform(0.02f);
    Vell::Water::HideShadowStripe(); // there is no shadow mapping here
}

} // namespace

int main() {
    Gallery::Window window("Vell 07: water above and below");
    Vell::SetFovy(50);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(20, 3, 30), vec3(0));
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    scene.AddSceneNode(scene.GetMesh("gallery/data/island.xt3dstatic"), vec3(0));
    scene.AddSceneNode(scene.GetMesh("gallery/data/balloon.xt3dstatic"), vec3(3, 6, 14));
    for (const vec3& place : {vec3(9, -1.6f, 12), vec3(6, -1.2f, 9), vec3(12, -1.4f, 17)})
        scene.AddSceneNode(scene.GetMesh(Assets::fishMesh), place - shoalMiddle)
            ->SetScale(vec3(0.1f));
    AddWater(scene);

    Spline flight;
    Plan(flight);
    while (window.NextFrame()) {
        eye->Set(flight.GetPosition(std::fmod(window.Time(), flightTime)), vec3(2, 1.2f, 6));
        scene.Draw();
    }
}
