#pragma once

// The real main() is compiled into this file under another name, and everything it calls outside
// is replaced by a recorder, so that it runs without a window and without sound. Every header that
// main.cpp includes comes before the replacements, so that only main's own calls are redirected.

#include "demo/scene1.h"
#include "demo/show.h"
#include "engine/core/clock.h"
#include "engine/core/core.h"
#include "tests/support/fake_time.h"

#include <SDL.h>
#include <fmod.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

/// What main() did, and what the world answers.
struct Stage {
    std::vector<std::string> calls;
    std::vector<float> durations;                ///< what each Draw() was given
    std::vector<float> bands;                    ///< lowest band of the spectrum at each Draw()
    std::function<bool(SDL_Event*, int)> events; ///< answers the n-th poll, from 1
    const float* spectrum = nullptr;
    FMOD_RESULT soundResult = FMOD_OK; ///< of every FMOD call; none gives a handle when it fails
    bool engineResult = true;          ///< of InitEngine()
    double now = 0.0;
    double windowTime = 0.0; ///< how long opening the window takes, and so on
    double engineTime = 0.0;
    double loadTime = 0.0;
    double playTime = 0.0;
    double frameTime = 20.0; ///< by default the demo is over after six frames
    int polls = 0;

    void Wait(double seconds) {
        now += seconds;
        SetFakeTime(now);
    }
};

inline Stage stage;

template <class... Parts>
void Record(const Parts&... parts) {
    std::ostringstream text;
    const char* separator = "";
    ((text << separator << parts, separator = " "), ...);
    stage.calls.push_back(text.str());
}

// The handles are never looked into by main(): any address will do.
inline FMOD_SYSTEM* const systemHandle = reinterpret_cast<FMOD_SYSTEM*>(16);
inline FMOD_SOUND* const soundHandle = reinterpret_cast<FMOD_SOUND*>(32);
inline FMOD_CHANNEL* const channelHandle = reinterpret_cast<FMOD_CHANNEL*>(48);

inline std::string Name(const void* handle) {
    if (handle == nullptr)
        return "null";
    if (handle == systemHandle)
        return "system";
    if (handle == soundHandle)
        return "sound";
    return handle == channelHandle ? "channel" : "unknown";
}

/// What a call that makes something gives.
template <class Handle>
void Hand(Handle** out, Handle* handle) {
    if (stage.soundResult == FMOD_OK)
        *out = handle;
}

class FakeScene {
public:
    FakeScene() { Record("new Scene1"); }
    ~FakeScene() { Record("delete Scene1"); }
    void Load() {
        Record("Load");
        stage.Wait(stage.loadTime);
    }
    void SetSpectrum(float* spectrum) {
        Record("SetSpectrum");
        stage.spectrum = spectrum;
    }
    void Draw(float dt) {
        Record("Draw");
        stage.durations.push_back(dt);
        stage.bands.push_back(stage.spectrum[0]);
    }
};

inline int FakeInit(Uint32 flags) {
    Record("SDL_Init", flags);
    return -1; // not examined
}

inline SDL_Surface* FakeSetVideoMode(int width, int height, int bits, Uint32 flags) {
    Record("SDL_SetVideoMode", width, height, bits, flags);
    stage.Wait(stage.windowTime);
    return nullptr; // not examined
}

inline int FakeShowCursor(int toggle) {
    Record("SDL_ShowCursor", toggle);
    return 0;
}

inline void FakeSetCaption(const char* title, const char* icon) {
    Record("SDL_WM_SetCaption", title, icon ? icon : "null");
}

inline int FakePollEvent(SDL_Event* event) {
    Record("SDL_PollEvent");
    ++stage.polls;
    return stage.events && stage.events(event, stage.polls) ? 1 : 0;
}

inline void FakeSwapBuffers() {
    Record("SDL_GL_SwapBuffers");
    stage.Wait(stage.frameTime);
}

inline void FakeQuit() {
    Record("SDL_Quit");
}

inline FMOD_RESULT FakeSystemCreate(FMOD_SYSTEM** system) {
    Record("FMOD_System_Create");
    Hand(system, systemHandle);
    return stage.soundResult;
}

inline FMOD_RESULT FakeSetOutput(FMOD_SYSTEM* system, int output) {
    Record("FMOD_System_SetOutput", Name(system), output);
    return stage.soundResult;
}

inline FMOD_RESULT FakeSystemInit(FMOD_SYSTEM* system, int channels, unsigned flags, void* extra) {
    Record("FMOD_System_Init", Name(system), channels, flags, extra ? "extra" : "null");
    return stage.soundResult;
}

inline FMOD_RESULT FakeCreateStream(FMOD_SYSTEM* system, const char* name, unsigned mode,
                                    void* info, FMOD_SOUND** sound) {
    Record("FMOD_System_CreateStream", Name(system), name, mode, info ? "info" : "null");
    Hand(sound, soundHandle);
    return stage.soundResult;
}

inline FMOD_RESULT FakePlaySound(FMOD_SYSTEM* system, int index, FMOD_SOUND* sound, int paused,
                                 FMOD_CHANNEL** channel) {
    Record("FMOD_System_PlaySound", Name(system), index, Name(sound), paused);
    Hand(channel, channelHandle);
    stage.Wait(stage.playTime);
    return stage.soundResult;
}

inline FMOD_RESULT FakeUpdate(FMOD_SYSTEM* system) {
    Record("FMOD_System_Update", Name(system));
    return stage.soundResult;
}

inline FMOD_RESULT FakeGetSpectrum(FMOD_CHANNEL* channel, float* values, int count, int offset,
                                   int window) {
    Record("FMOD_Channel_GetSpectrum", Name(channel), count, offset, window);
    values[0] = static_cast<float>(stage.polls); // another value in every frame
    return stage.soundResult;
}

inline FMOD_RESULT FakeSoundRelease(FMOD_SOUND* sound) {
    Record("FMOD_Sound_Release", Name(sound));
    return stage.soundResult;
}

inline FMOD_RESULT FakeSystemClose(FMOD_SYSTEM* system) {
    Record("FMOD_System_Close", Name(system));
    return stage.soundResult;
}

inline FMOD_RESULT FakeSystemRelease(FMOD_SYSTEM* system) {
    Record("FMOD_System_Release", Name(system));
    return stage.soundResult;
}

namespace Vell {
inline bool FakeInitEngine(const ivec2& size) {
    Record("InitEngine", size.x, size.y);
    stage.Wait(stage.engineTime);
    return stage.engineResult;
}
} // namespace Vell

#define Scene1 FakeScene
#define InitEngine FakeInitEngine
#define SDL_Init FakeInit
#define SDL_SetVideoMode FakeSetVideoMode
#define SDL_ShowCursor FakeShowCursor
#define SDL_WM_SetCaption FakeSetCaption
#define SDL_PollEvent FakePollEvent
#define SDL_GL_SwapBuffers FakeSwapBuffers
#define SDL_Quit FakeQuit
#define FMOD_System_Create FakeSystemCreate
#define FMOD_System_SetOutput FakeSetOutput
#define FMOD_System_Init FakeSystemInit
#define FMOD_System_CreateStream FakeCreateStream
#define FMOD_System_PlaySound FakePlaySound
#define FMOD_System_Update FakeUpdate
#define FMOD_Channel_GetSpectrum FakeGetSpectrum
#define FMOD_Sound_Release FakeSoundRelease
#define FMOD_System_Close FakeSystemClose
#define FMOD_System_Release FakeSystemRelease
#define main PlayNimbrel
#include "demo/main.cpp" // NOLINT(bugprone-suspicious-include): see the top of this file
#undef main
