// 02  A mesh from a file, with its texture.
//
// The scene manager loads a mesh once, whatever the number of nodes that show it, and deletes it
// in the end. A node places it. Without a material of its own (04) a mesh shows its texture as it
// is: the light on this silk is painted.

#include "demo/spline.h"
#include "engine/core/GLExtensions.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "gallery/window/window.h"

#include <cmath>

using Vell::vec3;

namespace {

constexpr float flightTime = 24.0f; // seconds

/// Round the first balloon, towards the others, and back.
void Plan(Spline& flight) {
    flight.AddPoint(vec3(-1.9f, -0.6f, -3.6f), 0);
    flight.AddPoint(vec3(-0.2f, 0.1f, -3.3f), flightTime * 0.25f);
    flight.AddPoint(vec3(1.4f, 1.4f, -2.4f), flightTime * 0.5f);
    flight.AddPoint(vec3(-0.4f, 0.6f, -3.8f), flightTime * 0.75f);
    flight.AddPoint(vec3(-1.9f, -0.6f, -3.6f), flightTime);
    flight.EndPath();
}

} // namespace

int main() {
    Gallery::Window window("Vell 02: a mesh with its texture");
    glClearColor(0.55f, 0.71f, 0.85f, 1);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(0, 0, -5), vec3(0));
    Vell::Mesh* balloon = scene.GetMesh("gallery/data/balloon.xt3dstatic");
    for (const vec3& place :
         {vec3(0.9f, 0.1f, 0), vec3(-2.8f, 0.6f, 5), vec3(-0.6f, -2.2f, 10), vec3(-11, 4.4f, 16)})
        scene.AddSceneNode(balloon, place);

    Spline flight;
    Plan(flight);
    while (window.NextFrame()) {
        eye->Set(flight.GetPosition(std::fmod(window.Time(), flightTime)), vec3(-0.4f, 0.1f, 1));
        scene.Draw();
    }
}
