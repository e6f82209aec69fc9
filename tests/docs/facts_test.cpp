// What the pages say in numbers and names is what the sources say.

#include "demo/show.h"
#include "tests/docs/pages.h"
#include "tests/support/scratch.h"

#include <gmock/gmock.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <regex>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

const fs::path root = NIMBREL_SOURCE_DIR;

std::string Text(const char* format, double value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

const std::string windowSize = std::to_string(Show::width) + " × " + std::to_string(Show::height);

Docs::Page PageNamed(const std::string& name) {
    return Docs::ReadPage(name, ReadFile(root / name));
}

std::string AsCode(const std::string& name) {
    return "`" + name + "`";
}

std::vector<std::string> Found(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match)
        found.push_back((*match)[0]);
    return found;
}

/// The cells of a table's row: "| a | b |" gives "a", "b".
std::vector<std::string> Cells(const std::string& row) {
    static const std::regex around("^\\s+|\\s+$");
    std::vector<std::string> cells;
    std::istringstream in(row.substr(1));
    for (std::string cell; std::getline(in, cell, '|');)
        cells.push_back(std::regex_replace(cell, around, ""));
    return cells;
}

/// The names that a page's "where is what" table gives and that are not there.
///
/// A row: "| question | [path](path) | `word` |". The file or folder must be there, and a file must
/// hold the word.
std::vector<std::string> Astray(const Docs::Page& page) {
    static const std::regex link("\\]\\(([^)]+)\\)");
    std::vector<std::string> astray;
    std::istringstream lines(page.text);
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (!line.starts_with("| ") || !std::regex_search(line, match, link))
            continue;
        const std::vector<std::string> cells = Cells(line);
        const fs::path file = root / Docs::TargetOf({page.name, 0, match[1]});
        const std::string word =
            cells.size() == 3 && cells[2].size() > 2 ? cells[2].substr(1, cells[2].size() - 2) : "";
        if (word.empty() || !fs::is_regular_file(file) ||
            ReadFile(file).find(word) == std::string::npos)
            astray.push_back(line);
    }
    return astray;
}

/// Whether it is written like the path of something in the tree: blanks, brackets and the like do
/// not belong there, and what lies under build/, or where the engine is installed, need not be
/// there.
bool LooksLikePath(const std::string& code) {
    static const std::regex form("(\\./)?[A-Za-z0-9_.-]+(/[A-Za-z0-9_.-]+)*/?");
    return code.find('/') != std::string::npos && std::regex_match(code, form) &&
           !code.starts_with("build/") && !code.starts_with("include/");
}

/// What a heading is called in links: "## What is there?" is "what-is-there".
std::string Anchor(const std::string& heading) {
    std::string anchor;
    for (const char letter : heading.substr(heading.find_first_not_of("# ")))
        if (letter == ' ')
            anchor += '-';
        else if (std::isalnum(static_cast<unsigned char>(letter)) || letter == '-')
            anchor += static_cast<char>(std::tolower(letter));
    return anchor;
}

/// Whether the file has the place that a link names behind "#", be it a heading or an id.
bool HasPlace(const fs::path& file, const std::string& place) {
    const std::string text = ReadFile(file);
    if (file.extension() == ".html")
        return text.find("id=\"" + place + "\"") != std::string::npos;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("#") && Anchor(line) == place)
            return true;
    return false;
}

bool LeadsSomewhere(const Docs::Line& link) {
    const fs::path target = root / Docs::TargetOf(link);
    const std::size_t place = link.text.find('#');
    return fs::exists(target) &&
           (place == std::string::npos || HasPlace(target, link.text.substr(place + 1)));
}

/// From the root, from the page's folder or, as pages name modules, from engine/ and without what
/// comes behind the point: "core/clock".
bool IsThere(const Docs::Line& code) {
    const fs::path page = fs::path(code.page).parent_path();
    for (const fs::path& from : {root, root / page, root / "engine"})
        for (const char* ending : {"", ".h", ".cpp"})
            if (fs::exists(from / (code.text + ending)))
                return true;
    return false;
}

