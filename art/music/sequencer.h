#pragma once

#include "art/music/score.h"

#include <cstdint>
#include <vector>

namespace Music {

/// One note for an instrument.
struct Note {
    double start = 0;       ///< seconds
    double length = 0.1;    ///< seconds until it is let go
    double midi = 60;       ///< pitch
    double fromMidi = 60;   ///< pitch of the note before it on the track, for glides
    float velocity = 0.8F;  ///< 0..1
    std::uint32_t seed = 1; ///< of what is random in it
};

/// What a track's settings say about turning patterns into notes.
struct PlayStyle {
    int lowest = 60;       ///< least MIDI note of chords and of degree 1
    double gate = 0.9;     ///< part of a note's written length that sounds
    double strum = 0.0;    ///< seconds between the notes of a chord
    bool rootOnly = false; ///< steps play the chord's bass note only
};

/// All notes of a track in order of their starts. Patterns repeat over their bars and are cut
/// at the end of the last; step patterns without a pitch of their own play the harmony.
std::vector<Note> NotesOf(const Score& score, const TrackText& track, const PlayStyle& style);

} // namespace Music
