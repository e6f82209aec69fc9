// The track that lies in Data/, as the demo hears it: decoded by the sound library and read
// through its spectrum, sixty times a second.
#include "art/music/beatpulse.h"
#include "art/music/filter.h"
#include "art/music/loudness.h"
#include "sound/control.h"
#include "sound/fmod.h"

#include "tests/art/music_signal.h"
#include "tests/sound/whole_track.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <memory>

namespace {

const std::string trackPath = std::string(NIMBREL_SOURCE_DIR) + "/Data/Musics/Quorrel.mp3";
constexpr double runningTime = 118.252;
constexpr double secondsPerBeat = 60.0 / 138.0;
constexpr double pulseBegins = 41.736; // the colour split, then the bloom
constexpr double pulseEnds = 76.516;
constexpr std::array<double, 7> sceneCuts{13.912, 27.824, 41.736, 55.648, 76.516, 90.428, 104.34};

/// The decoded piece as float; decoded once for all tests.
const Music::Stereo& Piece() {
    static const Music::Stereo piece = [] {
        Music::Stereo signal;
        const auto decoded = DecodeMp3(trackPath);
        if (decoded.track && decoded.track->Rate() == Music::sampleRate) {
            for (std::size_t i = 0; i + 1 < decoded.track->samples.size(); i += 2) {
                signal.left.push_back(static_cast<float>(decoded.track->samples[i]) / 32768.0F);
                signal.right.push_back(static_cast<float>(decoded.track->samples[i + 1]) /
                                       32768.0F);
            }
        }
        return signal;
    }();
    return piece;
}

/// Plays the track by hand and gives the lowest of 64 values at any moment.
class Listener {
public:
    Listener() {
        Vell::Sound::PlayByHand(time);
        FMOD_System_Create(&system);
        FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr);
        FMOD_System_CreateStream(system, trackPath.c_str(), FMOD_2D, nullptr, &sound);
        FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel);
    }
    ~Listener() {
        FMOD_Sound_Release(sound);
        FMOD_System_Release(system);
        Vell::Sound::SetOutputMaker({});
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    float LowestAt(double seconds) {
        time->MoveTo(seconds);
        FMOD_System_Update(system);
        std::array<float, 64> values{};
        EXPECT_EQ(
            FMOD_Channel_GetSpectrum(channel, values.data(), 64, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE),
            FMOD_OK);
        return values[0];
    }

private:
    std::shared_ptr<Vell::Sound::HandTime> time = std::make_shared<Vell::Sound::HandTime>();
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
};

struct Triggers {
    std::map<int, bool> beats; // by number of the beat in the piece
    std::map<int, int> strays; // by number of the phrase
};

/// Frames on which the picture jumps, `phase` being a part of a frame.
Triggers FindTriggers(double phase, double framesPerSecond) {
    constexpr float threshold = 0.03F;
    constexpr double nearBeat = 0.060;
    Listener listener;
    Triggers found;
    const int first = static_cast<int>(std::ceil(pulseBegins * framesPerSecond - phase));
    for (int frame = first; (frame + phase) / framesPerSecond < pulseEnds; ++frame) {
        const double seconds = (frame + phase) / framesPerSecond;
        if (listener.LowestAt(seconds) >= threshold)
            continue;
        const int beat = static_cast<int>(std::lround(seconds / secondsPerBeat));
        if (std::fabs(seconds - beat * secondsPerBeat) <= nearBeat)
            found.beats[beat] = true;
        else
            ++found.strays[beat / 32];
    }
    return found;
}

/// How much of a new sound begins at a moment: over all frequencies, the growth of the
/// logarithmically compressed magnitude from the 23 ms before it to those after (spectral flux;
/// the factor 1000 lets what lies below -60 dB count little). Falls are not counted.
double Onset(double seconds) {
    constexpr int fftSize = 1024;
    const std::size_t at = Music::FrameAt(seconds);
    double rise = 0;
    for (const auto* channel : {&Piece().left, &Piece().right}) {
        const auto before = Music::PowerSpectrum(channel->data() + at - fftSize, fftSize);
        const auto after = Music::PowerSpectrum(channel->data() + at, fftSize);
        for (std::size_t k = 0; k < before.size(); ++k) {
            rise += std::max(0.0, std::log1p(1000.0 * std::sqrt(after[k])) -
                                      std::log1p(1000.0 * std::sqrt(before[k])));
        }
    }
    return rise;
}

} // namespace

class PiecePulse : public testing::TestWithParam<double> {};

