#include "sound/control.h"
#include "tests/sound/alsa_setup.h"
#include "tests/sound/mp3_maker.h"
#include "tests/support/scratch.h"

#include <fmod.h>
#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstring>
#include <new>
#include <stdexcept>
#include <thread>

using ::testing::Each;
using Vell::Sound::HandTime;

extern "C" int CountAcceptedNullHandles(void);

namespace {

constexpr unsigned mode =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;
constexpr int triangle = FMOD_DSP_FFT_WINDOW_TRIANGLE;

// A track's end is told to the nearest frame, that is up to half a frame early.
constexpr std::chrono::milliseconds rounding{1};

using Values = std::array<float, 64>;

/// A started system whose sounds get on by hand.
class Fmod : public ::testing::Test {
protected:
    Fmod() {
        Vell::Sound::PlayByHand(time);
        EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
        EXPECT_EQ(FMOD_System_SetOutput(system, FMOD_OUTPUTTYPE_ALSA), FMOD_OK);
        EXPECT_EQ(FMOD_System_Init(system, 2, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    }

    ~Fmod() override {
        FMOD_System_Release(system);
        Vell::Sound::SetOutputMaker({});
    }

    /// Opens a file of these bytes; the caller releases the sound.
    FMOD_SOUND* Open(const std::string& mp3, FMOD_RESULT expected = FMOD_OK) {
        WriteFile("track.mp3", mp3);
        FMOD_SOUND* sound = nullptr;
        EXPECT_EQ(FMOD_System_CreateStream(system, "track.mp3", mode, nullptr, &sound), expected);
        return sound;
    }

    FMOD_CHANNEL* Play(FMOD_SOUND* sound, FMOD_RESULT expected = FMOD_OK) {
        FMOD_CHANNEL* channel = nullptr;
        EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel), expected);
        return channel;
    }

    Values Spectrum(FMOD_CHANNEL* channel, FMOD_RESULT expected = FMOD_OK) {
        Values values;
        values.fill(-1.0f);
        EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), 64, 0, triangle), expected);
        return values;
    }

    ScratchDir scratch;
    std::shared_ptr<HandTime> time = std::make_shared<HandTime>();
    FMOD_SYSTEM* system = nullptr;
};

/// Half a second of a sine on the centre of bin 10, at half of full scale.
std::string HalfSecond() {
    return EncodeMp3(Sine(22050, 10 * 44100.0 / 128, 16384.0));
}

TEST(FmodHeader, Has_the_values_that_the_demo_passes) {
    EXPECT_EQ(FMOD_OK, 0);
    EXPECT_EQ(FMOD_OUTPUTTYPE_ALSA, 12);
    EXPECT_EQ(FMOD_INIT_NORMAL, 0);
    EXPECT_EQ(mode, 147785u);
    EXPECT_EQ(FMOD_LOOP_OFF, 1);
    EXPECT_EQ(FMOD_2D, 8);
    EXPECT_EQ(FMOD_SOFTWARE, 0x40);
    EXPECT_EQ(FMOD_CREATESAMPLE, 0x100);
    EXPECT_EQ(FMOD_ACCURATETIME, 0x4000);
    EXPECT_EQ(FMOD_UNIQUE, 0x20000);
    EXPECT_EQ(FMOD_CHANNEL_FREE, -1);
    EXPECT_EQ(FMOD_DSP_FFT_WINDOW_TRIANGLE, 1);
}

TEST(FmodHeader, Can_be_used_from_c_and_refuses_every_null_handle) {
    EXPECT_EQ(CountAcceptedNullHandles(), 0);
}

