#include "sound/mp3decoder.h"

#include "tests/sound/mp3_maker.h"
#include "tests/sound/whole_track.h"
#include "tests/support/scratch.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

namespace {

constexpr int left = 0;
constexpr int right = 1;

class Mp3Decoder : public ::testing::Test {
protected:
    DecodedMp3 Decode(const std::string& mp3) {
        WriteFile("track.mp3", mp3);
        return ::DecodeMp3("track.mp3");
    }

    ScratchDir scratch;
};

int At(const WholeTrack& track, std::size_t frame, int side) {
    return track.samples[2 * frame + static_cast<std::size_t>(side)];
}

std::size_t LoudestFrame(const WholeTrack& track, int side) {
    std::size_t loudest = 0;
    for (std::size_t frame = 0; frame < static_cast<std::size_t>(track.Frames()); ++frame)
        if (std::abs(At(track, frame, side)) > std::abs(At(track, loudest, side)))
            loudest = frame;
    return loudest;
}

/// Sum of the squared differences between the track's left side and the music's first channel,
/// of which the latter is taken `shift` frames later.
double Error(const WholeTrack& track, const Music& music, int shift) {
    double sum = 0.0;
    const auto last = static_cast<std::size_t>(track.Frames()) - 1;
    const auto step = static_cast<std::size_t>(music.channels);
    for (std::size_t frame = 1; frame < last; ++frame) {
        const std::size_t shifted = frame + static_cast<std::size_t>(shift); // wraps to earlier
        const double error = At(track, frame, left) - music.samples[shifted * step];
        sum += error * error;
    }
    return sum;
}

TEST_F(Mp3Decoder, Gives_every_length_exactly) {
    // Less than a frame of 1,152, one more and one less than whole frames, and far from any.
    for (const int frames : {500, 1151, 1152, 1153, 11520, 30001}) {
        const DecodedMp3 decoded = Decode(EncodeMp3(Sine(frames, 1000.0, 10000.0)));
        ASSERT_TRUE(decoded.track) << frames;
        EXPECT_EQ(decoded.track->Frames(), frames);
        EXPECT_FALSE(decoded.damaged) << frames;
    }
}

TEST_F(Mp3Decoder, Puts_a_click_where_it_was) {
    for (const std::size_t where : {0, 1, 600, 12345, 29999}) {
        Music music = Silence(30000);
        music.samples[2 * where + left] = 30000;
        const DecodedMp3 decoded = Decode(EncodeMp3(music));
        ASSERT_TRUE(decoded.track);
        EXPECT_EQ(LoudestFrame(*decoded.track, left), where);
    }
}

TEST_F(Mp3Decoder, Keeps_the_sides_apart) {
    Music music = Silence(20000);
    music.samples[2 * 5000 + left] = 30000;
    music.samples[2 * 9000 + right] = -30000;
    const DecodedMp3 decoded = Decode(EncodeMp3(music));
    ASSERT_TRUE(decoded.track);
    EXPECT_EQ(LoudestFrame(*decoded.track, left), 5000u);
    EXPECT_EQ(LoudestFrame(*decoded.track, right), 9000u);
}

TEST_F(Mp3Decoder, Starts_with_the_music_in_every_rate_and_in_mono) {
    for (const int rate : {22050, 32000, 44100, 48000}) {
        for (const int channels : {1, 2}) {
            const Music music = Sine(20000, 440.0, 16000.0, rate, channels);
            const DecodedMp3 decoded = Decode(EncodeMp3(music));
            ASSERT_TRUE(decoded.track) << rate << ' ' << channels;
            EXPECT_EQ(decoded.track->Rate(), rate);
            EXPECT_EQ(decoded.track->Frames(), 20000);
            // One frame too early or too late fits worse than none.
            const double error = Error(*decoded.track, music, 0);
            EXPECT_LT(error, Error(*decoded.track, music, -1) / 2.0) << rate << ' ' << channels;
            EXPECT_LT(error, Error(*decoded.track, music, 1) / 2.0) << rate << ' ' << channels;
        }
    }
}

TEST_F(Mp3Decoder, Gives_a_mono_file_to_both_sides) {
    const DecodedMp3 decoded = Decode(EncodeMp3(Sine(5000, 1000.0, 20000.0, 44100, 1)));
    ASSERT_TRUE(decoded.track);
    for (std::size_t frame = 0; frame < 5000; ++frame)
        ASSERT_EQ(At(*decoded.track, frame, left), At(*decoded.track, frame, right)) << frame;
}

TEST_F(Mp3Decoder, Reads_silence_as_zeros) {
    const DecodedMp3 decoded = Decode(EncodeMp3(Silence(5000)));
    ASSERT_TRUE(decoded.track);
    EXPECT_THAT(decoded.track->samples, ::testing::Each(0));
}

TEST_F(Mp3Decoder, Reads_over_tags_in_front_and_behind) {
    const std::string mp3 = EncodeMp3(Sine(12000, 700.0, 12000.0));
    const DecodedMp3 bare = Decode(mp3);
    const DecodedMp3 tagged = Decode(WithId3Tags(mp3));
    ASSERT_TRUE(bare.track && tagged.track);
    EXPECT_EQ(tagged.track->samples, bare.track->samples);
    EXPECT_FALSE(tagged.damaged);
}

TEST_F(Mp3Decoder, Keeps_the_padding_of_a_file_that_does_not_tell_how_much_there_is) {
    const DecodedMp3 decoded = Decode(EncodeMp3(Sine(11520, 1000.0, 10000.0), false));
    ASSERT_TRUE(decoded.track);
    // The encoder's delay and padding make it longer, by whole frames of 1,152.
    EXPECT_GT(decoded.track->Frames(), 11520);
    EXPECT_EQ(decoded.track->Frames() % 1152, 0);
    EXPECT_FALSE(decoded.damaged);
}

TEST_F(Mp3Decoder, Gives_a_truncated_file_as_far_as_it_goes) {
    const std::string mp3 = EncodeMp3(Sine(40000, 1000.0, 10000.0));
    const DecodedMp3 whole = Decode(mp3);
    const DecodedMp3 half = Decode(mp3.substr(0, mp3.size() / 2));
    ASSERT_TRUE(whole.track && half.track);
    EXPECT_TRUE(half.damaged);
    // Half of the bytes are half of the music at a constant bit rate, but for the frame with the
    // tag, the one that was cut through and the padding.
    EXPECT_NEAR(static_cast<double>(half.track->Frames()), 20000.0, 3 * 1152.0);
    // Nothing of what is there is moved. The last two frames lack what follows them.
    const std::size_t sure = 2 * (static_cast<std::size_t>(half.track->Frames()) - 2 * 1152);
    for (std::size_t i = 0; i < sure; ++i)
        ASSERT_EQ(half.track->samples[i], whole.track->samples[i]) << i;
}

TEST_F(Mp3Decoder, Calls_a_file_with_a_hole_damaged) {
    std::string mp3 = EncodeMp3(Sine(40000, 1000.0, 10000.0));
    mp3.erase(mp3.size() / 2, 4000);
    const DecodedMp3 decoded = Decode(mp3);
    ASSERT_TRUE(decoded.track);
    EXPECT_TRUE(decoded.damaged);
    EXPECT_LT(decoded.track->Frames(), 40000);
}

TEST_F(Mp3Decoder, Survives_garbage_in_the_middle) {
    const std::string mp3 = EncodeMp3(Sine(40000, 1000.0, 10000.0));
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::string broken = mp3;
        std::mt19937 random(seed);
        for (std::size_t i = broken.size() / 3; i < broken.size() / 3 + 3000; ++i)
            broken[i] = static_cast<char>(random() & 0xFF);
        const DecodedMp3 decoded = Decode(broken);
        ASSERT_TRUE(decoded.track) << seed;
        EXPECT_LE(decoded.track->Frames(), 40000) << seed;
    }
}

