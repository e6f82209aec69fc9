#include "art/music/score.h"

#include "art/music/patterntext.h"

#include <algorithm>
#include <sstream>

namespace Music {

namespace {

using Words = std::vector<std::string>;

constexpr double slowest = 20.0; // quarter notes a minute
constexpr double fastest = 400.0;
constexpr double mostBars = 1000.0;

/// Reads a score line by line; a block (instrument, track, master) takes the indented lines
/// after it.
class Reader {
public:
    Reader(Score& target, std::string& problem) : score(target), message(problem) {}

    bool Read(const std::string& text) {
        std::istringstream stream(text);
        std::string row;
        while (std::getline(stream, row)) {
            ++line;
            row = row.substr(0, row.find(';'));
            const bool indented = !row.empty() && (row[0] == ' ' || row[0] == '\t');
            Words words = Split(row);
            if (words.empty())
                continue;
            if (!(indented ? ReadIndented(words) : ReadHead(words)))
                return false;
        }
        return Complete();
    }

private:
    enum class Block { None, Instrument, Track, Master, Pattern, Harmony };

    static Words Split(const std::string& row) {
        std::istringstream stream(row);
        Words words;
        std::string word;
        while (stream >> word)
            if (word != "|") // bar lines are for the eye
                words.push_back(word);
        return words;
    }

    bool Fail(const std::string& what) {
        message = std::to_string(line) + ": " + what;
        return false;
    }

    bool ReadHead(const Words& words) {
        const std::string& head = words[0];
        block = Block::None;
        if (words.size() < 2) {
            if (head == "master") {
                block = Block::Master;
                return true;
            }
            return Fail("'" + head + "' needs a value");
        }
        if (head == "tempo" || head == "bars")
            return ReadGlobal(words);
        if (head == "harmony" || head == "section")
            return head == "harmony" ? BeginHarmony(words) : ReadSection(words);
        if (head == "steps" || head == "line" || head == "tune")
            return BeginPattern(words);
        if (head == "instrument")
            return BeginInstrument(words);
        return head == "track" ? BeginTrack(words) : Fail("unknown word '" + head + "'");
    }

    bool ReadIndented(const Words& words) {
        switch (block) {
        case Block::Instrument:
            return AddSettings(words, score.instruments[current].settings);
        case Block::Track:
            return ReadTrackLine(words);
        case Block::Master:
            return ReadMasterLine(words);
        case Block::Pattern:
            return AddToPattern(words, 0);
        case Block::Harmony:
            return AddChords(words, 0);
        case Block::None:
            break;
        }
        return Fail("an indented line belongs to nothing");
    }

    bool ReadGlobal(const Words& words) {
        const double least = words[0] == "tempo" ? slowest : 1.0;
        const double most = words[0] == "tempo" ? fastest : mostBars;
        double value = 0;
        if (!ParseNumber(words[1], value) || value < least || value > most)
            return Fail("'" + words[0] + "' cannot be '" + words[1] + "'");
        if (words[0] == "tempo")
            score.tempo = value;
        else
            score.bars = static_cast<int>(value);
        return true;
    }

    bool ReadSection(const Words& words) {
        double bar = 0;
        if (!ParseNumber(words[1], bar) || words.size() < 3)
            return Fail("expected 'section BAR TITLE'");
        std::string title = words[2];
        for (std::size_t i = 3; i < words.size(); ++i)
            title += " " + words[i];
        score.sections.emplace_back(static_cast<int>(bar), title);
        return true;
    }

    bool BeginHarmony(const Words& words) {
        if (!ParseNumber(words[1], nextChordBar))
            return Fail("expected a bar number after 'harmony', found '" + words[1] + "'");
        block = Block::Harmony;
        return AddChords(words, 2);
    }

    bool AddChords(const Words& words, std::size_t first) {
        for (std::size_t i = first; i < words.size(); ++i) {
            const std::size_t colon = words[i].find(':');
            double bars = 1.0;
            ChordChange change;
            change.bar = nextChordBar;
            if (!ParseChord(words[i].substr(0, colon), change.chord) ||
                (colon != std::string::npos && !ParseNumber(words[i].substr(colon + 1), bars)))
                return Fail("'" + words[i] + "' is no chord");
            score.harmony.push_back(change);
            nextChordBar += bars;
        }
        return true;
    }

    bool BeginPattern(const Words& words) {
        current = words[1];
        if (score.patterns.count(current) != 0)
            return Fail("pattern '" + current + "' stands twice");
        Pattern pattern;
        pattern.kind = words[0] == "steps"  ? PatternKind::Steps
                       : words[0] == "line" ? PatternKind::Line
                                            : PatternKind::Tune;
        pattern.length = 0;
        score.patterns[current] = pattern;
        block = Block::Pattern;
        return AddToPattern(words, 2);
    }

    bool AddToPattern(const Words& words, std::size_t first) {
        Pattern& pattern = score.patterns[current];
        for (std::size_t i = first; i < words.size(); ++i) {
            const bool good = pattern.kind == PatternKind::Tune ? AddTuneNote(words[i], pattern)
                                                                : AddSteps(words[i], pattern);
            if (!good)
                return Fail("pattern '" + current + "': cannot read '" + words[i] + "'");
        }
        return true;
    }

    bool BeginInstrument(const Words& words) {
        if (words.size() < 3)
            return Fail("expected 'instrument NAME KIND'");
        current = words[1];
        if (score.instruments.count(current) != 0)
            return Fail("instrument '" + current + "' stands twice");
        score.instruments[current] = {words[2], {}, line};
        block = Block::Instrument;
        return true;
    }

