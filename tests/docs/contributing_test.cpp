// What CONTRIBUTING.md says of tests, rules and faults is what the tree has.

#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

const fs::path root = NIMBREL_SOURCE_DIR;

constexpr double patience = 60.0; // seconds

const std::string& Page() {
    static const std::string page = ReadFile(root / "CONTRIBUTING.md");
    return page;
}

/// The first group of each match.
std::vector<std::string> Found(const std::string& text, const std::regex& pattern) {
    std::vector<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.push_back((*match)[1]);
    return found;
}

/// The tests of a page that no file of the tree makes: FOLDER_NAME is tests/FOLDER/NAME.cpp.
std::vector<std::string> Ghosts(const std::string& text) {
    static const std::regex test("`([a-z0-9]+_[A-Za-z0-9_]+_test)`");
    std::vector<std::string> ghosts;
    for (const std::string& name : Found(text, test)) {
        const std::size_t cut = name.find('_');
        const fs::path file =
            root / "tests" / name.substr(0, cut) / (name.substr(cut + 1) + ".cpp");
        if (!fs::exists(file))
            ghosts.push_back(name);
    }
    return ghosts;
}

/// What tests/style refuses, in its own words.
std::vector<std::string> Rules() {
    static const std::regex report("\n    report \"([^\"]+)\"");
    const std::string script = ReadFile(root / "tests/style");
    std::vector<std::string> rules = Found(script, report);
    for (std::string& rule : rules)
        for (const std::string limit : {"max_lines", "max_function"})
            if (const std::size_t place = rule.find("$" + limit); place != std::string::npos)
                rule.replace(place, limit.size() + 1,
                             Found(script, std::regex("\n" + limit + "=([0-9]+)\n")).at(0));
    return rules;
}

} // namespace

TEST(PageOfChanges, Names_tests_that_are_there) {
    EXPECT_THAT(Ghosts(Page()), IsEmpty());
    EXPECT_THAT(Ghosts("`core_clock_test` `core_ghost_test`"),
                ::testing::ElementsAre("core_ghost_test"));
}

TEST(PageOfChanges, Has_a_row_for_each_rule_of_style) {
    EXPECT_GE(Rules().size(), 13U);
    for (const std::string& rule : Rules())
        EXPECT_THAT(Page(), HasSubstr("\n| " + rule + " | "));
}

TEST(PageOfChanges, Names_checks_that_clang_tidy_makes) {
    const std::string configuration = ReadFile(root / ".clang-tidy");
    const std::string table = Page().substr(Page().find("| checks |"));
    const std::vector<std::string> checks = Found(table, std::regex("`([a-z]+-[a-z*-]+)`"));
    EXPECT_GE(checks.size(), 8U);
    for (const std::string& check : checks)
        EXPECT_THAT(configuration, HasSubstr("\n  " + check)) << check;
}

TEST(PageOfChanges, Shows_a_fault_that_fits_its_file) {
    const std::string fence = "\n```faults\n";
    const std::size_t begin = Page().find(fence);
    ASSERT_NE(begin, std::string::npos);
    const ScratchDir scratch;
    WriteFile("shown.faults",
              Page().substr(begin + fence.size(),
                            Page().find("\n```", begin + fence.size()) - begin - fence.size() + 1));
    const std::string run = root / "tests/faults/run";
    const Tools::Ending end = Tools::Run(
        {.arguments = {run, "--table", fs::absolute("shown.faults"), "--check"}}, patience);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(end.errors, HasSubstr("1 faults fit."));
}
