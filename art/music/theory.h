#pragma once

#include <string>
#include <vector>

namespace Music {

/// Reads a note name with octave ("F#3", "Bb1"; C4 is 60) into a MIDI number.
/// Returns false, leaving `midi` alone, when the text is none.
bool ParseNote(const std::string& text, int& midi);

/// A chord as pitch classes (0 is C) in order of stacking.
struct Chord {
    int root = 0;               ///< pitch class of the root
    int bass = 0;               ///< pitch class that the bass plays: the root, or after a slash
    std::vector<int> intervals; ///< semitones above the root, rising, first 0
};

/// Reads a chord name: root, then "", m, 5, 6, 7, maj7, m7, 9, maj9, m9, add9, madd9, sus2, sus4,
/// 7sus4, dim or m7b5, then optionally a slash and the bass note ("C#7sus4", "E/G#").
bool ParseChord(const std::string& text, Chord& chord);

/// The pitch class `pitchClass` at or within the octave above MIDI note `lowest`.
int PitchAtOrAbove(int pitchClass, int lowest);

/// All chord tones inside the octave that begins at `lowest`, rising: neighbouring chords so
/// keep their common tones where they are and move the others by steps. A ninth is put an octave
/// higher, above the others.
std::vector<int> CloseVoicing(const Chord& chord, int lowest);

/// The chord's tone for a degree sign in a line pattern: 1 bass or root, 3 third (or what stands
/// for it), 5 fifth, 7 seventh (the octave where the chord has none), 8 octave, 9 ninth, and
/// a, c, f for third, fifth and root an octave higher. `lowest` is the least MIDI note for
/// degree 1. Returns false for any other sign.
bool DegreeNote(const Chord& chord, char degree, int lowest, int& midi);

} // namespace Music
