#include "tools/doctor/sound.h"

#include "tests/support/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

using Doctor::Row;
using Doctor::State;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using Tools::FactNumber;
using Tools::IsolatedRun;

namespace {

/// Looks at a machine whose ALSA knows nothing but what `setup` says.
class Sound : public ::testing::Test {
protected:
    static IsolatedRun LookWith(const std::string& setup) {
        WriteFile("alsa.conf", setup + "\n");
        const std::string path = (std::filesystem::current_path() / "alsa.conf").string();
        constexpr double patience = 20.0;
        return Tools::RunIsolated(
            [&](const Tools::Report& report) {
                setenv("ALSA_CONFIG_PATH", path.c_str(), 1);
                Doctor::CollectSoundFacts(report);
            },
            patience);
    }

    ScratchDir scratch;
};

} // namespace

TEST_F(Sound, Without_a_device_is_silence) {
    for (const char* setup : {"", "pcm.!default { type hw card 29 device 0 }"}) {
        const Row row = Doctor::SoundRow(LookWith(setup));
        EXPECT_EQ(row.state, State::Warn);
        EXPECT_EQ(row.finding, "there is no sound device: the demo plays in silence") << setup;
        EXPECT_THAT(row.advice, HasSubstr("libasound2-plugins"));
    }
}

TEST_F(Sound, On_a_device_that_drops_everything_is_silence) {
    const Row row = Doctor::SoundRow(LookWith("pcm.!default { type null }"));
    EXPECT_EQ(row.state, State::Warn);
    EXPECT_THAT(row.finding, HasSubstr("drops what it is given"));
}

TEST_F(Sound, Device_is_given_silence_and_nothing_else) {
    const Row row = Doctor::SoundRow(
        LookWith("pcm.!default { type file slave.pcm { type null } file out.raw format raw }"));
    EXPECT_EQ(row.state, State::Ok);
    EXPECT_THAT(row.finding, HasSubstr("a file"));
    const std::string heard = ReadFile("out.raw");
    EXPECT_FALSE(heard.empty());
    EXPECT_EQ(heard.find_first_not_of('\0'), std::string::npos);
}

#ifdef PACED_PCM_LIBRARY // not beside a foreign sound library
TEST_F(Sound, Delay_is_that_of_the_full_buffer_and_of_what_lies_behind_it) {
    constexpr int latency = 8820; // frames: 200 ms at 44.1 kHz
    const IsolatedRun look = LookWith(std::string("pcm_type.paced { lib \"") + PACED_PCM_LIBRARY +
                                      "\" }\npcm.!default { type paced file out.raw latency " +
                                      std::to_string(latency) + " }");
    ASSERT_TRUE(look.ending.InOrder()) << look.ending.InWords();
    // The demo's buffer of 100 ms before it. Less by what was played between writing and asking,
    // which takes longer where others are at work.
    EXPECT_GT(FactNumber(look.facts, "delay_ms"), 250);
    EXPECT_LE(FactNumber(look.facts, "delay_ms"), 300);
    EXPECT_THAT(Doctor::SoundRow(look).finding, MatchesRegex(".*heard [0-9]+ ms after.*"));
    EXPECT_EQ(Doctor::SoundRow(look).state, State::Ok);
}
#endif

TEST(SoundRow, Device_that_another_program_holds_is_told) {
    IsolatedRun look;
    look.facts = {{"no_device", "Device or resource busy"}, {"busy", "1"}};
    EXPECT_THAT(Doctor::SoundRow(look).finding, HasSubstr("another program holds"));
}

TEST(SoundRow, Device_that_does_not_take_the_music_is_told) {
    IsolatedRun look;
    look.facts = {{"type", "HW"}, {"chain", "Hardware PCM card 0"}, {"card", "HDA Intel"}};
    EXPECT_EQ(Doctor::SoundRow(look).finding,
              "a card (HDA Intel) takes no 16 bit stereo at 44.1 kHz: the "
              "demo plays in silence");
}

TEST(SoundRow, Sound_servers_are_named) {
    IsolatedRun look;
    look.facts = {{"type", "IOPLUG"}, {"delay_ms", "120"}, {"card", ""}};
    look.facts["chain"] = "ALSA <-> PulseAudio PCM I/O Plugin";
    EXPECT_EQ(Doctor::SoundRow(look).finding,
              "the sound server PulseAudio, heard 120 ms after it is handed over");
    look.facts["chain"] = "ALSA <-> PipeWire PCM I/O Plugin";
    EXPECT_THAT(Doctor::SoundRow(look).finding, HasSubstr("PipeWire"));
    look.facts["chain"] = "Something new";
    EXPECT_THAT(Doctor::SoundRow(look).finding, HasSubstr("a device of the kind IOPLUG"));
}

TEST(SoundRow, Sound_server_that_hangs_is_told) {
    IsolatedRun look;
    look.ending.timedOut = true;
    EXPECT_EQ(Doctor::SoundRow(look).state, State::Warn);
    EXPECT_EQ(Doctor::SoundRow(look).finding, "looking at the sound device gave no answer");
}
