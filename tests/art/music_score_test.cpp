#include "art/music/score.h"
#include "art/music/sequencer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// The smallest score that is whole, with room for more.
const char* const scoreHead = "tempo 120\nbars 4\nharmony 1 Em C G D\n"
                              "instrument beep synth\n    wave sine\n";

Music::Score Read(const std::string& rest) {
    Music::Score score;
    std::string message;
    EXPECT_TRUE(Music::ParseScore(scoreHead + rest, score, message)) << message;
    return score;
}

std::string Complaint(const std::string& text) {
    Music::Score score;
    std::string message;
    EXPECT_FALSE(Music::ParseScore(text, score, message));
    return message;
}

std::vector<Music::Note> Notes(const std::string& rest, const Music::PlayStyle& style = {}) {
    const Music::Score score = Read(rest);
    return Music::NotesOf(score, score.tracks.at(0), style);
}

std::vector<double> Pitches(const std::vector<Music::Note>& notes) {
    std::vector<double> pitches;
    for (const Music::Note& note : notes)
        pitches.push_back(note.midi);
    return pitches;
}

Music::Chord ChordOf(const std::string& name) {
    Music::Chord chord;
    EXPECT_TRUE(Music::ParseChord(name, chord)) << name;
    return chord;
}

} // namespace

TEST(Theory, Reads_note_names) {
    int midi = 0;
    EXPECT_TRUE(Music::ParseNote("A4", midi));
    EXPECT_EQ(midi, 69);
    EXPECT_TRUE(Music::ParseNote("F#3", midi));
    EXPECT_EQ(midi, 54);
    EXPECT_TRUE(Music::ParseNote("Bb1", midi));
    EXPECT_EQ(midi, 34);
    for (const char* wrong : {"", "H2", "C", "C#", "4", "C44", "c4", "C-1"})
        EXPECT_FALSE(Music::ParseNote(wrong, midi)) << wrong;
    EXPECT_EQ(midi, 34);
}

TEST(Theory, Reads_chord_names) {
    EXPECT_THAT(ChordOf("Em").intervals, ElementsAre(0, 3, 7));
    EXPECT_EQ(ChordOf("Em").root, 4);
    EXPECT_THAT(ChordOf("C#7sus4").intervals, ElementsAre(0, 5, 7, 10));
    EXPECT_EQ(ChordOf("B/D#").root, 11);
    EXPECT_EQ(ChordOf("B/D#").bass, 3);
    Music::Chord chord;
    for (const char* wrong : {"", "X", "Emaj", "E/", "E/H", "Em/Gx"})
        EXPECT_FALSE(Music::ParseChord(wrong, chord)) << wrong;
}

TEST(Theory, Voices_chords_within_an_octave_and_ninths_on_top) {
    // From G3 (55): G major is G3 B3 D4, C major C4 E4 and the common G3.
    EXPECT_THAT(Music::CloseVoicing(ChordOf("G"), 55), ElementsAre(55, 59, 62));
    EXPECT_THAT(Music::CloseVoicing(ChordOf("C"), 55), ElementsAre(55, 60, 64));
    // E minor with the ninth F#: G3 B3 E4 and F#5 above.
    EXPECT_THAT(Music::CloseVoicing(ChordOf("Emadd9"), 55), ElementsAre(55, 59, 64, 78));
}

TEST(Theory, Finds_degrees_from_the_bass_upwards) {
    int midi = 0;
    const Music::Chord chord = ChordOf("B/D#");
    EXPECT_TRUE(Music::DegreeNote(chord, '1', 28, midi));
    EXPECT_EQ(midi, 39); // D#2
    EXPECT_TRUE(Music::DegreeNote(chord, '5', 28, midi));
    EXPECT_EQ(midi, 42); // B1 and a fifth
    EXPECT_TRUE(Music::DegreeNote(chord, '7', 28, midi));
    EXPECT_EQ(midi, 47); // no seventh: the octave of B1
    EXPECT_FALSE(Music::DegreeNote(chord, 'z', 28, midi));
}

TEST(Score, Plays_a_tune_at_its_times) {
    // 120 beats a minute: a sixteenth is 0.125 s, a bar 2 s.
    const auto notes = Notes("tune t E4:4 -:4 G4:8\ntrack a beep\n play 2-2 t\n");
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_DOUBLE_EQ(notes[0].start, 2.0);
    EXPECT_DOUBLE_EQ(notes[0].length, 0.5 * 0.9);
    EXPECT_DOUBLE_EQ(notes[1].start, 3.0);
    EXPECT_EQ(notes[1].midi, 67);
    EXPECT_EQ(notes[1].fromMidi, 64); // to glide from
}

