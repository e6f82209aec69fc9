// 03  A light map: light that was computed beforehand and costs one look-up.
//
// The mesh says that it has one, which then lies beside its textures as "lightmap.jpg". A material
// multiplies both: Data/Gfx/Plain is one to copy, for any mesh with a light map.

#include "demo/spline.h"
#include "engine/core/core.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

#include <cmath>

using Vell::vec3;

namespace {

constexpr float flightTime = 40.0f; // seconds

/// Through the colonnade and round the stone.
void Plan(Spline& flight) {
    flight.AddPoint(vec3(4.6f, 1.5f, 5.6f), 0);
    flight.AddPoint(vec3(0.5f, 2.0f, 6.2f), flightTime * 0.2f);
    flight.AddPoint(vec3(-3.2f, 1.8f, 2.0f), flightTime * 0.4f);
    flight.AddPoint(vec3(-2.4f, 1.9f, -2.6f), flightTime * 0.6f);
    flight.AddPoint(vec3(3.6f, 2.2f, -2.6f), flightTime * 0.8f);
    flight.AddPoint(vec3(4.6f, 1.5f, 5.6f), flightTime);
    flight.EndPath();
}

} // namespace

int main() {
    Gallery::Window window("Vell 03: a light map");
    glClearColor(0.42f, 0.52f, 0.72f, 1);
    Vell::SetFovy(50);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(6, 3, 6), vec3(0, 1, 0));
    Vell::XT3DStatic* court = scene.GetStaticMesh("gallery/data/court/court.xt3dstatic");
    court->SetMaterialShader("Data/Gfx/Plain/shader.vert", "Data/Gfx/Plain/shader.frag");
    scene.AddSceneNode(court, vec3(0));

    Spline flight;
    Plan(flight);
    while (window.NextFrame()) {
        const vec3 position = flight.GetPosition(std::fmod(window.Time(), flightTime));
        eye->Set(position, vec3(-1.6f, 1.9f, -1.2f));
        scene.Draw();
    }
}
