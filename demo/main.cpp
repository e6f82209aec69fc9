#include "demo/assets.h"
#include "demo/scene1.h"
#include "demo/show.h"

#include "engine/core/clock.h"
#include "engine/core/core.h"
#include "engine/math/vec2.h"

#include <SDL.h>
#include <fmod.h>

namespace {

constexpr int channels = 10;
constexpr int spectrumSize = 64;

// FMOD_CREATESAMPLE although the track is opened as a stream: intended, and not to be heard.
constexpr unsigned int streamMode =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;

} // namespace

int main() {
    // No result of SDL or FMOD is examined: without a sound device the demo plays on silently, and
    // without a window it is InitEngine() that finds no OpenGL.
    SDL_Init(SDL_INIT_VIDEO);
    SDL_SetVideoMode(Show::width, Show::height, 32, SDL_HWSURFACE | SDL_OPENGL | SDL_ASYNCBLIT);
    SDL_ShowCursor(SDL_DISABLE);
    SDL_WM_SetCaption("Halvorn :: Nimbrel", nullptr);

    Vell::Clock frameClock;
    if (!Vell::InitEngine(Vell::ivec2(Show::width, Show::height))) {
        SDL_Quit(); // without OpenGL there is nothing to show, and the log says so
        return 0;
    }

    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
    FMOD_System_Create(&system);
    FMOD_System_SetOutput(system, FMOD_OUTPUTTYPE_ALSA);
    FMOD_System_Init(system, channels, FMOD_INIT_NORMAL, nullptr);
    FMOD_System_CreateStream(system, Assets::music, streamMode, nullptr, &sound);

    Scene1* scene = new Scene1;
    scene->Load();
    float spectrum[spectrumSize] = {};
    scene->SetSpectrum(spectrum);

    FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, false, &channel);
    bool running = true;
    Vell::Clock demoClock; // alone decides the end, whatever the music is doing
    SDL_Event event{};     // examined even before the first event arrives

    while (running && demoClock.GetElapsedTime() < Show::runningTime) {
        const float dt = frameClock.GetElapsedTime();
        frameClock.Reset();

        // One event a frame, and Escape alone ends the demo: window-close requests are left
        // unhandled on purpose, so the window's own button does nothing.
        SDL_PollEvent(&event);
        if (event.type == SDL_KEYDOWN && event.key.keysym.sym == SDLK_ESCAPE)
            running = false;

        FMOD_System_Update(system);
        FMOD_Channel_GetSpectrum(channel, spectrum, spectrumSize, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        scene->Draw(dt);
        SDL_GL_SwapBuffers();
    }

    delete scene;
    FMOD_Sound_Release(sound);
    FMOD_System_Close(system);
    FMOD_System_Release(system);
    SDL_Quit();
    return 0;
}
