#include "sound/device_alsa.h"

#include "sound/output_device.h"
#include "tests/sound/alsa_setup.h"
#include "tests/sound/whole_track.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Vell::Sound::AlsaDevice;
using Vell::Sound::Device;
using Vell::Sound::DeviceOutput;
using Vell::Sound::SteadyTime;
using Vell::Sound::Track;

namespace {

// A track's end is told to the nearest frame, that is up to half a frame early.
constexpr milliseconds rounding{1};

/// A card that takes only float samples, and the converter that the full configuration has.
constexpr const char* pickyDevice = R"(
pcm.!default { type lfloat slave { pcm { type file slave.pcm { type null } file out.raw format raw }
                                   format S16_LE } }
pcm.plug { @args [ SLAVE ] @args.SLAVE { type string } type plug slave.pcm $SLAVE }
)";

/// A card that runs at 48 kHz only, behind the converter that a desktop's default device has.
constexpr const char* desktopDevice = R"(
pcm.!default { type plug
               slave { pcm { type file slave.pcm { type null } file out.raw format raw }
                       rate 48000 } }
)";

/// A device that opens well and fails when its buffer is full: its file cannot be written.
constexpr const char* brokenDevice = R"(
pcm.!default { type file slave.pcm { type null } file "missing/out.raw" format raw }
)";

/// A card that plays in real time; see paced_pcm.c for the settings.
std::string PacedDevice(const std::string& settings) {
    return std::string("pcm_type.paced { lib \"") + PACED_PCM_LIBRARY + "\" }\n" +
           "pcm.!default { type paced file out.raw " + settings + " }";
}

class Alsa : public ::testing::Test {
protected:
    /// Plays a track of a quiet sine to its end and returns what the device wrote into "out.raw".
    std::vector<std::int16_t> Play(const std::shared_ptr<const Track>& track) {
        {
            const DeviceOutput output(track, std::make_unique<AlsaDevice>(), SteadyTime);
            const auto end = steady_clock::now() + std::chrono::seconds(5);
            while (output.FramesHeard() < track->Frames() && steady_clock::now() < end)
                std::this_thread::sleep_for(milliseconds(5));
        }
        const std::string bytes = ReadFile("out.raw");
        std::vector<std::int16_t> samples(bytes.size() / 2);
        std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
        return samples;
    }

    ScratchDir scratch;
};

std::shared_ptr<const WholeTrack> SineTrack(int rate, int frames) {
    std::vector<std::int16_t> samples;
    for (int frame = 0; frame < frames; ++frame) {
        const double sample = 10000.0 * std::sin(frame * 0.0628); // about 100 frames to the wave
        samples.push_back(static_cast<std::int16_t>(std::lround(sample)));
        samples.push_back(static_cast<std::int16_t>(std::lround(-0.5 * sample)));
    }
    return std::make_shared<WholeTrack>(rate, std::move(samples));
}