    bool AddSettings(const Words& words, std::vector<SettingText>& settings) {
        if (words.size() % 2 != 0)
            return Fail("settings are pairs of name and value");
        for (std::size_t i = 0; i < words.size(); i += 2)
            settings.push_back({words[i], words[i + 1], line});
        return true;
    }

    bool BeginTrack(const Words& words) {
        if (words.size() < 3)
            return Fail("expected 'track NAME INSTRUMENT'");
        TrackText track;
        track.name = words[1];
        track.instrument = words[2];
        track.line = line;
        score.tracks.push_back(track);
        block = Block::Track;
        return true;
    }

    bool ReadTrackLine(const Words& words) {
        TrackText& track = score.tracks.back();
        if (words[0] == "play")
            return ReadPlay(words, track);
        return words[0] == "curve" ? ReadCurve(words, track.curves)
                                   : AddSettings(words, track.settings);
    }

    bool ReadMasterLine(const Words& words) {
        return words[0] == "curve" ? ReadCurve(words, score.masterCurves)
                                   : AddSettings(words, score.masterSettings);
    }

    bool ReadCurve(const Words& words, std::map<std::string, Curve>& curves) {
        if (words.size() < 4 || words.size() % 2 != 0)
            return Fail("expected 'curve NAME BAR VALUE BAR VALUE ...'");
        Curve& curve = curves[words[1]];
        for (std::size_t i = 2; i < words.size(); i += 2) {
            double bar = 0;
            double value = 0;
            if (!ParseNumber(words[i], bar) || !ParseNumber(words[i + 1], value)) {
                return Fail("curve '" + words[1] + "': '" + words[i] + " " + words[i + 1] +
                            "' is no point");
            }
            if (!curve.points.empty() && bar < curve.points.back().first)
                return Fail("curve '" + words[1] + "' goes back to bar " + words[i]);
            curve.points.emplace_back(bar, value);
        }
        return true;
    }

    bool ReadPlay(const Words& words, TrackText& track) {
        Play play;
        if (words.size() < 3 || words.size() % 2 == 0 || !ReadBars(words[1], play))
            return Fail("expected 'play FIRST-LAST PATTERN [up N] [at NOTE] [velocity V]'");
        play.pattern = words[2];
        for (std::size_t i = 3; i < words.size(); i += 2) {
            double value = 0;
            const bool number = ParseNumber(words[i + 1], value);
            if (words[i] == "up" && number)
                play.transpose = static_cast<int>(value);
            else if (words[i] == "velocity" && number)
                play.velocity = static_cast<float>(value);
            else if (words[i] != "at" || !ParseNote(words[i + 1], play.pitch))
                return Fail("play: cannot read '" + words[i] + " " + words[i + 1] + "'");
        }
        playLines.push_back(line);
        track.plays.push_back(play);
        return true;
    }

    /// "25-32" or "25".
    static bool ReadBars(const std::string& text, Play& play) {
        const std::size_t dash = text.find('-');
        double first = 0;
        double last = 0;
        if (!ParseNumber(text.substr(0, dash), first))
            return false;
        last = first;
        if (dash != std::string::npos && !ParseNumber(text.substr(dash + 1), last))
            return false;
        play.firstBar = static_cast<int>(first);
        play.lastBar = static_cast<int>(last);
        return play.firstBar >= 1 && play.lastBar >= play.firstBar;
    }

    /// What can only be told at the end: every name used must stand somewhere.
    bool Complete() {
        if (score.bars < 1 || score.harmony.empty() || score.harmony.front().bar > 1.0)
            return Fail("the score needs 'bars' and a harmony from bar 1");
        std::size_t play = 0;
        for (const TrackText& track : score.tracks) {
            line = track.line;
            if (score.instruments.count(track.instrument) == 0)
                return Fail("no instrument '" + track.instrument + "'");
            for (const Play& part : track.plays) {
                line = playLines[play++];
                if (score.patterns.count(part.pattern) == 0)
                    return Fail("no pattern '" + part.pattern + "'");
                if (part.lastBar > score.bars || score.patterns[part.pattern].length == 0)
                    return Fail("'" + part.pattern + "' is empty or runs behind the last bar");
            }
        }
        return true;
    }

    Score& score;
    std::string& message;
    int line = 0;
    Block block = Block::None;
    std::string current;
    double nextChordBar = 1;
    std::vector<int> playLines;
};

} // namespace

double Curve::At(double bar) const {
    if (points.empty())
        return 0.0;
    if (bar <= points.front().first)
        return points.front().second;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const auto& [bar0, value0] = points[i - 1];
        const auto& [bar1, value1] = points[i];
        if (bar < bar1)
            return value0 + (value1 - value0) * (bar - bar0) / (bar1 - bar0);
    }
    return points.back().second;
}

const Chord& Score::ChordAt(double bar) const {
    constexpr double rounding = 1e-6; // bar positions are sums of sixteenths
    const auto after = std::find_if(harmony.begin(), harmony.end(), [&](const ChordChange& change) {
        return change.bar > bar + rounding;
    });
    return after == harmony.begin() ? harmony.front().chord : std::prev(after)->chord;
}

bool ParseScore(const std::string& text, Score& score, std::string& message) {
    score = Score();
    return Reader(score, message).Read(text);
}

} // namespace Music
