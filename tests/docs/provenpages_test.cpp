// Pages on which each sentence names the test that proves it: the tests are there, and no sentence
// is without one.

#include "tests/docs/pages.h"
#include "tests/support/scratch.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const fs::path root = NIMBREL_SOURCE_DIR;

/// "Suite.Name" of every test in tests/.
std::set<std::string> AllTests() {
    static const std::regex test("\\bTEST(?:_F|_P)?\\(\\s*(\\w+),\\s*(\\w+)\\)");
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / "tests")) {
        if (!entry.path().string().ends_with("_test.cpp"))
            continue;
        const std::string text = ReadFile(entry.path());
        for (std::sregex_iterator match(text.begin(), text.end(), test), end; match != end; ++match)
            names.insert((*match)[1].str() + "." + (*match)[2].str());
    }
    return names;
}

/// The names of tests in a line of a page, as code.
std::vector<std::string> TestsOf(const std::string& line) {
    static const std::regex name("`([A-Za-z0-9]+\\.[A-Z][A-Za-z0-9_]+)`");
    std::vector<std::string> names;
    for (std::sregex_iterator match(line.begin(), line.end(), name), end; match != end; ++match)
        names.push_back((*match)[1]);
    return names;
}

/// Whether the line belongs to a table's head, or is none that says something.
bool SaysNothing(const std::string& line) {
    return line.empty() || line.starts_with('#') || line.starts_with("|---") ||
           line == "| what holds | proven by |";
}

/// The page without its blocks, and up to the heading that begins so; a test of its own follows
/// what comes behind.
std::string Sentences(const std::string& text, const std::string& end) {
    static const std::regex fence("```[^]*?```|!\\[[^\\]]*\\]\\([^)]*\\)");
    return std::regex_replace(text.substr(0, text.find(end)), fence, "");
}

/// The lines behind the first "## " that name no test, or one that is not there.
std::vector<std::string> Unproven(const std::string& text, const std::set<std::string>& tests) {
    std::vector<std::string> unproven;
    std::istringstream lines(text.substr(std::min(text.size(), text.find("\n## "))));
    for (std::string line; std::getline(lines, line);) {
        if (SaysNothing(line))
            continue;
        const std::vector<std::string> named = TestsOf(line);
        const bool there = std::all_of(named.begin(), named.end(), [&](const std::string& name) {
            return tests.contains(name);
        });
        if (named.empty() || !there)
            unproven.push_back(line);
    }
    return unproven;
}

} // namespace

TEST(PageOfConventions, Names_a_test_behind_each_sentence) {
    const std::string text = ReadFile(root / "docs/conventions.md");
    EXPECT_THAT(Unproven(text, AllTests()), IsEmpty());
    EXPECT_GE(TestsOf(text).size(), 60U) << "its tables are not found";
}

// What stands between the tables of that page leads on to them.
TEST(PageOfAssets, Names_a_test_behind_each_sentence) {
    const std::string text = Sentences(ReadFile(root / "docs/assets.md"), "## What is refused");
    std::vector<std::string> unproven = Unproven(text, AllTests());
    std::erase_if(unproven, [](const std::string& line) { return !line.starts_with('|'); });
    EXPECT_THAT(unproven, IsEmpty());
    EXPECT_GE(TestsOf(text).size(), 35U) << "its tables are not found";
}

TEST(ProvenPages, Are_complained_of_when_a_sentence_has_no_test_or_one_that_is_not_there) {
    const std::set<std::string> tests = {"Real.Test_of_it"};
    EXPECT_THAT(
        Unproven("# Page\n\nAn introduction.\n\n## Part\n\n| what holds | proven by |\n"
                 "|---|---|\n| So. | `Real.Test_of_it` |\n| And so. | |\n"
                 "| Not so. | `Real.Test_of_it`, `Ghost.Test` |\nJust so.\n",
                 tests),
        ElementsAre("| And so. | |", "| Not so. | `Real.Test_of_it`, `Ghost.Test` |", "Just so."));
}
