#include "art/music/mixer.h"
#include "art/music/stems.h"

#include "tests/art/music_signal.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace {

using Music::Stereo;

const std::string song = R"(
tempo 120
bars 2
harmony 1 Em C
steps four X...X...X...X...
line run .111.111
instrument k kick
instrument b bass
instrument p synth
    voices 3  detune 12
track kick k
    key 1  gain -6
    play 1-2 four at C2
track bass b
    gain -14  lowest E1  duck 0.5
    play 1-2 run
track pad p
    gain -22  lowest C4  duck 0.5  PAD
    play 1-2 four
master
    curve gain 1 0  2 -6
    curve lowpass 1 2000  3 9000
)";

struct Taken {
    Music::Mix mix;
    std::vector<std::string> names;
    std::vector<Stereo> stems; ///< the rest last
};

/// The song's stems; `pad` are further settings of its pad.
Taken TakeApart(const std::string& pad) {
    std::string text = song;
    text.replace(text.find("PAD"), 3, pad);
    Music::Score score;
    std::string message;
    EXPECT_TRUE(Music::ParseScore(text, score, message)) << message;
    const std::size_t frames = Music::FrameAt(score.TimeOfBar(score.bars + 1));
    Taken taken;
    Music::Stems stems(frames);
    taken.mix = PlayTracks(
        score, Music::PulseOf(score, message), frames, [](int, int) {}, message, nullptr,
        [&](const std::string& name, const Stereo& sound) {
            taken.names.push_back(name);
            taken.stems.push_back(stems.Next(sound));
        });
    EXPECT_EQ(message, "");
    taken.stems.push_back(stems.Rest(taken.mix));
    return taken;
}

/// A sample in the steps of a 24-bit file.
long Steps(float sample) {
    return std::lround(sample * 8388607.0);
}

/// What the mix is in a file of 12 dB less: 10 to the power of -12 / 20 = 0.251189.
long MixSteps(float body, float kick) {
    return std::lround((body + kick) * 0.25118864 * 8388607.0);
}

long Loudest(const Stereo& sound) {
    long loudest = 0;
    for (const float sample : sound.left)
        loudest = std::max(loudest, std::abs(Steps(sample)));
    return loudest;
}

} // namespace

TEST(Stems, Add_up_to_the_mix_before_the_master) {
    const Taken taken = TakeApart("reverb -8  delay -10");
    EXPECT_EQ(taken.names, (std::vector<std::string>{"kick", "bass", "pad"}));
    for (std::size_t i = 0; i < taken.mix.body.Frames(); ++i) {
        long left = 0;
        long right = 0;
        for (const Stereo& stem : taken.stems) {
            left += Steps(stem.left[i]);
            right += Steps(stem.right[i]);
        }
        ASSERT_NEAR(left, MixSteps(taken.mix.body.left[i], taken.mix.kick.left[i]), 1) << i;
        ASSERT_NEAR(right, MixSteps(taken.mix.body.right[i], taken.mix.kick.right[i]), 1) << i;
    }
}

TEST(Stems, Leave_nothing_but_rounding_where_there_is_neither_hall_nor_echo) {
    const Taken dry = TakeApart("");
    // A float near 1 is rounded to half a step, a few dozen times over in the master's filters.
    EXPECT_LT(Loudest(dry.stems.back()), 200);
    EXPECT_GT(Loudest(dry.stems.front()), 100000);
    EXPECT_GT(Loudest(TakeApart("reverb -8").stems.back()), 10000);
}

TEST(Stems, Refuse_a_sound_that_their_file_cannot_hold) {
    Music::Stems stems(10);
    Stereo sound(10);
    // 12 dB down, 3.98 is full scale.
    sound.left[3] = 3.9F;
    EXPECT_NO_THROW(stems.Next(sound));
    sound.left[3] = 4.1F;
    EXPECT_THROW(stems.Next(sound), std::range_error);
}