TEST_F(Fmod, Gives_the_spectrum_of_the_moment) {
    FMOD_SOUND* sound = Open(HalfSecond());
    FMOD_CHANNEL* channel = Play(sound);
    EXPECT_THAT(Spectrum(channel), Each(0.0f)) << "nothing is heard yet";
    time->MoveTo(0.25);
    EXPECT_EQ(FMOD_System_Update(system), FMOD_OK);
    EXPECT_NEAR(Spectrum(channel)[10], 0.5, 0.005) << "within what the MP3 changes, 1 %";
    time->MoveTo(0.5);
    EXPECT_THAT(Spectrum(channel), Each(0.0f)) << "at its end";
    time->MoveTo(60.0);
    EXPECT_THAT(Spectrum(channel), Each(0.0f)) << "it plays once";
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Counts_the_moment_in_the_tracks_own_rate) {
    for (const int rate : {22050, 44100, 48000}) {
        Music music = Silence(rate, rate); // one second with a click after half of it
        music.samples[static_cast<std::size_t>(rate)] = 30000;
        FMOD_SOUND* sound = Open(EncodeMp3(music));
        time->MoveTo(0.0);
        FMOD_CHANNEL* channel = Play(sound);
        time->MoveTo(0.49); // 10 ms before, or 220 frames: nothing of it but the coder's traces
        const float before = Spectrum(channel)[30];
        time->MoveTo(0.5 + 64.0 / rate);
        // In the middle of the block, where the weight is 1: 2 / 64 of its level, 30000 / 32768.
        EXPECT_NEAR(Spectrum(channel)[30], 0.0286, 0.006) << rate;
        EXPECT_LT(before, 0.003f) << rate;
        FMOD_Sound_Release(sound);
    }
}

TEST_F(Fmod, Gives_the_side_that_is_asked_for) {
    Music music = Sine(22050, 10 * 44100.0 / 128, 16384.0);
    for (std::size_t i = 1; i < music.samples.size(); i += 2)
        music.samples[i] = 0;
    FMOD_SOUND* sound = Open(EncodeMp3(music));
    FMOD_CHANNEL* channel = Play(sound);
    time->MoveTo(0.25);
    Values left{};
    Values right{};
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, left.data(), 64, 0, triangle), FMOD_OK);
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, right.data(), 64, 1, triangle), FMOD_OK);
    EXPECT_NEAR(left[10], 0.5, 0.005);
    EXPECT_NEAR(right[10], 0.0, 0.005);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Refuses_what_is_not_offered_and_gives_silence) {
    FMOD_SOUND* sound = Open(HalfSecond());
    FMOD_CHANNEL* channel = Play(sound);
    time->MoveTo(0.25);
    struct {
        int count, side, window;
    } const cases[] = {{64, -1, triangle}, {64, 2, triangle}, {64, 0, 5}, {64, 0, -1}};
    for (const auto& [count, side, window] : cases) {
        Values values;
        values.fill(-1.0f);
        EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), count, side, window),
                  FMOD_FAILED_ARGUMENT);
        EXPECT_THAT(values, Each(0.0f)) << side << ' ' << window;
    }
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Leaves_the_values_alone_when_their_number_makes_no_sense) {
    FMOD_SOUND* sound = Open(HalfSecond());
    FMOD_CHANNEL* channel = Play(sound);
    for (const int count : {-64, -1, 0, 1, 63, 100, 16384}) {
        Values values;
        values.fill(-1.0f);
        EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, values.data(), count, 0, triangle),
                  FMOD_FAILED_ARGUMENT);
        EXPECT_THAT(values, Each(-1.0f)) << count;
    }
    EXPECT_EQ(FMOD_Channel_GetSpectrum(channel, nullptr, 64, 0, triangle), FMOD_FAILED_ARGUMENT);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Hears_silence_on_a_channel_that_is_not_there) {
    EXPECT_THAT(Spectrum(nullptr, FMOD_FAILED_ARGUMENT), Each(0.0f));
}

TEST_F(Fmod, Reports_a_file_that_cannot_be_played_and_goes_on_without) {
    FMOD_SOUND* sound = reinterpret_cast<FMOD_SOUND*>(8); // to be overwritten
    EXPECT_EQ(FMOD_System_CreateStream(system, "missing.mp3", mode, nullptr, &sound),
              FMOD_FAILED_FILE);
    EXPECT_EQ(sound, nullptr);
    EXPECT_EQ(Open("", FMOD_FAILED_FILE), nullptr) << "an empty file";
    EXPECT_EQ(Open("This is no music.", FMOD_FAILED_FILE), nullptr);
    EXPECT_EQ(Play(nullptr, FMOD_FAILED_ARGUMENT), nullptr);
    EXPECT_EQ(FMOD_System_Update(system), FMOD_OK);
    EXPECT_EQ(FMOD_Sound_Release(nullptr), FMOD_FAILED_ARGUMENT);
}