TEST(Score, Repeats_a_pattern_over_its_bars_and_cuts_it_at_their_end) {
    const auto notes = Notes("tune t E4:12 G4:12\ntrack a beep\n play 1-2 t up 12\n");
    // 24 sixteenths in 32: E G, then E cut to 8.
    EXPECT_THAT(Pitches(notes), ElementsAre(76, 79, 76));
    EXPECT_DOUBLE_EQ(notes[2].length, 8 * 0.125 * 0.9);
}

TEST(Score, Follows_the_harmony_with_lines_and_chords) {
    Music::PlayStyle style;
    style.lowest = 40; // E2
    EXPECT_THAT(Pitches(Notes("line l 1.......8.......\ntrack a beep\n play 1-2 l\n", style)),
                ElementsAre(40, 52, 48, 60)); // E, then C
    EXPECT_THAT(Pitches(Notes("steps s x---\ntrack a beep\n play 4-4 s\n", style)),
                ElementsAre(42, 45, 50, 42, 45, 50, 42, 45, 50, 42, 45, 50)); // F# A D
    EXPECT_THAT(Pitches(Notes("steps s x...............\ntrack a beep\n play 3 s at C5\n", style)),
                ElementsAre(72));
}

TEST(Score, Gives_hits_their_accents_and_ties_their_lengths) {
    const auto notes = Notes("steps s X-.o\ntrack a beep\n play 1 s at C4 velocity 0.5\n");
    ASSERT_EQ(notes.size(), 8U);
    EXPECT_FLOAT_EQ(notes[0].velocity, 0.5F);
    EXPECT_FLOAT_EQ(notes[1].velocity, 0.25F);
    EXPECT_DOUBLE_EQ(notes[0].length, 0.25 * 0.9);
}

TEST(Score, Draws_curves_straight_between_their_points) {
    const Music::Score score = Read("steps s x\ntrack a beep\n play 1 s\n curve gain 2 -10 4 0\n");
    const Music::Curve& curve = score.tracks[0].curves.at("gain");
    EXPECT_DOUBLE_EQ(curve.At(1.0), -10.0);
    EXPECT_DOUBLE_EQ(curve.At(2.5), -7.5);
    EXPECT_DOUBLE_EQ(curve.At(9.0), 0.0);
    EXPECT_DOUBLE_EQ(Music::Curve().At(1.0), 0.0);
}

TEST(Score, Changes_chords_in_the_middle_of_a_bar) {
    Music::Score score;
    std::string message;
    ASSERT_TRUE(Music::ParseScore("bars 2\nharmony 1 Em:1.5 B7:0.5\n", score, message)) << message;
    EXPECT_EQ(score.ChordAt(2.49).root, 4);
    EXPECT_EQ(score.ChordAt(2.5).root, 11);
    EXPECT_EQ(score.ChordAt(99).root, 11);
}

TEST(Score, Says_in_which_line_a_mistake_stands) {
    const std::string head = scoreHead; // five lines
    EXPECT_THAT(Complaint("bars x\n"), HasSubstr("1: 'bars' cannot be 'x'"));
    EXPECT_THAT(Complaint("tempo nan\n"), HasSubstr("1: 'tempo' cannot be 'nan'"));
    EXPECT_THAT(Complaint("bars 1e9\n"), HasSubstr("cannot be '1e9'"));
    EXPECT_THAT(Complaint(head + "tune t E4:99999\n"), HasSubstr("cannot read 'E4:99999'"));
    EXPECT_THAT(Complaint(head + "banana 3\n"), HasSubstr("6: unknown word 'banana'"));
    EXPECT_THAT(Complaint(head + "steps s x..y\n"), HasSubstr("6: pattern 's': cannot read"));
    EXPECT_THAT(Complaint(head + "tune t E4\n"), HasSubstr("cannot read 'E4'"));
    EXPECT_THAT(Complaint(head + "line l 1.2.\n"), HasSubstr("cannot read '1.2.'"));
    EXPECT_THAT(Complaint(head + "harmony 3 Em Qm\n"), HasSubstr("'Qm' is no chord"));
    EXPECT_THAT(Complaint(head + "track a nobody\n"), HasSubstr("6: no instrument 'nobody'"));
    EXPECT_THAT(Complaint(head + "track a beep\n play 1 gone\n"),
                HasSubstr("7: no pattern 'gone'"));
    EXPECT_THAT(Complaint(head + "steps s x\ntrack a beep\n play 3-9 s\n"),
                HasSubstr("behind the last bar"));
    EXPECT_THAT(Complaint(head + "track a beep\n play 3-1 s\n"), HasSubstr("expected 'play"));
    EXPECT_THAT(Complaint(head + "track a beep\n curve gain 3 0 2 0\n"), HasSubstr("goes back"));
    EXPECT_THAT(Complaint(head + "steps s x\nsteps s x\n"), HasSubstr("stands twice"));
    EXPECT_THAT(Complaint(" wave saw\n"), HasSubstr("1: an indented line belongs to nothing"));
    EXPECT_THAT(Complaint("tempo 120\n"), HasSubstr("needs 'bars' and a harmony"));
}
