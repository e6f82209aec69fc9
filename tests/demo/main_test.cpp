// The real main() is compiled into this file under another name, and everything it calls outside
// is replaced by a recorder: the start-up, the frame loop and the shutdown are checked call by
// call, without a window and without sound. Every header that main.cpp includes comes before the
// replacements, so that only main's own calls are redirected.

#include "demo/scene1.h"
#include "engine/core/clock.h"
#include "engine/core/core.h"
#include "tests/support/fake_time.h"

#include <SDL.h>
#include <fmod.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;

namespace {

/// What main() did, and what the world answers.
struct Stage {
    std::vector<std::string> calls;
    std::vector<float> durations;                ///< what each Draw() was given
    std::vector<float> bands;                    ///< lowest band of the spectrum at each Draw()
    std::function<bool(SDL_Event*, int)> events; ///< answers the n-th poll, from 1
    const float* spectrum = nullptr;
    double now = 0.0;
    double loadTime = 0.0;
    double frameTime = 20.0; ///< by default the demo is over after six frames
    int polls = 0;

    void Wait(double seconds) {
        now += seconds;
        SetFakeTime(now);
    }
};

Stage stage;

template <class... Parts>
void Record(const Parts&... parts) {
    std::ostringstream text;
    const char* separator = "";
    ((text << separator << parts, separator = " "), ...);
    stage.calls.push_back(text.str());
}

// The handles are never looked into by main(): any address will do.
FMOD_SYSTEM* const systemHandle = reinterpret_cast<FMOD_SYSTEM*>(16);
FMOD_SOUND* const soundHandle = reinterpret_cast<FMOD_SOUND*>(32);
FMOD_CHANNEL* const channelHandle = reinterpret_cast<FMOD_CHANNEL*>(48);

std::string Name(const void* handle) {
    if (handle == systemHandle)
        return "system";
    if (handle == soundHandle)
        return "sound";
    return handle == channelHandle ? "channel" : "unknown";
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

int FakeInit(Uint32 flags) {
    Record("SDL_Init", flags);
    return -1; // not examined
}

SDL_Surface* FakeSetVideoMode(int width, int height, int bits, Uint32 flags) {
    Record("SDL_SetVideoMode", width, height, bits, flags);
    return nullptr; // not examined
}

int FakeShowCursor(int toggle) {
    Record("SDL_ShowCursor", toggle);
    return 0;
}

void FakeSetCaption(const char* title, const char* icon) {
    Record("SDL_WM_SetCaption", title, icon ? icon : "null");
}

int FakePollEvent(SDL_Event* event) {
    Record("SDL_PollEvent");
    ++stage.polls;
    return stage.events && stage.events(event, stage.polls) ? 1 : 0;
}

void FakeSwapBuffers() {
    Record("SDL_GL_SwapBuffers");
    stage.Wait(stage.frameTime);
}

void FakeQuit() {
    Record("SDL_Quit");
}

FMOD_RESULT FakeSystemCreate(FMOD_SYSTEM** system) {
    Record("FMOD_System_Create");
    *system = systemHandle;
    return FMOD_OK;
}

FMOD_RESULT FakeSetOutput(FMOD_SYSTEM* system, int output) {
    Record("FMOD_System_SetOutput", Name(system), output);
    return FMOD_OK;
}

FMOD_RESULT FakeSystemInit(FMOD_SYSTEM* system, int channels, unsigned flags, void* extra) {
    Record("FMOD_System_Init", Name(system), channels, flags, extra ? "extra" : "null");
    return FMOD_OK;
}

FMOD_RESULT FakeCreateStream(FMOD_SYSTEM* system, const char* name, unsigned mode, void* info,
                             FMOD_SOUND** sound) {
    Record("FMOD_System_CreateStream", Name(system), name, mode, info ? "info" : "null");
    *sound = soundHandle;
    return FMOD_OK;
}

FMOD_RESULT FakePlaySound(FMOD_SYSTEM* system, int index, FMOD_SOUND* sound, int paused,
                          FMOD_CHANNEL** channel) {
    Record("FMOD_System_PlaySound", Name(system), index, Name(sound), paused);
    *channel = channelHandle;
    return FMOD_OK;
}

FMOD_RESULT FakeUpdate(FMOD_SYSTEM* system) {
    Record("FMOD_System_Update", Name(system));
    return FMOD_OK;
}

FMOD_RESULT FakeGetSpectrum(FMOD_CHANNEL* channel, float* values, int count, int offset,
                            int window) {
    Record("FMOD_Channel_GetSpectrum", Name(channel), count, offset, window);
    values[0] = static_cast<float>(stage.polls); // another value in every frame
    return FMOD_OK;
}

FMOD_RESULT FakeSoundRelease(FMOD_SOUND* sound) {
    Record("FMOD_Sound_Release", Name(sound));
    return FMOD_OK;
}

FMOD_RESULT FakeSystemClose(FMOD_SYSTEM* system) {
    Record("FMOD_System_Close", Name(system));
    return FMOD_OK;
}

FMOD_RESULT FakeSystemRelease(FMOD_SYSTEM* system) {
    Record("FMOD_System_Release", Name(system));
    return FMOD_OK;
}

} // namespace

namespace Vell {
static bool FakeInitEngine(const ivec2& size) {
    Record("InitEngine", size.x, size.y);
    return false; // not examined
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

namespace {

SDL_Event KeyDown(SDLKey key) {
    SDL_Event event = SDL_Event();
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = key;
    return event;
}

class Main : public ::testing::Test {
protected:
    void SetUp() override {
        stage = Stage();
        SetFakeTime(0.0);
    }
    void TearDown() override { ClearFakeTime(); }

    /// Delivers these events, one a poll, and none after them.
    static void Deliver(const std::vector<SDL_Event>& events) {
        stage.events = [events](SDL_Event* event, int poll) {
            if (size_t(poll) > events.size())
                return false;
            *event = events[size_t(poll) - 1];
            return true;
        };
    }

    static std::vector<std::string> CallsBetween(const std::string& first,
                                                 const std::string& last) {
        const auto begin = std::find(stage.calls.begin(), stage.calls.end(), first);
        const auto end = std::find(begin, stage.calls.end(), last);
        return {begin, end};
    }

    static long Count(const std::string& call) {
        return std::count(stage.calls.begin(), stage.calls.end(), call);
    }
};

// 118.252 s of frames of 20 s each: the frames at 0, 20, ... 100 s run, the test at 120 s ends.
constexpr long allFrames = 6;

} // namespace

TEST_F(Main, Starts_everything_in_order_with_the_exact_arguments) {
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_THAT(CallsBetween("SDL_Init 32", "SDL_PollEvent"),
                ElementsAre("SDL_Init 32", "SDL_SetVideoMode 960 89 32 7", "SDL_ShowCursor 0",
                            "SDL_WM_SetCaption Halvorn :: Nimbrel null", "InitEngine 960 89",
                            "FMOD_System_Create", "FMOD_System_SetOutput system 12",
                            "FMOD_System_Init system 10 0 null",
                            "FMOD_System_CreateStream system Data/Musics/Quorrel.mp3 147785 null",
                            "new Scene1", "Load", "SetSpectrum",
                            "FMOD_System_PlaySound system -1 sound 0"));
    EXPECT_EQ(stage.calls.front(), "SDL_Init 32");
}

TEST_F(Main, Plays_every_frame_in_order) {
    PlayNimbrel();
    EXPECT_THAT(CallsBetween("SDL_PollEvent", "SDL_GL_SwapBuffers"),
                ElementsAre("SDL_PollEvent", "FMOD_System_Update system",
                            "FMOD_Channel_GetSpectrum channel 64 0 1", "Draw"));
    for (const char* call :
         {"SDL_PollEvent", "FMOD_System_Update system", "FMOD_Channel_GetSpectrum channel 64 0 1",
          "Draw", "SDL_GL_SwapBuffers"})
        EXPECT_EQ(Count(call), allFrames) << call;
}

TEST_F(Main, Shuts_down_in_order) {
    PlayNimbrel();
    EXPECT_THAT(CallsBetween("delete Scene1", "the end"),
                ElementsAre("delete Scene1", "FMOD_Sound_Release sound", "FMOD_System_Close system",
                            "FMOD_System_Release system", "SDL_Quit"));
}

TEST_F(Main, Scene_reads_the_spectrum_of_its_own_frame) {
    PlayNimbrel();
    EXPECT_THAT(stage.bands, ElementsAre(1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f));
}

TEST_F(Main, First_frame_lasts_as_long_as_starting_and_loading) {
    stage.loadTime = 3.5;
    PlayNimbrel();
    ASSERT_FALSE(stage.durations.empty());
    EXPECT_FLOAT_EQ(stage.durations.front(), 3.5f);
}

TEST_F(Main, Every_later_frame_is_given_the_duration_of_the_one_before) {
    stage.frameTime = 0.25;
    PlayNimbrel();
    ASSERT_GT(stage.durations.size(), 2u);
    stage.durations.erase(stage.durations.begin());
    EXPECT_THAT(stage.durations, Each(0.25f));
}

TEST_F(Main, Loading_does_not_count_towards_the_demo_time) {
    stage.loadTime = 1000.0;
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), allFrames);
}

TEST_F(Main, Ends_at_the_first_test_at_or_after_the_running_time) {
    stage.frameTime = 118.251;
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), 2); // the tests at 0 and 118.251 s pass, the one at 236.502 s does not
    stage = Stage();
    SetFakeTime(0.0);
    stage.frameTime = 118.253;
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), 1);
}

