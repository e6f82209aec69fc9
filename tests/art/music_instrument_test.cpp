#include "art/music/instrument.h"

#include "tests/art/music_signal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

using Texts = std::vector<Music::SettingText>;

std::unique_ptr<Music::Instrument> Make(const std::string& kind, const Texts& settings = {}) {
    std::string message;
    auto instrument = Music::MakeInstrument({kind, settings, 1}, message);
    EXPECT_NE(instrument, nullptr) << message;
    return instrument;
}

Music::Note NoteAt(double start, double length, double midi) {
    Music::Note note;
    note.start = start;
    note.length = length;
    note.midi = note.fromMidi = midi;
    return note;
}

Music::Stereo Play(const Music::Instrument& instrument, const Music::Note& note, double seconds) {
    Music::Stereo out(Music::FrameAt(seconds));
    instrument.Render(note, out);
    return out;
}

const char* const kindNames[] = {"synth", "fm",    "bass",  "kick", "snare",
                                 "clap",  "metal", "noise", "drop"};

} // namespace

TEST(Instrument, Sounds_from_its_start_on_and_comes_to_an_end) {
    for (const char* kind : kindNames) {
        const auto out = Play(*Make(kind), NoteAt(0.5, 0.3, 57), 8.0);
        EXPECT_EQ(Signal::Peak({out.left.begin(), out.left.begin() + 22049}), 0.0F) << kind;
        EXPECT_GT(Signal::Peak(out.left), 0.02F) << kind;
        EXPECT_LT(Signal::Peak(out.left), 4.0F) << kind;
        EXPECT_LT(Signal::Peak({out.left.end() - 44100, out.left.end()}), 0.001F) << kind;
        EXPECT_FALSE(Signal::HasOddNumbers(out.left)) << kind;
    }
}

TEST(Instrument, Plays_the_same_note_the_same_way_every_time) {
    for (const char* kind : kindNames) {
        const auto first = Play(*Make(kind), NoteAt(0.1, 0.3, 57), 1.0);
        const auto second = Play(*Make(kind), NoteAt(0.1, 0.3, 57), 1.0);
        EXPECT_EQ(first.left, second.left) << kind;
        EXPECT_EQ(first.right, second.right) << kind;
    }
}

TEST(Instrument, Stays_inside_the_piece_when_a_note_starts_at_or_after_its_end) {
    for (const char* kind : kindNames) {
        const auto out = Play(*Make(kind), NoteAt(0.999, 5.0, 57), 1.0);
        EXPECT_EQ(out.Frames(), 44100U);
        EXPECT_EQ(Signal::Peak(Play(*Make(kind), NoteAt(3.0, 1.0, 57), 1.0).left), 0.0F) << kind;
    }
}

TEST(Instrument, Has_no_constant_part) {
    for (const char* kind : kindNames) {
        const auto out = Play(*Make(kind), NoteAt(0.0, 2.0, 57), 4.0);
        EXPECT_NEAR(Signal::Mean(out.left), 0.0, 0.003) << kind;
    }
}

TEST(Synth, Plays_in_tune) {
    const Texts sine{{"wave", "sine", 1}, {"attack", "0.001", 1}, {"sustain", "1", 1}};
    for (double midi : {40.0, 69.0, 88.0}) {
        const auto out = Play(*Make("synth", sine), NoteAt(0, 3, midi), 2.5);
        EXPECT_NEAR(Signal::Cents(Signal::Pitch(out.left), Music::NoteFrequency(midi)), 0.0, 0.5);
    }
}

TEST(Synth, Detunes_its_outer_voices_by_the_cents_asked_for) {
    // Two voices 20 cents to each side of A4 are 40 cents apart: they beat at
    // 440 (2^(20/1200) - 2^(-20/1200)) = 10.17 Hz. A beat ends where the two cancel.
    const Texts two{{"wave", "sine", 1}, {"voices", "2", 1},  {"detune", "20", 1},
                    {"spread", "0", 1},  {"sustain", "1", 1}, {"decay", "0.01", 1}};
    const auto out = Play(*Make("synth", two), NoteAt(0, 5, 69), 4.0);
    int beats = 0;
    bool loud = true;
    for (std::size_t i = 8820; i + 441 < out.Frames(); i += 221) {
        const double level = Signal::Rms(out.left, i, i + 441);
        beats += loud && level < 0.25 ? 1 : 0;
        loud = level < 0.25 ? false : (level > 0.5 ? true : loud);
    }
    EXPECT_NEAR(beats / 3.8, 10.17, 0.5);
}

