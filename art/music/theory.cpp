#include "art/music/theory.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace Music {

namespace {

struct Quality {
    const char* name;
    std::vector<int> intervals;
};

const std::vector<Quality>& Qualities() {
    static const std::vector<Quality> table{
        {"", {0, 4, 7}},           {"m", {0, 3, 7}},         {"5", {0, 7}},
        {"6", {0, 4, 7, 9}},       {"7", {0, 4, 7, 10}},     {"maj7", {0, 4, 7, 11}},
        {"m7", {0, 3, 7, 10}},     {"9", {0, 4, 7, 10, 14}}, {"maj9", {0, 4, 7, 11, 14}},
        {"m9", {0, 3, 7, 10, 14}}, {"add9", {0, 4, 7, 14}},  {"madd9", {0, 3, 7, 14}},
        {"sus2", {0, 2, 7}},       {"sus4", {0, 5, 7}},      {"7sus4", {0, 5, 7, 10}},
        {"dim", {0, 3, 6}},        {"m7b5", {0, 3, 6, 10}}};
    return table;
}

/// Reads a letter and an accidental at `at`, moving `at` behind them.
bool ParsePitchClass(const std::string& text, std::size_t& at, int& pitchClass) {
    static constexpr std::array<int, 7> letters{9, 11, 0, 2, 4, 5, 7}; // A..G
    if (at >= text.size() || text[at] < 'A' || text[at] > 'G')
        return false;
    pitchClass = letters.at(static_cast<std::size_t>(text[at++] - 'A'));
    if (at < text.size() && (text[at] == '#' || text[at] == 'b'))
        pitchClass += text[at++] == '#' ? 1 : -1;
    return true;
}

/// The first interval of the chord among the wanted ones, or `otherwise`.
int IntervalOf(const Chord& chord, std::initializer_list<int> wanted, int otherwise) {
    for (int interval : chord.intervals)
        if (std::find(wanted.begin(), wanted.end(), interval) != wanted.end())
            return interval;
    return otherwise;
}

} // namespace

bool ParseNote(const std::string& text, int& midi) {
    std::size_t at = 0;
    int pitchClass = 0;
    if (!ParsePitchClass(text, at, pitchClass) || at + 1 != text.size() ||
        std::isdigit(static_cast<unsigned char>(text[at])) == 0)
        return false;
    midi = (text[at] - '0' + 1) * 12 + pitchClass;
    return true;
}

bool ParseChord(const std::string& text, Chord& chord) {
    std::size_t at = 0;
    Chord parsed;
    if (!ParsePitchClass(text, at, parsed.root))
        return false;
    const std::size_t slash = text.find('/', at);
    const std::string name = text.substr(at, slash == std::string::npos ? slash : slash - at);
    const auto found = std::find_if(Qualities().begin(), Qualities().end(),
                                    [&](const Quality& quality) { return name == quality.name; });
    if (found == Qualities().end())
        return false;
    parsed.intervals = found->intervals;
    parsed.bass = parsed.root;
    if (slash != std::string::npos) {
        at = slash + 1;
        if (!ParsePitchClass(text, at, parsed.bass) || at != text.size())
            return false;
    }
    parsed.root = (parsed.root + 12) % 12;
    parsed.bass = (parsed.bass + 12) % 12;
    chord = parsed;
    return true;
}

int PitchAtOrAbove(int pitchClass, int lowest) {
    return lowest + ((pitchClass - lowest) % 12 + 12) % 12;
}

std::vector<int> CloseVoicing(const Chord& chord, int lowest) {
    std::vector<int> notes;
    for (int interval : chord.intervals) {
        // A ninth stays on top: next to root and third it would make a cluster.
        const int octave = interval > 12 ? 12 : 0;
        notes.push_back(PitchAtOrAbove(chord.root + interval, lowest) + octave);
    }
    std::sort(notes.begin(), notes.end());
    notes.erase(std::unique(notes.begin(), notes.end()), notes.end());
    return notes;
}

bool DegreeNote(const Chord& chord, char degree, int lowest, int& midi) {
    const int root = PitchAtOrAbove(chord.root, lowest);
    const int third = IntervalOf(chord, {2, 3, 4, 5}, 7);
    const int fifth = IntervalOf(chord, {6, 7}, 7);
    switch (degree) {
    case '1':
        midi = PitchAtOrAbove(chord.bass, lowest);
        return true;
    case '3':
        midi = root + third;
        return true;
    case '5':
        midi = root + fifth;
        return true;
    case '7':
        midi = root + IntervalOf(chord, {9, 10, 11}, 12);
        return true;
    case '8':
        midi = PitchAtOrAbove(chord.bass, lowest) + 12;
        return true;
    case '9':
        midi = root + IntervalOf(chord, {14}, 12 + third);
        return true;
    case 'a':
        midi = root + 12 + third;
        return true;
    case 'c':
        midi = root + 12 + fifth;
        return true;
    case 'f':
        midi = root + 24;
        return true;
    default:
        return false;
    }
}

} // namespace Music