TEST_F(Fmod, Reports_a_truncated_file_and_plays_what_there_is) {
    const std::string mp3 = HalfSecond();
    FMOD_SOUND* sound = Open(mp3.substr(0, mp3.size() / 2), FMOD_FAILED_DAMAGED);
    ASSERT_NE(sound, nullptr);
    FMOD_CHANNEL* channel = Play(sound);
    time->MoveTo(0.1);
    EXPECT_NEAR(Spectrum(channel)[10], 0.5, 0.005);
    time->MoveTo(0.4);
    EXPECT_THAT(Spectrum(channel), Each(0.0f)) << "past the cut";
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Plays_a_tagged_file) {
    FMOD_SOUND* sound = Open(WithId3Tags(HalfSecond()));
    FMOD_CHANNEL* channel = Play(sound);
    time->MoveTo(0.25);
    EXPECT_NEAR(Spectrum(channel)[10], 0.5, 0.005);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Refuses_other_ways_of_opening_and_playing) {
    WriteFile("track.mp3", HalfSecond());
    FMOD_SOUND* sound = nullptr;
    int info = 0;
    EXPECT_EQ(FMOD_System_CreateStream(system, "track.mp3", mode | 2, nullptr, &sound),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_CreateStream(system, "track.mp3", mode, &info, &sound),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_CreateStream(system, nullptr, mode, nullptr, &sound),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_CreateStream(system, "track.mp3", mode, nullptr, nullptr),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(sound, nullptr);

    sound = Open(HalfSecond());
    FMOD_CHANNEL* channel = nullptr;
    EXPECT_EQ(FMOD_System_PlaySound(system, 0, sound, 0, &channel), FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 1, &channel),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, nullptr),
              FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(channel, nullptr);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Wants_its_calls_in_order) {
    EXPECT_EQ(FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr), FMOD_FAILED_ORDER);
    EXPECT_EQ(FMOD_System_SetOutput(system, FMOD_OUTPUTTYPE_ALSA), FMOD_FAILED_ORDER);
    FMOD_SOUND* sound = Open(HalfSecond());
    EXPECT_EQ(FMOD_System_Close(system), FMOD_OK);
    EXPECT_EQ(FMOD_System_Close(system), FMOD_FAILED_ORDER);
    EXPECT_EQ(FMOD_System_Update(system), FMOD_FAILED_ORDER);
    EXPECT_EQ(Open(HalfSecond(), FMOD_FAILED_ORDER), nullptr);
    EXPECT_EQ(Play(sound, FMOD_FAILED_ORDER), nullptr);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Starts_with_one_to_64_channels_and_no_extras) {
    FMOD_System_Close(system);
    int extra = 0;
    for (const int channels : {-1, 0, 65})
        EXPECT_EQ(FMOD_System_Init(system, channels, FMOD_INIT_NORMAL, nullptr),
                  FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_Init(system, 10, 1, nullptr), FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, &extra), FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_SetOutput(system, 13), FMOD_FAILED_ARGUMENT);
    EXPECT_EQ(FMOD_System_Init(system, 64, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
}

TEST_F(Fmod, Takes_a_channel_again_when_its_track_is_over) {
    FMOD_SOUND* sound = Open(HalfSecond());
    FMOD_CHANNEL* first = Play(sound);
    FMOD_CHANNEL* second = Play(sound);
    EXPECT_NE(first, second);
    EXPECT_EQ(Play(sound, FMOD_FAILED_RESOURCES), nullptr) << "both channels are playing";
    time->MoveTo(0.5);
    EXPECT_EQ(Play(sound), first);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Offers_as_many_channels_as_the_last_start_asked_for) {
    FMOD_System_Close(system);
    EXPECT_EQ(FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
    FMOD_SOUND* sound = Open(HalfSecond());
    EXPECT_NE(Play(sound), nullptr);
    EXPECT_EQ(Play(sound, FMOD_FAILED_RESOURCES), nullptr);
    FMOD_Sound_Release(sound);
}

TEST_F(Fmod, Falls_silent_when_the_sound_is_released_or_the_system_closed) {
    FMOD_SOUND* released = Open(HalfSecond());
    FMOD_SOUND* kept = Open(HalfSecond());
    FMOD_CHANNEL* first = Play(released);
    FMOD_CHANNEL* second = Play(kept);
    time->MoveTo(0.25);
    EXPECT_EQ(FMOD_Sound_Release(released), FMOD_OK);
    EXPECT_THAT(Spectrum(first), Each(0.0f));
    EXPECT_NEAR(Spectrum(second)[10], 0.5, 0.005) << "another sound";
    EXPECT_EQ(FMOD_System_Close(system), FMOD_OK);
    EXPECT_THAT(Spectrum(second), Each(0.0f));
    FMOD_Sound_Release(kept);
}

TEST_F(Fmod, Lets_a_sound_outlive_its_system) {
    FMOD_SOUND* sound = Open(HalfSecond());
    Play(sound);
    EXPECT_EQ(FMOD_System_Release(system), FMOD_OK);
    EXPECT_EQ(FMOD_Sound_Release(sound), FMOD_OK);
    EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
}

TEST_F(Fmod, Lets_no_exception_out) {
    FMOD_SOUND* sound = Open(HalfSecond());
    Vell::Sound::SetOutputMaker(
        [](const auto&) -> std::unique_ptr<Vell::Sound::Output> { throw std::bad_alloc(); });
    EXPECT_EQ(Play(sound, FMOD_FAILED_RESOURCES), nullptr);
    Vell::Sound::PlayByHand(time);
    EXPECT_NE(Play(sound), nullptr) << "the channel is still free";
    FMOD_Sound_Release(sound);
}

/// The same over ALSA, whose device is the test's own.
class FmodOnAlsa : public Fmod {
protected:
    FmodOnAlsa() { Vell::Sound::SetOutputMaker({}); }

    /// Waits for the channel to fall silent after it was heard; false after five seconds.
    bool PlaysToTheEnd(FMOD_CHANNEL* channel) {
        bool heard = false;
        for (int i = 0; i < 5000; ++i) {
            const bool silent = Spectrum(channel)[10] == 0.0f;
            if (heard && silent)
                return true;
            heard = heard || !silent;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return false;
    }
};

TEST_F(FmodOnAlsa, Sends_the_device_a_click_at_its_place) {
    const AlsaSetup setup(fileDevice);
    Music music = Sine(22050, 10 * 44100.0 / 128, 1000.0);
    music.samples[2 * 12'345] = 32000;
    FMOD_SOUND* sound = Open(EncodeMp3(music));
    EXPECT_TRUE(PlaysToTheEnd(Play(sound)));
    FMOD_System_Close(system);
    const std::string bytes = ReadFile("out.raw");
    ASSERT_EQ(bytes.size(), 22050u * 4);
    std::size_t loudest = 0;
    int level = 0;
    for (std::size_t frame = 0; frame < 22050; ++frame) {
        std::int16_t sample = 0;
        std::memcpy(&sample, &bytes[4 * frame], sizeof(sample));
        if (sample > level) {
            level = sample;
            loudest = frame;
        }
    }
    EXPECT_EQ(loudest, 12'345u);
    FMOD_Sound_Release(sound);
}

TEST_F(FmodOnAlsa, Keeps_the_spectrum_going_without_a_device_and_prints_nothing) {
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    {
        const AlsaSetup setup(missingCard);
        FMOD_SOUND* sound = Open(HalfSecond());
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(PlaysToTheEnd(Play(sound)));
        EXPECT_GE(std::chrono::steady_clock::now() - start,
                  std::chrono::milliseconds(500) - rounding);
        FMOD_Sound_Release(sound);
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(FmodOnAlsa, Starts_and_stops_fifty_times) {
    FMOD_System_Release(system);
    WriteFile("track.mp3", HalfSecond());
    for (int round = 0; round < 50; ++round) {
        const AlsaSetup setup(round % 2 == 0 ? nullDevice : missingCard);
        EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
        EXPECT_EQ(FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr), FMOD_OK);
        FMOD_SOUND* sound = nullptr;
        EXPECT_EQ(FMOD_System_CreateStream(system, "track.mp3", mode, nullptr, &sound), FMOD_OK);
        FMOD_CHANNEL* channel = Play(sound);
        Spectrum(channel);
        // Ended by each of the calls that can end it.
        if (round % 3 == 0)
            FMOD_Sound_Release(sound);
        if (round % 3 <= 1)
            FMOD_System_Close(system);
        EXPECT_EQ(FMOD_System_Release(system), FMOD_OK);
        if (round % 3 != 0)
            FMOD_Sound_Release(sound);
    }
    EXPECT_EQ(FMOD_System_Create(&system), FMOD_OK);
}

} // namespace