TEST_F(Main, Escape_ends_it_after_its_own_frame_was_drawn_and_swapped) {
    Deliver({KeyDown(SDLK_a), KeyDown(SDLK_ESCAPE)});
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_EQ(Count("SDL_PollEvent"), 2);
    EXPECT_EQ(Count("Draw"), 2);
    EXPECT_EQ(Count("SDL_GL_SwapBuffers"), 2);
    EXPECT_EQ(stage.calls.back(), "SDL_Quit");
}

TEST_F(Main, Every_key_but_Escape_is_ignored) {
    std::vector<SDL_Event> keys;
    for (SDLKey key : {SDLK_RETURN, SDLK_SPACE, SDLK_q, SDLK_F4, SDLK_LEFT})
        keys.push_back(KeyDown(key));
    Deliver(keys);
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), allFrames);
}

TEST_F(Main, Mouse_and_window_close_are_ignored) {
    SDL_Event motion = SDL_Event();
    motion.type = SDL_MOUSEMOTION;
    SDL_Event button = SDL_Event();
    button.type = SDL_MOUSEBUTTONDOWN;
    button.button.button = SDLK_ESCAPE; // the number alone must not count
    SDL_Event close = SDL_Event();
    close.type = SDL_QUIT;
    Deliver({motion, button, close});
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), allFrames);
}

TEST_F(Main, Letting_go_of_Escape_is_ignored) {
    SDL_Event release = KeyDown(SDLK_ESCAPE);
    release.type = SDL_KEYUP;
    Deliver({release});
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), allFrames);
}

TEST_F(Main, Takes_one_event_a_frame_from_a_burst) {
    Deliver({KeyDown(SDLK_a), KeyDown(SDLK_b), KeyDown(SDLK_c), KeyDown(SDLK_ESCAPE)});
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), 4);
}

TEST_F(Main, Without_any_event_the_unwritten_one_is_no_Escape) {
    stage.events = nullptr;
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), allFrames);
}

TEST_F(Main, Examines_the_last_event_again_when_none_is_pending) {
    // What an earlier poll left in the event counts although the poll reports nothing.
    stage.events = [](SDL_Event* event, int poll) {
        if (poll == 2)
            *event = KeyDown(SDLK_ESCAPE);
        return false;
    };
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), 2);
}

TEST_F(Main, Does_not_care_that_start_up_steps_report_failure) {
    // SDL_Init, SDL_SetVideoMode and InitEngine all report failure on this stage.
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_THAT(stage.calls, Contains("Load"));
    EXPECT_EQ(Count("Draw"), allFrames);
}
