// 09  The terrain, as it is, and fog.
//
// It draws strips of one by eight cells, one behind the other in steps of 32 units, and each shows
// the same corner of the height map (docs/oddities.md has the whole story). So a height map of 256
// pixels makes 64 rocks in a row: a coast for ships to keep clear of. Water and terrain share the
// scene's fog; clear to its colour, and what is far ends in it.

#include "demo/assets.h"
#include "demo/spline.h"
#include "engine/core/core.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "gallery/window/window.h"

#include <cmath>

using Vell::vec2;
using Vell::vec3;

namespace {

constexpr float flightTime = 60.0f; // seconds
const Vell::vec4 mist(0.74f, 0.76f, 0.80f, 1);

/// Along the rocks.
void Plan(Spline& flight) {
    flight.AddPoint(vec3(-8, 7, 4), 0);
    flight.AddPoint(vec3(-4, 9, 90), flightTime * 0.33f);
    flight.AddPoint(vec3(12, 6, 190), flightTime * 0.66f);
    flight.AddPoint(vec3(-8, 7, 4), flightTime);
    flight.EndPath();
}

void AddSea(Vell::SceneManager& scene) {
    Vell::Water* water = scene.AddWater();
    water->SetNormalMap(Assets::waterNormals);
    water->SetSize(Vell::ivec2(3000));
    water->SetUVRepeat(vec2(8, 8));
    water->SetSpeed(vec2(0.01f, 0.003f));
    water->SetBlend(0.1f);
    water->SetDeform(0.025f);
    Vell::Water::HideShadowStripe();
}

} // namespace

int main() {
    Gallery::Window window("Vell 09: the terrain and fog");
    glClearColor(mist.x, mist.y, mist.z, 1);
    Vell::SetFovy(42);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(0, 5, 0), vec3(32, 5, 100));
    scene.SetFogColor(mist);
    scene.SetFogDensity(0.0055f);
    Vell::Terrain* rocks = scene.AddTerrain("gallery/data/rock.png", 1);
    rocks->SetTexture("Data/Gfx/City/stone.jpg", 0);
    rocks->SetScale(vec3(1)); // without it they have no place
    AddSea(scene);
    scene.AddSceneNode(scene.GetMesh("gallery/data/balloon.xt3dstatic"), vec3(11, 13, 79));

    Spline flight;
    Plan(flight);
    while (window.NextFrame()) {
        const vec3 position = flight.GetPosition(std::fmod(window.Time(), flightTime));
        eye->Set(position, position + vec3(32, 3, 40));
        scene.Draw();
    }
}
