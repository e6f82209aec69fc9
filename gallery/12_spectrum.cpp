// 12  A picture that a spectrum drives: 64 bars over water dance to any MP3.
//
//     ./gallery/run 12_spectrum song.mp3
//
// The sound library plays the track and tells, at any time, how strong each of 64 bands of what is
// being heard is. The lowest stands in the middle. Bars rise at once and sink slowly.

#include "engine/core/core.h"
#include "engine/env/water.h"
#include "engine/scene/camera.h"
#include "engine/scene/mesh.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "gallery/window/window.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <fmod.h>

using Vell::vec3;

namespace {

constexpr int bands = 64;

/// A pillar of light, one unit high; its node stretches it.
class Bar : public Vell::Mesh {
public:
    Bar() { bbox.Set(vec3(-0.19f, 0, -0.19f), vec3(0.19f, 1, 0.19f)); }

    void Draw() override {
        static constexpr float corners[][2] = {{-1, 1}, {1, 1}, {1, -1}, {-1, -1}, {-1, 1}};
        glBegin(GL_QUAD_STRIP);
        for (const auto& [x, z] : corners) {
            glColor3f(0.20f, 0.06f, 0.38f);
            glVertex3f(x * 0.19f, 0, z * 0.19f);
            glColor3f(1.0f, 0.62f, 0.32f + 0.1f * x);
            glVertex3f(x * 0.19f, 1, z * 0.19f);
        }
        glEnd();
        glColor4f(1, 1, 1, 1);
    }
};

/// In units: loudness is heard, and shown, by decibels. A bar is 3.4 high for each 20 of them.
float HeightOf(float magnitude) {
    return std::max(0.1f, 10.5f + 3.4f * std::log10(magnitude + 1e-5f));
}

/// The lowest in the middle, the others left and right of it by turns.
vec3 PlaceOf(int band) {
    return {0.25f * static_cast<float>(band % 2 == 0 ? band : -1 - band), 0, 0};
}

FMOD_CHANNEL* Play(FMOD_SYSTEM* system, const char* track, FMOD_SOUND** sound) {
    FMOD_CHANNEL* channel = nullptr;
    FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr);
    FMOD_System_CreateStream(system, track, FMOD_LOOP_OFF, nullptr, sound);
    FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, *sound, 0, &channel);
    return channel;
}

} // namespace

int main(int count, char** arguments) {
    Gallery::Window window("Vell 12: a spectrum");
    Vell::SetFovy(38);
    Bar bar;
    Vell::SceneManager scene;
    Vell::Camera* eye = scene.AddCamera(vec3(0, 3, 22), vec3(0, 3, 0));
    scene.AddSkyBox("Data/Gfx/City/sky/", ".jpg");
    Vell::Water* water = scene.AddWater();
    water->SetNormalMap("Data/Gfx/water.jpg");
    water->SetSize(Vell::ivec2(2000));
    water->SetUVRepeat(Vell::vec2(14, 14));
    water->SetSpeed(Vell::vec2(0.01f, 0.0f));
    water->SetBlend(0.1f);
    Vell::Water::HideShadowStripe(); // there is no shadow mapping here
    std::array<Vell::SceneNode*, bands> nodes{};
    for (int band = 0; band < bands; ++band)
        nodes[band] = scene.AddSceneNode(&bar, PlaceOf(band));

    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_System_Create(&system);
    FMOD_CHANNEL* channel =
        Play(system, count > 1 ? arguments[1] : "Data/Musics/Quorrel.mp3", &sound);

    std::array<float, bands> spectrum{};
    std::array<float, bands> heights{};
    while (window.NextFrame()) {
        FMOD_System_Update(system);
        FMOD_Channel_GetSpectrum(channel, spectrum.data(), bands, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        for (int band = 0; band < bands; ++band) {
            const float sunk = heights[band] - 6 * window.FrameTime();
            heights[band] = std::max(HeightOf(spectrum[band]), sunk);
            nodes[band]->SetScale(vec3(1, heights[band], 1));
        }
        const float angle = 0.5f * std::sin(window.Time() * 0.2f);
        eye->SetPosition(vec3(std::sin(angle) * 22, 2.5f, std::cos(angle) * 22));
        scene.Draw();
    }

    FMOD_Sound_Release(sound);
    FMOD_System_Close(system);
    FMOD_System_Release(system);
}
