// docs/music.md as a table of the score's language: what stands there, the parser knows, and the
// other way round.
#include "art/music/instrument.h"
#include "art/music/master.h"
#include "art/music/mixer.h"
#include "art/music/wavetable.h"

#include "tests/support/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <sstream>

namespace {

using Defaults = std::map<std::string, double>;

/// The cells of all rows of the page's tables that begin with a word in backticks.
std::vector<std::vector<std::string>> Rows() {
    std::vector<std::vector<std::string>> rows;
    std::istringstream page(ReadFile(NIMBREL_SOURCE_DIR "/docs/music.md"));
    std::string line;
    while (std::getline(page, line)) {
        if (line.rfind("| `", 0) != 0)
            continue;
        std::vector<std::string> cells;
        std::istringstream rest(line.substr(1));
        std::string cell;
        while (std::getline(rest, cell, '|'))
            cells.push_back(cell);
        rows.push_back(cells);
    }
    return rows;
}

/// The first text in backticks.
std::string Quoted(const std::string& cell) {
    std::smatch found;
    return std::regex_search(cell, found, std::regex("`([^`]+)`")) ? found[1].str() : "";
}

/// "`attack` 0.005 `decay` 0.3" as names and values.
Defaults SettingsIn(const std::string& cell) {
    const std::regex pair("`(\\w+)` (-?[0-9.]+)");
    Defaults settings;
    for (std::sregex_iterator at(cell.begin(), cell.end(), pair), end; at != end; ++at)
        settings[(*at)[1].str()] = std::stod((*at)[2].str());
    return settings;
}

/// The settings that the page gives the owner; empty when it has no row.
Defaults Told(const std::string& owner) {
    for (const auto& cells : Rows())
        if (Quoted(cells[0]) == owner && !SettingsIn(cells[2]).empty())
            return SettingsIn(cells[2]);
    return {};
}

Defaults Known(const std::vector<Music::SettingDefault>& defaults) {
    Defaults settings;
    for (const Music::SettingDefault& entry : defaults)
        settings[entry.name] = entry.value;
    return settings;
}

const std::string whole = "tempo 120\nbars 32\nharmony 1 C\nsteps four x...\ntune hook E5:4\n"
                          "instrument pad synth\n    attack 1\ntrack t pad\n    gain -6\n";

std::string Complaint(const std::string& text) {
    Music::Score score;
    std::string message;
    Music::ParseScore(text, score, message);
    return message;
}

/// The line added to a score where it belongs.
std::string With(const std::string& line) {
    const bool indented = line.rfind("play", 0) == 0 || line.rfind("curve", 0) == 0;
    return whole + (indented ? "    " : "") + line + "\n";
}

} // namespace

TEST(Grammar, Every_word_of_the_page_is_one_of_the_parser) {
    std::vector<std::string> words;
    for (const auto& cells : Rows()) {
        const std::string word = Quoted(cells[0]);
        const std::string line = Quoted(cells[1]);
        if (line.find(word) == std::string::npos)
            continue; // of another table
        words.push_back(word);
        std::string added = line;
        if (added == "steps four X...x...o---")
            added.replace(6, 4, "more");
        if (added == "tune hook B4:3! E5:3 -:2")
            added.replace(5, 4, "more");
        if (added == "instrument pad synth")
            added.replace(11, 3, "more");
        EXPECT_EQ(Complaint(With(added)), "") << line;
        std::string wrong = added;
        wrong.replace(wrong.find(word), word.size(), "nonsense");
        EXPECT_NE(Complaint(With(wrong)), "") << wrong;
    }
    EXPECT_THAT(words, testing::ElementsAre("tempo", "bars", "section", "harmony", "steps", "line",
                                            "tune", "instrument", "track", "master", "play", "up",
                                            "at", "velocity", "curve"));
}

TEST(Grammar, The_page_has_each_instruments_settings_and_defaults) {
    for (const Music::InstrumentKind& kind : Music::InstrumentKinds())
        EXPECT_EQ(Told(kind.name), Known(kind.defaults)) << kind.name;
    EXPECT_EQ(Told("track"), Known(Music::TrackDefaults()));
    EXPECT_EQ(Told("master"), Known(Music::MasterDefaults()));
}

TEST(Grammar, The_page_names_waves_and_chords_that_there_are) {
    const std::string page = ReadFile(NIMBREL_SOURCE_DIR "/docs/music.md");
    const auto quotedBetween = [&](const char* from, const char* to) {
        const std::size_t begin = page.find(from);
        return page.substr(begin, page.find(to, begin) - begin);
    };
    const std::regex word("`(\\w+)`");
    const std::string waves = quotedBetween("a wave, which is one of", "A chord is");
    int count = 0;
    for (std::sregex_iterator at(waves.begin(), waves.end(), word), end; at != end; ++at, ++count) {
        Music::Wave wave = Music::Wave::Sine;
        EXPECT_TRUE(Music::FindWave((*at)[1].str(), wave)) << (*at)[1];
        EXPECT_EQ(static_cast<int>(wave), count) << (*at)[1];
    }
    EXPECT_EQ(count, 7);
    const std::string chords = quotedBetween("nothing or one of", "after a slash");
    count = 0;
    for (std::sregex_iterator at(chords.begin(), chords.end(), word), end; at != end;
         ++at, ++count) {
        Music::Chord chord;
        EXPECT_TRUE(Music::ParseChord("C" + (*at)[1].str(), chord)) << (*at)[1];
    }
    EXPECT_EQ(count, 16); // and the major chord, which has no sign
}