TEST_P(PiecePulse, Falls_below_the_threshold_on_the_beats_and_nowhere_else) {
    const Triggers found = FindTriggers(GetParam(), 60.0);
    const int first = static_cast<int>(std::lround(pulseBegins / secondsPerBeat)); // 96
    for (int start = first; start + 32 <= first + 80; start += 16) {
        int hits = 0;
        for (int beat = start; beat < start + 32; ++beat)
            hits += static_cast<int>(found.beats.count(beat));
        EXPECT_GE(hits, 30) << "from beat " << start;
    }
    for (const auto& [phrase, strays] : found.strays)
        EXPECT_LE(strays, 2) << "in phrase " << phrase;
}

TEST_P(PiecePulse, Opens_both_scenes_with_a_jump) {
    const Triggers found = FindTriggers(GetParam(), 60.0);
    EXPECT_EQ(found.beats.count(96), 1U);
    EXPECT_EQ(found.beats.count(128), 1U);
}

INSTANTIATE_TEST_SUITE_P(FramePhases, PiecePulse, testing::Values(0.0, 0.25, 0.5, 0.75));

TEST(Piece, Lasts_as_long_as_the_demo_and_ends_before_it) {
    ASSERT_GT(Piece().Frames(), 0U);
    const double length = static_cast<double>(Piece().Frames()) / Music::sampleRate;
    EXPECT_GE(length, runningTime);
    EXPECT_LT(length, runningTime + 0.1);
    const std::size_t end = Music::FrameAt(runningTime);
    EXPECT_LT(Signal::Db(Signal::Rms(Piece().left, end - 441, end)), -50.0);
    // The last chord still sounds a second before, so the end is a fall and not a gap.
    EXPECT_GT(Signal::Db(Signal::Rms(Piece().left, end - 50000, end - 40000)), -35.0);
}

TEST(Piece, Is_mastered_to_its_figures) {
    const Music::Loudness loudness = Music::MeasureLoudness(Piece());
    EXPECT_NEAR(loudness.integrated, -14.0, 1.0);
    EXPECT_LE(loudness.truePeak, -1.0);
    EXPECT_GE(loudness.range, 5.0);
    EXPECT_LE(loudness.range, 12.0);
}

TEST(Piece, Keeps_its_bass_in_the_middle) {
    std::vector<float> middle;
    std::vector<float> side;
    for (std::size_t i = 0; i < Piece().Frames(); ++i) {
        middle.push_back(Piece().left[i] + Piece().right[i]);
        side.push_back(Piece().left[i] - Piece().right[i]);
    }
    const Music::Biquad low = Music::Biquad::LowPass(100, 0.7);
    low.ApplyZeroPhase(middle);
    low.ApplyZeroPhase(side);
    const double apart =
        Signal::Db(Signal::Rms(middle, 0, middle.size()) / Signal::Rms(side, 0, side.size()));
    EXPECT_GT(apart, 20.0);
}

TEST(Piece, Has_no_constant_part) {
    EXPECT_NEAR(Signal::Mean(Piece().left), 0.0, 0.002);
    EXPECT_NEAR(Signal::Mean(Piece().right), 0.0, 0.002);
}

TEST(Piece, Never_steps_further_than_its_treble_explains) {
    // A full-scale tone of frequency f moves by at most 2 pi f / rate a sample; the measured
    // power above 2 kHz bounds what a step may be: ten times its effective value is far out
    // even for noise, and a click between two samples would be more.
    for (const auto* channel : {&Piece().left, &Piece().right}) {
        std::vector<float> steps(channel->size(), 0.0F);
        for (std::size_t i = 1; i < channel->size(); ++i)
            steps[i] = (*channel)[i] - (*channel)[i - 1];
        constexpr std::size_t blockSize = 4410;
        for (std::size_t at = 0; at + blockSize <= steps.size(); at += blockSize) {
            const double typical = Signal::Rms(steps, at, at + blockSize);
            const std::vector<float> block(steps.begin() + static_cast<std::ptrdiff_t>(at),
                                           steps.begin() +
                                               static_cast<std::ptrdiff_t>(at + blockSize));
            ASSERT_LE(Signal::Peak(block), 20.0 * typical + 0.01)
                << "at " << static_cast<double>(at) / Music::sampleRate;
        }
    }
}

TEST(Piece, Puts_every_cut_on_a_strong_downbeat) {
    for (double cut : sceneCuts) {
        // The downbeat lies up to 8 ms after the cut: 138 beats a minute are a hair slower.
        const double downbeat = std::ceil(cut / (4 * secondsPerBeat) - 0.01) * 4 * secondsPerBeat;
        EXPECT_NEAR(downbeat, cut, 0.010);
        const double here = Onset(downbeat);
        for (int sixteenth : {-5, -3, -2, -1, 1, 2, 3, 5}) {
            EXPECT_GT(here, Onset(downbeat + sixteenth * secondsPerBeat / 4))
                << "cut at " << cut << ", " << sixteenth << " sixteenths away";
        }
    }
}
