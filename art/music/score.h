#pragma once

#include "art/music/theory.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Music {

/// Name and value pairs as they stand in the score, with the line for messages.
struct SettingText {
    std::string name;
    std::string value;
    int line = 0;
};

/// What a pattern is made of.
enum class PatternKind {
    Steps, ///< hits: x X o (normal, accent, soft), - held on, . rest
    Line,  ///< chord degrees (see DegreeNote), - held on, . rest
    Tune,  ///< notes with lengths in sixteenths: "E5:3 -:2" (- alone is a rest)
};

/// One event of a pattern, in sixteenth notes from its beginning.
struct PatternEvent {
    int start = 0;
    int length = 1;
    int midi = 0;          ///< of a tune
    char degree = '1';     ///< of a line
    float velocity = 0.8F; ///< 0..1
};

struct Pattern {
    PatternKind kind = PatternKind::Steps;
    int length = 16; ///< sixteenth notes until it repeats
    std::vector<PatternEvent> events;
};

/// "play 25-32 four at E2 up 12 velocity 0.8".
struct Play {
    int firstBar = 1; ///< counted from 1
    int lastBar = 1;  ///< inclusive
    std::string pattern;
    int transpose = 0;     ///< semitones
    int pitch = -1;        ///< MIDI note of a steps pattern; -1: the chord of the moment
    float velocity = 1.0F; ///< factor
};

/// A value that changes along the piece: straight lines between points, bars from 1.
struct Curve {
    std::vector<std::pair<double, double>> points; ///< bar (fractions allowed) and value

    /// The value at a bar position; before the first and after the last point theirs.
    double At(double bar) const;
};

struct InstrumentText {
    std::string kind;
    std::vector<SettingText> settings;
    int line = 0;
};

struct TrackText {
    std::string name;
    std::string instrument;
    std::vector<SettingText> settings;
    std::vector<Play> plays;
    std::map<std::string, Curve> curves;
    int line = 0;
};

/// A chord and the bar position (from 1) where it begins.
struct ChordChange {
    double bar = 1;
    Chord chord;
};

/// A whole piece as written down.
struct Score {
    double tempo = 120; ///< quarter notes a minute
    int bars = 0;       ///< four quarter notes each
    std::vector<ChordChange> harmony;
    std::map<std::string, Pattern> patterns;
    std::map<std::string, InstrumentText> instruments;
    std::vector<TrackText> tracks;
    std::map<std::string, Curve> masterCurves;
    std::vector<SettingText> masterSettings;
    std::vector<std::pair<int, std::string>> sections; ///< first bar and title

    /// Seconds at which a bar position (from 1, fractions allowed) begins.
    double TimeOfBar(double bar) const { return (bar - 1.0) * 240.0 / tempo; }
    double SecondsPerBeat() const { return 60.0 / tempo; }
    /// The chord that sounds at a bar position. There must be one.
    const Chord& ChordAt(double bar) const;
};

/// Reads a score from text. On the first mistake returns false and puts "LINE: what is wrong"
/// into `message`; `score` is then of no use. Never reads beyond the text.
bool ParseScore(const std::string& text, Score& score, std::string& message);

} // namespace Music