/// The paths that the page names and that are not there.
std::vector<std::string> MissingPaths(const Docs::Page& page) {
    std::vector<std::string> missing;
    for (const Docs::Line& code : page.code)
        if (LooksLikePath(code.text) && !IsThere(code))
            missing.push_back(Docs::PlaceOf(code) + ": " + code.text);
    for (const Docs::Line& link : page.links)
        if (!LeadsSomewhere(link))
            missing.push_back(Docs::PlaceOf(link) + ": " + link.text);
    return missing;
}

} // namespace

TEST(Readme, Gives_the_window_and_the_running_time_of_the_show) {
    const std::string text = PageNamed("README.md").text;
    EXPECT_THAT(text, HasSubstr(windowSize + " pixels"));
    EXPECT_THAT(text, HasSubstr(Text("%.3f", Show::runningTime)));
}

TEST(Pages, Give_one_window_size_and_one_running_time) {
    const std::string wide = std::to_string(Show::width);
    const std::string high = std::to_string(Show::height);
    for (const Docs::Page& page : Docs::AllPages(root)) {
        for (const std::string& size : Found(page.text, wide + " × [0-9]+|[0-9]+ × " + high))
            EXPECT_EQ(size, windowSize) << page.name;
        for (const std::string& time : Found(page.text, "11[0-9]\\.[0-9]{3} s"))
            EXPECT_EQ(time, Text("%.3f s", Show::runningTime)) << page.name;
    }
}

TEST(PageOfTheFilm, Counts_the_frames_of_the_show) {
    // 118.252 s at 60 frames a second: 7095.12, and the last one is begun
    const auto frames = static_cast<int>(std::ceil(Show::runningTime * 60));
    char text[32];
    std::snprintf(text, sizeof text, "%d,%03d frames", frames / 1000, frames % 1000);
    EXPECT_THAT(PageNamed("docs/movie.md").text, HasSubstr(text));
}

TEST(Pages, Name_and_link_only_what_is_there) {
    for (const Docs::Page& page : Docs::AllPages(root))
        EXPECT_THAT(MissingPaths(page), IsEmpty());
}

TEST(Pages, Are_complained_of_when_they_name_or_link_what_is_not_there) {
    const Docs::Page page = Docs::ReadPage(
        "docs/a.md",
        "`demo/` `core/clock` `demo/ghost.cpp` `0 / 2` `build/x` [a](movie.md) [b](ghost.md)\n"
        "[c](movie.md#the-published-frames) [d](movie.md#ghost)\n"
        "[e](frames/rise.html#pass-1) [f](frames/rise.html#ghost)\n");
    EXPECT_THAT(MissingPaths(page),
                ::testing::ElementsAre("docs/a.md:1: demo/ghost.cpp", "docs/a.md:1: ghost.md",
                                       "docs/a.md:2: movie.md#ghost",
                                       "docs/a.md:3: frames/rise.html#ghost"));
}

TEST(PageOfPlaces, Names_files_that_hold_the_words) {
    const Docs::Page page = PageNamed("docs/where.md");
    EXPECT_THAT(Astray(page), IsEmpty());
    EXPECT_GE(page.links.size(), 30U) << "its table is not found";
}

TEST(PageOfPlaces, Is_complained_of_when_a_word_or_a_file_is_not_there) {
    const std::string good = "| the window | [show.h](../demo/show.h) | `width` |\n";
    EXPECT_THAT(Astray(Docs::ReadPage("docs/a.md", good)), IsEmpty());
    for (const char* bad : {"| the window | [show.h](../demo/show.h) | `ghost` |\n",
                            "| the window | [ghost.h](../demo/ghost.h) | `width` |\n",
                            "| the window | [show.h](../demo/show.h) | |\n"})
        EXPECT_EQ(Astray(Docs::ReadPage("docs/a.md", bad)).size(), 1U) << bad;
}

TEST(PageOfTheArt, Names_every_file_of_the_data) {
    const std::string text = PageNamed("docs/art.md").text;
    std::istringstream sums(ReadFile(root / "Data/SHA256SUMS"));
    int files = 0;
    for (std::string sum, path; sums >> sum >> path; ++files)
        EXPECT_THAT(text, HasSubstr(AsCode(fs::path(path).filename()))) << path;
    EXPECT_GT(files, 0);
}
