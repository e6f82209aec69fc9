#include "art/music/master.h"
#include "art/music/mixer.h"
#include "art/music/soundfile.h"

#include "tests/art/music_signal.h"
#include "tests/sound/whole_track.h"
#include "tests/support/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

Music::Stereo Song(const char* text, std::string& message) {
    Music::Score score;
    if (!Music::ParseScore(text, score, message))
        return {};
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    const std::size_t frames = Music::FrameAt(score.TimeOfBar(score.bars + 1));
    Music::Mix mix = Music::PlayTracks(
        score, pulse, frames, [](int, int) {}, message);
    Music::MasterReport report;
    return message.empty() ? Master(score, pulse, std::move(mix), report) : Music::Stereo();
}

const char* const songText = R"(
tempo 120
bars 4
harmony 1 Em C G D
steps four X...X...X...X...
line run .111.111
instrument k kick
instrument b bass
instrument p synth
    voices 5  detune 12
track kick k
    key 1  flip 1  gain -6
    play 1-4 four at C2
track bass b
    flip 1  gain -14  lowest E1  duck 0.5
    play 1-4 run
track pad p
    gain -22  lowest C4  reverb -12  delay -14  duck 0.5  chorus 0.3  orbit 1
    play 1-4 four
    curve lowpass 1 400  4 4000
master
    loudness -16  ceiling -1.5  pulse_first 2  pulse_last 3  pulse_scene 3
)";

} // namespace

TEST(WavFile, Keeps_24_bits) {
    const ScratchDir scratch;
    Music::Stereo signal = Signal::Both(Signal::Sine(440, 0.9, 0.1));
    signal.right = Signal::Sine(100, 0.3, 0.1);
    ASSERT_TRUE(Music::WriteWav("a.wav", signal));
    Music::Stereo read;
    ASSERT_TRUE(Music::ReadWav("a.wav", read));
    ASSERT_EQ(read.Frames(), signal.Frames());
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        ASSERT_NEAR(read.left[i], signal.left[i], 2.0 / 8388608.0);
        ASSERT_NEAR(read.right[i], signal.right[i], 2.0 / 8388608.0);
    }
}

TEST(WavFile, Refuses_what_is_none) {
    const ScratchDir scratch;
    Music::Stereo read;
    EXPECT_FALSE(Music::ReadWav("missing.wav", read));
    WriteFile("short.wav", "RIFF");
    EXPECT_FALSE(Music::ReadWav("short.wav", read));
    WriteFile("text.wav", std::string(200, 'x'));
    EXPECT_FALSE(Music::ReadWav("text.wav", read));
    Music::WriteWav("whole.wav", Signal::Both(Signal::Sine(440, 0.9, 0.1)));
    const std::string whole = ReadFile("whole.wav");
    WriteFile("headless.wav", whole.substr(0, 36) + "list" + std::string(9, '\xff'));
    EXPECT_FALSE(Music::ReadWav("headless.wav", read));
    EXPECT_EQ(read.Frames(), 0U);
}

TEST(Mp3File, Decodes_to_the_exact_length) {
    const ScratchDir scratch;
    for (std::size_t frames : {44100U, 50000U, 1152U * 40U}) {
        Music::Stereo signal = Signal::Both(Signal::Sine(440, 0.5, 2.0));
        signal.left.resize(frames);
        signal.right.resize(frames);
        ASSERT_TRUE(Music::WriteMp3("a.mp3", signal, 192));
        const auto decoded = DecodeMp3("a.mp3");
        ASSERT_NE(decoded.track, nullptr);
        EXPECT_FALSE(decoded.damaged);
        EXPECT_EQ(decoded.track->Frames(), static_cast<std::int64_t>(frames));
    }
}

TEST(Mp3File, Lets_the_slowest_movements_through) {
    const ScratchDir scratch;
    // A plateau that changes its sign every half second, as the picture's pulse does.
    Music::Stereo signal = Signal::Both(Signal::Sine(1.0, 0.3, 3.0));
    ASSERT_TRUE(Music::WriteMp3("a.mp3", signal, 256));
    const auto decoded = DecodeMp3("a.mp3");
    ASSERT_NE(decoded.track, nullptr);
    const auto sample = [&](double seconds) {
        return decoded.track->samples[2 * Music::FrameAt(seconds)] / 32768.0;
    };
    EXPECT_NEAR(sample(1.25), 0.3, 0.01);
    EXPECT_NEAR(sample(1.75), -0.3, 0.01);
}

TEST(SoundFiles, Tell_when_they_cannot_be_written) {
    const Music::Stereo signal = Signal::Both(Signal::Sine(440, 0.5, 0.1));
    EXPECT_FALSE(Music::WriteWav("no/such/folder/a.wav", signal));
    EXPECT_FALSE(Music::WriteMp3("no/such/folder/a.mp3", signal, 192));
}

TEST(Mixer, Makes_the_same_piece_every_time) {
    std::string message;
    const Music::Stereo first = Song(songText, message);
    ASSERT_EQ(message, "");
    const Music::Stereo second = Song(songText, message);
    EXPECT_EQ(first.left, second.left);
    EXPECT_EQ(first.right, second.right);
    EXPECT_EQ(first.Frames(), 8U * 44100U); // four bars of two seconds
}

TEST(Mixer, Meets_the_loudness_and_the_ceiling_of_the_score) {
    std::string message;
    const Music::Loudness loudness = Music::MeasureLoudness(Song(songText, message));
    EXPECT_NEAR(loudness.integrated, -16.0, 0.3);
    EXPECT_LE(loudness.truePeak, -1.4);
}

TEST(Mixer, Says_in_which_line_a_track_goes_wrong) {
    std::string message;
    const std::string song = songText;
    Song((song + "    shine 3\n").c_str(), message);
    EXPECT_THAT(message, testing::HasSubstr("unknown setting 'shine'"));
    message.clear();
    Song((song + "track more p\n    volume 3\n").c_str(), message);
    EXPECT_THAT(message, testing::HasSubstr("unknown setting 'volume'"));
}
