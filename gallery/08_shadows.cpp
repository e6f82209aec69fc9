// 08  Shadow mapping: a light that moves, and what size and blur are worth.
//
// Four strips show the same scene with other settings: from left to right a light buffer of 512,
// 2048, 2048 and 4096 texels a side, and 1, 1, 4 and 8 blur passes. Too small a buffer darkens
// what is lit, see SceneManager::AddShadowMapping().
//
// Shadows fall right on meshes whose nodes are not moved: all of the temple is one mesh.

#include "engine/core/core.h"
#include "engine/env/shadowmapping.h"
#include "engine/post/postprocess.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "gallery/window/window.h"

#include <array>
#include <cmath>

using Gallery::Window;
using Vell::vec3;

namespace {

const vec3 middle(0, 4, 0);
constexpr float darkness = 0.72f;

struct Strip {
    int size; // of the light buffer, in texels
    int blurPasses;
};
constexpr std::array strips = {Strip{512, 1}, Strip{2048, 1}, Strip{2048, 4}, Strip{4096, 8}};

/// The material shades by the same light as the shadows.
void SendLight(Vell::Shader& material, const vec3& light) {
    material.Enable();
    material.Send("light", Normalized(light - middle));
    material.Disable();
}

void DrawStrip(Vell::SceneManager& scene, const vec3& light, std::size_t number) {
    const int width = Window::width / static_cast<int>(strips.size());
    scene.AddShadowMapping(light, middle, strips[number].size, darkness)
        ->SetBlurPass(strips[number].blurPasses);
    scene.Compute();
    glScissor(static_cast<int>(number) * width, 0, width - 2, Window::height);
    glEnable(GL_SCISSOR_TEST);
    scene.GetPostProcess()->Draw();
    glDisable(GL_SCISSOR_TEST);
}

} // namespace

int main() {
    Window window("Vell 08: shadows of 512, 2048, 2048, 4096 texels and 1, 1, 4, 8 passes");
    glClearColor(0, 0.16f, 0.30f, 1); // its red darkens the sky, see AddShadowMapping()
    Vell::SetFovy(34);

    Vell::SceneManager scene;
    scene.AddCamera(vec3(-26, 19, 44), vec3(0, 3.4f, 0));
    Vell::XT3DStatic* temple = scene.GetStaticMesh("gallery/data/temple.xt3dstatic");
    Vell::Shader* material =
        temple->SetMaterialShader("gallery/08_shadows.vert", "gallery/08_shadows.frag");
    scene.AddSceneNode(temple, vec3(0));

    while (window.NextFrame()) {
        const float angle = 0.15f + 0.6f * std::sin(window.Time() * 0.4f);
        const vec3 light = middle + vec3(-std::cos(angle), 0.75f, std::sin(angle)) * 80.0f;
        SendLight(*material, light);
        for (std::size_t number = 0; number < strips.size(); ++number)
            DrawStrip(scene, light, number);
    }
}
