// The start-up, the frame loop and the shutdown of the production, call by call.

#include "tests/demo/main_stage.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;

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
            if (static_cast<std::size_t>(poll) > events.size())
                return false;
            *event = events[static_cast<std::size_t>(poll) - 1];
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

TEST_F(Main, Calls_nothing_else) {
    PlayNimbrel();
    constexpr std::size_t startUp = 13;
    constexpr std::size_t aFrame = 5;
    constexpr std::size_t shutdown = 5;
    EXPECT_EQ(stage.calls.size(),
              startUp + static_cast<std::size_t>(allFrames) * aFrame + shutdown);
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

TEST_F(Main, First_frame_counts_from_the_caption_on) {
    stage.windowTime = 100.0; // before it
    stage.engineTime = 0.5;
    stage.loadTime = 3.5;
    stage.playTime = 0.25;
    PlayNimbrel();
    ASSERT_FALSE(stage.durations.empty());
    EXPECT_FLOAT_EQ(stage.durations.front(), 4.25f);
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

TEST_F(Main, Demo_time_starts_when_playback_has_started) {
    stage.playTime = 1000.0;
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

TEST_F(Main, Compares_the_running_time_as_a_double) {
    // The clock's float nearest to 118.252 is 118.251998901..., which is still less; the next one,
    // 118.252006531..., is not. The nearer to 118.252003 of the two is the second.
    stage.frameTime = 118.252;
    PlayNimbrel();
    EXPECT_EQ(Count("Draw"), 2);
    stage = Stage();
    SetFakeTime(0.0);
    stage.frameTime = 118.252003;
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

TEST_F(Main, Does_not_care_that_SDL_reports_failure) {
    // SDL_Init and SDL_SetVideoMode do so on this stage.
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_THAT(stage.calls, Contains("Load"));
    EXPECT_EQ(Count("Draw"), allFrames);
}

// The engine is the one that is asked whether there is OpenGL: no sound, no scene and no frame
// then.
TEST_F(Main, Ends_in_order_at_once_when_the_engine_does_not_start) {
    stage.engineResult = false;
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_THAT(stage.calls,
                ElementsAre("SDL_Init 32", "SDL_SetVideoMode 960 89 32 7", "SDL_ShowCursor 0",
                            "SDL_WM_SetCaption Halvorn :: Nimbrel null", "InitEngine 960 89",
                            "SDL_Quit"));
}

TEST_F(Main, Plays_to_its_end_without_sound_when_every_FMOD_call_fails) {
    stage.soundResult = static_cast<FMOD_RESULT>(1); // whatever it is called
    EXPECT_EQ(PlayNimbrel(), 0);
    EXPECT_EQ(Count("Draw"), allFrames);
    EXPECT_THAT(stage.calls, Contains("FMOD_System_PlaySound null -1 null 0"));
    EXPECT_THAT(CallsBetween("delete Scene1", "the end"),
                ElementsAre("delete Scene1", "FMOD_Sound_Release null", "FMOD_System_Close null",
                            "FMOD_System_Release null", "SDL_Quit"));
}
