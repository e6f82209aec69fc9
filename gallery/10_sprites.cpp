// 10  Sprites: pictures laid flat over the scene.
//
// A sprite is drawn after the scene, in a projection from 0 to 1 that the caller sets, and is
// multiplied by the current colour: its alpha fades it. Position and scale belong to the sprite,
// so one sprite, drawn as often as there are flakes, makes all of the snow.

#include "demo/assets.h"
#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/fullscreen.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/sprite.h"
#include "gallery/window/window.h"

#include <algorithm>
#include <cmath>

using Vell::vec2;
using Vell::vec3;

namespace {

constexpr int flakes = 420;
constexpr float aspect = static_cast<float>(Gallery::Window::width) / Gallery::Window::height;

/// Spreads numbers evenly over 0 to 1, for any count of them.
float Spread(int number, float step) {
    return std::fmod(static_cast<float>(number) * step, 1.0f);
}

void DrawSnow(Vell::Sprite& flake, float time) {
    for (int number = 0; number < flakes; ++number) {
        const float nearness = std::pow(Spread(number, 0.7548f), 3.0f);
        const float size = 0.006f + 0.035f * nearness;
        const float fall = time * (0.03f + 0.12f * nearness);
        const float sway = 0.01f * std::sin(time + static_cast<float>(number));
        const float width = size / (flake.GetSize().x * aspect);
        flake.SetScale(vec2(width, size / flake.GetSize().y));
        flake.SetPosition(
            vec2(1.04f * Spread(number, 0.5698f) - 0.04f + sway,
                 1.1f * (1 - std::fmod(Spread(number, 0.3241f) + fall, 1.0f)) - 0.08f));
        glColor4f(1, 1, 1, 0.85f - 0.45f * nearness); // near ones are out of focus
        flake.Draw();
    }
}

void DrawSprites(Vell::Sprite& flake, Vell::Sprite& title, float time) {
    Vell::PushUnitProjection();
    DrawSnow(flake, time);
    glColor4f(1, 1, 1, std::clamp(time * 0.25f, 0.0f, 0.9f));
    title.Draw();
    Vell::PopProjection();
}

} // namespace

int main() {
    Gallery::Window window("Vell 10: sprites");
    Vell::SetFovy(50);

    Vell::SceneManager scene;
    scene.AddCamera(vec3(0, 2, 0), vec3(-4, 6.2f, -10));
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    scene.AddSceneNode(scene.GetMesh("gallery/data/balloon.xt3dstatic"), vec3(-4.4f, 5.2f, -5));
    scene.AddSceneNode(scene.GetMesh("gallery/data/balloon.xt3dstatic"), vec3(1, 14, -22));

    Vell::Sprite flake;
    flake.SetTexture("gallery/data/flake.png");
    Vell::Sprite title; // as large as its picture, of which 960 pixels belong into the window
    title.SetTexture(Assets::logo);
    title.SetScale(vec2(Gallery::Window::width / 960.0f));

    while (window.NextFrame()) {
        scene.Draw();
        DrawSprites(flake, title, window.Time());
    }
}