TEST_F(Mp3Decoder, Ends_where_another_track_of_another_rate_is_glued_on) {
    const std::string first = EncodeMp3(Sine(20000, 1000.0, 10000.0), false);
    const std::string second = EncodeMp3(Sine(20000, 1000.0, 10000.0, 48000), false);
    const DecodedMp3 alone = Decode(first);
    const DecodedMp3 both = Decode(first + second);
    ASSERT_TRUE(alone.track && both.track);
    EXPECT_EQ(both.track->Rate(), 44100);
    EXPECT_EQ(both.track->Frames(), alone.track->Frames());
}

TEST_F(Mp3Decoder, Finds_nothing_in_files_that_are_no_music) {
    EXPECT_FALSE(DecodeMp3("missing.mp3").track);
    EXPECT_FALSE(DecodeMp3(".").track) << "a folder";
    EXPECT_FALSE(DecodeMp3("").track);
    EXPECT_FALSE(Decode("").track) << "an empty file";
    EXPECT_FALSE(Decode(std::string(100000, '\0')).track);
    EXPECT_FALSE(Decode(std::string(100000, '\xFF')).track);
    std::string text;
    while (text.size() < 100000)
        text += "This is no music. ";
    EXPECT_FALSE(Decode(text).track);
    EXPECT_FALSE(Decode(EncodeMp3(Silence(20000)).substr(0, 50)).track) << "a cut first frame";
}

TEST_F(Mp3Decoder, Prints_nothing) {
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    DecodeMp3("missing.mp3");
    const std::string mp3 = EncodeMp3(Sine(40000, 1000.0, 10000.0));
    Decode(mp3.substr(0, mp3.size() / 2));
    Decode(mp3.substr(0, 5000) + std::string(3000, 'x') + mp3.substr(8000));
    Decode(std::string(100000, '\xFF'));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

} // namespace
