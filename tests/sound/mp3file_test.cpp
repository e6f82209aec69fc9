#include "sound/mp3file.h"

#include "tests/sound/mp3_maker.h"
#include "tests/sound/whole_track.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <random>

#include <sys/stat.h>

using Vell::Sound::Mp3File;

namespace {

constexpr int frames = 40'000;

class Mp3FileTest : public ::testing::Test {
protected:
    /// Holds the file against one that is decoded from the first byte to the last.
    void ExpectAsDecodedInOneGo(const std::string& bytes) {
        WriteFile("track.mp3", bytes);
        const DecodedMp3 expected = DecodeInOneGo("track.mp3");
        const DecodedMp3 played = DecodeMp3("track.mp3");
        ASSERT_EQ(played.track == nullptr, expected.track == nullptr);
        if (!expected.track)
            return;
        EXPECT_EQ(played.track->Rate(), expected.track->Rate());
        EXPECT_EQ(played.track->Frames(), expected.track->Frames());
        EXPECT_EQ(played.damaged, expected.damaged);
        EXPECT_TRUE(played.track->samples == expected.track->samples);
    }

    ScratchDir scratch;
    const std::string mp3 = EncodeMp3(Sine(frames, 1000.0, 10000.0));
};

/// `mp3` whose tag tells of `count` MPEG frames.
std::string WithFrameCount(std::string mp3, unsigned count) {
    // "Xing" or "Info", four bytes of flags, and the count, most significant byte first.
    const std::size_t tag = std::min(mp3.find("Xing"), mp3.find("Info"));
    for (std::size_t i = 0; i < 4; ++i)
        mp3[tag + 8 + i] = static_cast<char>(count >> (24 - 8 * i) & 0xFF);
    return mp3;
}

TEST_F(Mp3FileTest, Knows_the_length_and_that_nothing_is_damaged) {
    WriteFile("track.mp3", mp3);
    const auto file = Mp3File::Open("track.mp3");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Rate(), 44100);
    EXPECT_EQ(file->Frames(), frames);
    EXPECT_FALSE(file->Damaged());
}

TEST_F(Mp3FileTest, Knows_the_length_of_every_file_as_if_it_had_decoded_it) {
    ExpectAsDecodedInOneGo(mp3);
    ExpectAsDecodedInOneGo(WithId3Tags(mp3));
    ExpectAsDecodedInOneGo(EncodeMp3(Sine(frames, 1000.0, 10000.0, 22050, 1)));
    ExpectAsDecodedInOneGo(EncodeMp3(Sine(frames, 1000.0, 10000.0), false));
    ExpectAsDecodedInOneGo(EncodeMp3(Sine(200, 1000.0, 10000.0)));
    for (const std::size_t kept : {mp3.size() - 1, mp3.size() / 2, mp3.size() / 10})
        ExpectAsDecodedInOneGo(mp3.substr(0, kept));
    const std::string other = EncodeMp3(Sine(20000, 1000.0, 10000.0, 48000), false);
    ExpectAsDecodedInOneGo(mp3 + other);
    ExpectAsDecodedInOneGo(mp3 + mp3);
}

TEST_F(Mp3FileTest, Reads_over_the_same_damage_as_if_it_had_decoded_it) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::string broken = mp3;
        const std::size_t place = 2000 + random() % (mp3.size() - 8000);
        if (seed % 2 == 0)
            broken.erase(place, random() % 4000);
        else
            for (std::size_t i = place; i < place + 3000; ++i)
                broken[i] = static_cast<char>(random() & 0xFF);
        ExpectAsDecodedInOneGo(broken);
    }
}

TEST_F(Mp3FileTest, Believes_no_tag_that_lies_about_the_length) {
    // The file has 40,000 / 1,152 = 35 MPEG frames and one or two of padding.
    for (const unsigned count : {1u, 5u, 30u, 1'000u, 1'000'000'000u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(count);
        ExpectAsDecodedInOneGo(WithFrameCount(mp3, count));
    }
    WriteFile("track.mp3", WithFrameCount(mp3, 1'000'000));
    const auto file = Mp3File::Open("track.mp3");
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->Damaged());
    EXPECT_NEAR(static_cast<double>(file->Frames()), frames, 3 * 1152.0);
}

TEST_F(Mp3FileTest, Plays_on_when_the_file_is_removed) {
    WriteFile("track.mp3", mp3);
    const auto whole = DecodeMp3("track.mp3");
    const auto file = Mp3File::Open("track.mp3");
    std::filesystem::remove("track.mp3");
    WriteFile("track.mp3", "another");
    Vell::Sound::Mp3Decoder decoder(file->Descriptor());
    std::vector<std::int16_t> samples(2 * frames);
    EXPECT_EQ(decoder.Read(samples), frames);
    EXPECT_TRUE(samples == whole.track->samples);
}

TEST_F(Mp3FileTest, Refuses_what_is_no_regular_file_at_once) {
    ASSERT_EQ(mkfifo("pipe.mp3", 0600), 0);
    EXPECT_EQ(Mp3File::Open("pipe.mp3"), nullptr);
    EXPECT_EQ(Mp3File::Open("."), nullptr);
    EXPECT_EQ(Mp3File::Open("/dev/zero"), nullptr);
    EXPECT_EQ(Mp3File::Open("missing.mp3"), nullptr);
}

} // namespace