TEST_F(Alsa, Gets_exactly_the_samples_of_the_track) {
    const AlsaSetup setup(fileDevice);
    for (const int frames : {10, 441, 4411, 20'001}) { // from far below a period upwards
        const auto track = SineTrack(44100, frames);
        EXPECT_EQ(Play(track), track->samples) << frames;
        std::filesystem::remove("out.raw");
    }
}

TEST_F(Alsa, Takes_every_rate_of_an_mp3) {
    const AlsaSetup setup(nullDevice);
    for (const int rate : {8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000}) {
        AlsaDevice device;
        ASSERT_TRUE(device.Open(rate)) << rate;
        // 10 ms and 100 ms, as near as whole frames come.
        EXPECT_NEAR(static_cast<double>(device.PeriodFrames()), rate / 100.0, 1.0);
        EXPECT_NEAR(static_cast<double>(device.BufferFrames()), rate / 10.0, 10.0);
    }
}

TEST_F(Alsa, Converts_for_a_card_of_another_rate) {
    const AlsaSetup setup(desktopDevice);
    const std::vector<std::int16_t> received = Play(SineTrack(22050, 11025)); // half a second
    // Half a second at 48 kHz, give or take the converter's last period of 10 ms.
    EXPECT_NEAR(static_cast<double>(received.size()) / 2.0, 24'000.0, 480.0 + 480.0);
}

TEST_F(Alsa, Falls_back_on_the_converter_for_a_card_of_another_format) {
    const AlsaSetup setup(pickyDevice);
    const auto track = SineTrack(44100, 4410);
    EXPECT_EQ(Play(track), track->samples);
}

TEST_F(Alsa, Goes_without_a_card) {
    for (const char* config :
         {missingCard, "", "this is no configuration {", "pcm.!default { type no_such_plugin }"}) {
        const AlsaSetup setup(config);
        EXPECT_FALSE(AlsaDevice().Open(44100)) << config;
    }
}

TEST_F(Alsa, Tells_when_a_device_fails_on_the_way) {
    const AlsaSetup setup(brokenDevice);
    AlsaDevice device;
    ASSERT_TRUE(device.Open(44100)) << "the failure is to come later";
    const std::vector<std::int16_t> silence(2 * 441);
    Device::Outcome outcome = Device::Outcome::Taken;
    for (int i = 0; i < 100 && outcome == Device::Outcome::Taken; ++i)
        outcome = device.Write(silence.data(), 441).outcome;
    EXPECT_EQ(outcome, Device::Outcome::Lost);
}

TEST_F(Alsa, Is_replaced_by_silence_when_it_fails_on_the_way) {
    const AlsaSetup setup(brokenDevice);
    const auto track = SineTrack(44100, 13'230); // 300 ms; the device's buffer lasts for 100
    const auto start = steady_clock::now();
    const DeviceOutput output(track, std::make_unique<AlsaDevice>(), SteadyTime);
    while (output.FramesHeard() < track->Frames()) {
        ASSERT_LT(steady_clock::now() - start, milliseconds(5000));
        std::this_thread::sleep_for(milliseconds(1));
    }
    EXPECT_GE(steady_clock::now() - start, milliseconds(300) - rounding);
}

TEST_F(Alsa, Prints_nothing_whatever_happens) {
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    AlsaDevice().Open(44100); // with this machine's own configuration
    for (const char* config : {missingCard, brokenDevice, "", "this is no configuration {"}) {
        const AlsaSetup setup(config);
        const DeviceOutput output(SineTrack(44100, 8'820), std::make_unique<AlsaDevice>(),
                                  SteadyTime);
        std::this_thread::sleep_for(milliseconds(20));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(Alsa, Feeds_a_card_that_plays_in_real_time) {
    const AlsaSetup setup(PacedDevice(""));
    const auto track = SineTrack(44100, 22'050);
    const auto start = steady_clock::now();
    EXPECT_EQ(Play(track), track->samples);
    EXPECT_GE(steady_clock::now() - start, milliseconds(500) - rounding);
}

TEST_F(Alsa, Counts_as_heard_only_what_has_left_the_card) {
    constexpr int latency = 8'820; // 200 ms, such as of a wireless loudspeaker
    const AlsaSetup setup(PacedDevice("latency " + std::to_string(latency)));
    const auto start = steady_clock::now();
    const DeviceOutput output(SineTrack(44100, 44'100), std::make_unique<AlsaDevice>(), SteadyTime);
    std::int64_t heard = output.FramesHeard();
    EXPECT_LT(heard, 0) << "PlaySound does not wait for as long as that";
    while (heard < 4'410) {
        const std::chrono::duration<double> passed = steady_clock::now() - start;
        ASSERT_LT(passed.count(), 5.0);
        ASSERT_LE(static_cast<double>(heard), passed.count() * 44'100.0 - latency + 1.0);
        std::this_thread::sleep_for(milliseconds(1));
        heard = output.FramesHeard();
    }
}

TEST_F(Alsa, Goes_on_with_the_clock_after_the_card_ran_dry) {
    const AlsaSetup setup(PacedDevice("dry_at 8820")); // what it holds then is lost
    const auto track = SineTrack(44100, 22'050);
    const std::vector<std::int16_t> received = Play(track);
    // The card was fed up to a buffer ahead of the 8,820 frames, and again from those on. Where
    // exactly depends on the machine; the frames repeat every 100.5, so a seam shows.
    ASSERT_GT(received.size(), track->samples.size());
    EXPECT_LE(received.size(), track->samples.size() + 2 * 4'410);
    EXPECT_TRUE(std::equal(received.begin(), received.begin() + 2 * 8'820, track->samples.begin()));
    const std::ptrdiff_t rest = 2 * (22'050 - 8'820 - 4'410);
    EXPECT_TRUE(std::equal(received.end() - rest, received.end(), track->samples.end() - rest));
}

TEST_F(Alsa, Keeps_time_when_the_card_is_unplugged) {
    const AlsaSetup setup(PacedDevice("gone_at 8820"));
    const auto start = steady_clock::now();
    const auto track = SineTrack(44100, 22'050);
    const std::vector<std::int16_t> received = Play(track);
    EXPECT_GE(steady_clock::now() - start, milliseconds(500) - rounding);
    EXPECT_LT(steady_clock::now() - start, milliseconds(5000)) << "came to its end";
    ASSERT_EQ(received.size(), 2 * 8'820u); // whole periods of 441
    EXPECT_TRUE(std::equal(received.begin(), received.end(), track->samples.begin()));
}

TEST_F(Alsa, Is_left_by_time_and_at_the_end_when_the_card_stands_still) {
    const AlsaSetup setup(PacedDevice("stall_at 4410")); // its timer goes on
    const auto track = SineTrack(44100, 44'100);
    const auto start = steady_clock::now();
    {
        const DeviceOutput output(track, std::make_unique<AlsaDevice>(), SteadyTime);
        std::this_thread::sleep_for(milliseconds(400));
    }
    EXPECT_LT(steady_clock::now() - start, milliseconds(400 + 1000)) << "ends while it waits";
    EXPECT_LE(ReadFile("out.raw").size(), 4u * (4'410 + 4'410)) << "no more than a buffer ahead";
    Play(track);
    EXPECT_LT(steady_clock::now() - start, milliseconds(4000)) << "the clock goes on without it";
}

TEST_F(Alsa, Can_be_opened_again_after_it_was_not_there) {
    AlsaDevice device;
    {
        const AlsaSetup setup(missingCard);
        EXPECT_FALSE(device.Open(44100));
    }
    const AlsaSetup setup(nullDevice);
    EXPECT_TRUE(device.Open(44100));
}

} // namespace
