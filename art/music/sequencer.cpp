#include "art/music/sequencer.h"

#include <algorithm>

namespace Music {

namespace {

constexpr int stepsPerBar = 16;

/// The pitches that one event sounds.
std::vector<int> PitchesOf(const Score& score, const Pattern& pattern, const PatternEvent& event,
                           const Play& play, const PlayStyle& style, double bar) {
    if (pattern.kind == PatternKind::Tune)
        return {event.midi};
    const Chord& chord = score.ChordAt(bar);
    if (pattern.kind == PatternKind::Line) {
        int midi = 0;
        DegreeNote(chord, event.degree, style.lowest, midi);
        return {midi};
    }
    if (play.pitch >= 0)
        return {play.pitch};
    return style.rootOnly ? std::vector<int>{PitchAtOrAbove(chord.bass, style.lowest)}
                          : CloseVoicing(chord, style.lowest);
}

class Sequencer {
public:
    Sequencer(const Score& piece, const PlayStyle& how) : score(piece), style(how) {}

    void AddPlay(const Play& play) {
        const Pattern& pattern = score.patterns.at(play.pattern);
        const int total = (play.lastBar - play.firstBar + 1) * stepsPerBar;
        for (int round = 0; round < total; round += pattern.length) {
            for (const PatternEvent& event : pattern.events) {
                const int step = round + event.start;
                if (step < total)
                    AddEvent(play, pattern, event, step, std::min(event.length, total - step));
            }
        }
    }

    std::vector<Note> Finished() {
        std::stable_sort(notes.begin(), notes.end(),
                         [](const Note& a, const Note& b) { return a.start < b.start; });
        double previous = notes.empty() ? 60.0 : notes.front().midi;
        for (Note& note : notes) {
            note.fromMidi = previous;
            previous = note.midi;
        }
        return std::move(notes);
    }

private:
    void AddEvent(const Play& play, const Pattern& pattern, const PatternEvent& event, int step,
                  int length) {
        const double bar = play.firstBar + step / static_cast<double>(stepsPerBar);
        const double stepSeconds = score.SecondsPerBeat() / 4.0;
        double delay = 0.0;
        for (int pitch : PitchesOf(score, pattern, event, play, style, bar)) {
            Note note;
            note.start = score.TimeOfBar(bar) + delay;
            note.length = length * stepSeconds * style.gate;
            note.midi = pitch + play.transpose;
            note.velocity = event.velocity * play.velocity;
            note.seed = static_cast<std::uint32_t>(notes.size() + 1);
            notes.push_back(note);
            delay += style.strum;
        }
    }

    const Score& score;
    const PlayStyle& style;
    std::vector<Note> notes;
};

} // namespace

std::vector<Note> NotesOf(const Score& score, const TrackText& track, const PlayStyle& style) {
    Sequencer sequencer(score, style);
    for (const Play& play : track.plays)
        sequencer.AddPlay(play);
    return sequencer.Finished();
}

} // namespace Music