TEST(Synth, Opens_its_filter_with_the_envelope) {
    const Texts swept{{"wave", "saw", 1},       {"cutoff", "200", 1},       {"filter_env", "5", 1},
                      {"filter_decay", "1", 1}, {"filter_sustain", "0", 1}, {"sustain", "1", 1}};
    const auto out = Play(*Make("synth", swept), NoteAt(0, 2, 45), 1.5);
    const auto bright = [&](std::size_t at) {
        const auto power = Music::PowerSpectrum(out.left.data() + at, 2048);
        return power[93]; // 2 kHz, ten times the resting cut-off
    };
    EXPECT_GT(bright(500), 1000.0 * bright(44100));
}

TEST(Bass, Leans_to_one_side_in_its_low_end) {
    const Texts pure{{"saw", "0", 1}, {"sustain", "1", 1}, {"decay", "0.01", 1}};
    const auto out = Play(*Make("bass", pure), NoteAt(0, 2, 33), 1.5);
    const auto [low, high] = std::minmax_element(out.left.begin() + 22050, out.left.end());
    // Bessel functions at the resting k of 2.5: I0 = 3.2898, I1 = 2.5167. Around the mean the
    // wave of fundamental 1 reaches down to -(I0 - e^-2.5) / (2 I1) = -0.637 and up to
    // (e^2.5 - I0) / (2 I1) = 1.767; the velocity is 0.8.
    EXPECT_NEAR(*low, -0.637 * 0.8, 0.01);
    EXPECT_NEAR(*high, 1.767 * 0.8, 0.01);
}

TEST(Kick, Falls_to_its_pitch_and_dies_within_its_decay) {
    const Texts plain{{"from", "200", 1},  {"to", "50", 1},   {"bend", "0.01", 1},
                      {"decay", "1.0", 1}, {"click", "0", 1}, {"drive", "1", 1}};
    const auto out = Play(*Make("kick", plain), NoteAt(0, 0.1, 36), 2.0);
    const std::vector<float> tail(out.left.begin() + 8820, out.left.begin() + 30870);
    EXPECT_NEAR(Signal::Pitch(tail), 50.0, 0.5);
    // 60 dB in a second from the end of the hold on: 30 dB in half of it.
    const double early = Signal::Rms(out.left, 8820, 8820 + 882);
    const double late = Signal::Rms(out.left, 8820 + 22050, 8820 + 22050 + 882);
    EXPECT_NEAR(Signal::Db(early / late), 30.0, 1.0);
}

TEST(Fm, Keeps_its_side_bands_below_half_the_rate) {
    // C8 with a modulator far above it: without the bound on the index this would fold down.
    const Texts wild{{"mod", "3.5", 1},  {"index", "12", 1},  {"index_decay", "100", 1},
                     {"detune", "0", 1}, {"sustain", "1", 1}, {"decay", "0.01", 1}};
    const auto out = Play(*Make("fm", wild), NoteAt(0, 2, 108), 1.0);
    const auto power = Music::PowerSpectrum(out.left.data() + 8820, 8192);
    double low = 0; // everything an octave and more below the note
    for (std::size_t k = 4; k * 5.383 < 2000; ++k)
        low = std::max(low, power[k]);
    EXPECT_LT(10 * std::log10(low), -60.0);
}

TEST(Instrument, Survives_settings_and_notes_out_of_all_reason) {
    const char* const names[] = {"wave", "voices", "detune", "attack", "decay", "cutoff",
                                 "mod",  "index",  "bright", "from",   "hits",  "gap",
                                 "tone", "center", "time",   "bend",   "noise", "low_cut"};
    for (const char* kind : kindNames) {
        for (const char* name : names) {
            for (const char* value : {"0", "-1000", "1000000"}) {
                std::string message;
                const auto instrument =
                    Music::MakeInstrument({kind, {{name, value, 1}}, 1}, message);
                if (instrument) { // the kind knows the setting
                    Play(*instrument, NoteAt(0.01, 0.0, 400), 0.05);
                    Play(*instrument, NoteAt(0.01, 0.1, -400), 0.05);
                }
            }
        }
    }
}

TEST(Instrument, Complains_about_what_it_does_not_know) {
    std::string message;
    EXPECT_EQ(Music::MakeInstrument({"trumpet", {}, 7}, message), nullptr);
    EXPECT_THAT(message, HasSubstr("7: unknown kind of instrument 'trumpet'"));
    EXPECT_EQ(Music::MakeInstrument({"kick", {{"wave", "saw", 9}}, 7}, message), nullptr);
    EXPECT_THAT(message, HasSubstr("9: unknown setting 'wave'"));
    EXPECT_EQ(Music::MakeInstrument({"synth", {{"attack", "soon", 3}}, 1}, message), nullptr);
    EXPECT_THAT(message, HasSubstr("3: setting 'attack' cannot be 'soon'"));
}
