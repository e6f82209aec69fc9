// 04  A material of one's own: a pair of GLSL files for a mesh.
//
// The engine sends them the textures' units and the "time" since the mesh was made; whatever else
// they declare is sent by name, with the material enabled. Here that is the colour of the glaze,
// which the space bar changes.

#include "engine/core/core.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

#include <array>
#include <cmath>

using Vell::vec3;

namespace {

constexpr std::array glazes = {vec3(0.02f, 0.10f, 0.30f), vec3(0.28f, 0.02f, 0.07f),
                               vec3(0.01f, 0.20f, 0.14f)};

void SendGlaze(Vell::Shader& material, const vec3& colour) {
    material.Enable();
    material.Send("glaze", colour);
    material.Disable();
}

} // namespace

int main() {
    Gallery::Window window("Vell 04: a material of one's own (space: the next glaze)");
    glClearColor(0.035f, 0.035f, 0.05f, 1);
    Vell::SetFovy(40);

    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(0, 0, 4), vec3(0));
    Vell::XT3DStatic* knot = scene.GetStaticMesh("gallery/data/knot.xt3dstatic");
    Vell::Shader* material =
        knot->SetMaterialShader("gallery/04_material.vert", "gallery/04_material.frag");
    scene.AddSceneNode(knot, vec3(0));

    std::size_t chosen = 0;
    SendGlaze(*material, glazes[chosen]);
    while (window.NextFrame()) {
        if (window.Pressed(SDLK_SPACE)) {
            chosen = (chosen + 1) % glazes.size();
            SendGlaze(*material, glazes[chosen]);
        }
        const float angle = window.Time() * 0.3f;
        eye->SetPosition(
            vec3(std::sin(angle) * 4, 1.2f * std::sin(angle * 0.7f), std::cos(angle) * 4));
        scene.Draw();
    }
}
