#include "sound/streamedtrack.h"

#include "tests/allocations/allocations.h"
#include "tests/sound/mp3_maker.h"
#include "tests/sound/whole_track.h"
#include "tests/support/process_state.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <thread>

using Vell::Sound::Mp3File;
using Vell::Sound::StreamedTrack;

namespace {

using Samples = std::vector<std::int16_t>;

/// Noise, of which no two places are alike, and which fills every bit that a frame may have.
Music Noise(int frames, int rate, int channels) {
    std::mt19937 random(1);
    Music music = Silence(frames, rate, channels);
    for (std::int16_t& sample : music.samples)
        sample = static_cast<std::int16_t>(random() % 20'000 - 10'000);
    return music;
}

/// Ten seconds: more than is ever held.
class StreamedTrackTest : public ::testing::Test {
protected:
    StreamedTrackTest() { Make(Noise(441'000, 44100, 2)); }

    void Make(const Music& music) {
        WriteFile("track.mp3", EncodeMp3(music));
        whole = DecodeInOneGo("track.mp3").track;
        track = std::make_unique<StreamedTrack>(Mp3File::Open("track.mp3"));
    }

    /// Reads from there on and compares.
    void ExpectSame(std::int64_t first, std::size_t count) {
        Samples expected(2 * count, 1);
        Samples read(2 * count, 2);
        whole->Read(first, expected);
        track->Read(first, read);
        EXPECT_TRUE(read == expected) << count << " frames from " << first;
    }

    ScratchDir scratch;
    std::shared_ptr<const WholeTrack> whole;
    std::unique_ptr<StreamedTrack> track;
};

TEST_F(StreamedTrackTest, Reads_what_decoding_in_one_go_gives) {
    EXPECT_EQ(track->Rate(), 44100);
    EXPECT_EQ(track->Frames(), 441'000);
    for (std::int64_t first = 0; first < 441'000; first += 441)
        ExpectSame(first, 441);
}

TEST_F(StreamedTrackTest, Reads_any_part_at_once_however_long) {
    ExpectSame(0, 441'000);
}

TEST_F(StreamedTrackTest, Is_silent_before_its_start_and_behind_its_end) {
    Samples samples(2 * 10, 1);
    track->Read(-20, samples);
    EXPECT_EQ(samples, Samples(20, 0));
    samples.assign(20, 1);
    track->Read(441'000, samples);
    EXPECT_EQ(samples, Samples(20, 0));
    ExpectSame(-5, 10);
    ExpectSame(440'995, 10);
}

TEST_F(StreamedTrackTest, Finds_every_place_again_to_the_sample) {
    std::mt19937 random(2);
    for (int i = 0; i < 20; ++i)
        ExpectSame(random() % 441'000, 1'000);
}

TEST_F(StreamedTrackTest, Finds_every_place_again_in_every_kind_of_file) {
    std::mt19937 random(3);
    for (const int rate : {16000, 22050, 48000})
        for (const int channels : {1, 2}) {
            SCOPED_TRACE(rate);
            Make(Noise(6 * rate, rate, channels));
            for (int i = 0; i < 5; ++i)
                ExpectSame(random() % static_cast<unsigned>(6 * rate), 1'000);
        }
}

TEST_F(StreamedTrackTest, Serves_several_readers_each_at_its_own_place) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([this, i] {
            for (int n = 0; n < 20; ++n)
                ExpectSame(i * 140'000 + n * 441, 441);
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(StreamedTrackTest, Ends_while_it_decodes) {
    for (int i = 0; i < 50; ++i)
        StreamedTrack(Mp3File::Open("track.mp3"));
}

TEST_F(StreamedTrackTest, Takes_no_memory_of_its_own_while_it_plays) {
    Samples samples(2 * 441);
    track->Read(0, samples);
    const int before = Allocations();
    for (std::int64_t first = 0; first < 441'000; first += 441)
        track->Read(first, samples);
    EXPECT_EQ(Allocations(), before);
}

TEST_F(StreamedTrackTest, Needs_no_more_memory_for_an_hour_than_for_seconds) {
    const std::string minute = EncodeMp3(Sine(60 * 22050, 440.0, 1000.0, 22050, 1), false);
    {
        std::ofstream file("hour.mp3", std::ios::binary);
        for (int i = 0; i < 60; ++i)
            file << minute;
    }
    const std::size_t before = ResidentBytes();
    const StreamedTrack hour(Mp3File::Open("hour.mp3"));
    EXPECT_GE(hour.Frames(), 3600 * 22050);
    Samples samples(2 * 441);
    for (int second = 0; second < 1200; second += 30)
        hour.Read(second * 22050, samples);
    // Twenty minutes of it would be 1,200 * 22,050 * 4 bytes, 106 MB. What is held is four seconds,
    // 353 kB; the rest is the heap's own.
    EXPECT_LT(ResidentBytes(), before + (std::size_t{32} << 20));
}

} // namespace
