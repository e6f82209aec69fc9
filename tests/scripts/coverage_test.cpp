// tests/coverage: what it says of each part of the tree, and when it fails.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;

namespace {

class Coverage : public ScriptStage {
protected:
    /// What gcovr says in the end: of one folder this, of all others that everything is taken.
    Tools::Ending RunWith(const std::string& folder, const std::string& lines,
                          const std::string& branches) {
        StandIn("gcovr", "case \"$*\" in *' --filter " + folder +
                             "/ --print-summary') lines=" + lines + " branches=" + branches +
                             " ;; *) lines=100.0 branches=100.0 ;; esac\n"
                             "printf 'lines: %s%% (1 out of 2)\\nfunctions: 1.0%% (1 out of 2)\\n"
                             "branches: %s%% (1 out of 2)\\n' $lines $branches");
        fs::create_directories("build/asan");
        return Run("tests/coverage", {fs::absolute("build/asan")});
    }
};

} // namespace

TEST_F(Coverage, Is_told_of_each_part_of_the_tree) {
    const Tools::Ending end = RunWith("sound", "99.7", "90.8");
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    for (const char* folder : {"engine", "demo", "tools"})
        EXPECT_THAT(end.errors, HasSubstr(std::string(folder) +
                                          ": 100.0 % of the lines, 100.0 % of the branches\n"));
    EXPECT_THAT(end.errors, HasSubstr("sound: 99.7 % of the lines, 90.8 % of the branches\n"));
    EXPECT_THAT(Calls("gcovr"), HasSubstr(" --filter engine/ --filter demo/ --filter sound/ "
                                          "--filter tools/ "));
}

TEST_F(Coverage, Has_a_floor_of_lines_and_of_branches) {
    const struct {
        const char* folder;
        const char* lines;
        const char* branches;
        int status;
    } cases[] = {
        {"engine", "90.0", "85.0", 0},  {"engine", "89.9", "100.0", 1},
        {"engine", "100.0", "84.9", 1}, {"demo", "89.9", "100.0", 1},
        {"demo", "100.0", "84.9", 1},   {"sound", "89.9", "100.0", 1},
        {"sound", "100.0", "84.9", 1},  {"tools", "89.9", "100.0", 1},
        {"tools", "90.0", "10.0", 0}, // its branches are not asked for
    };
    for (const auto& [folder, lines, branches, status] : cases) {
        const Tools::Ending end = RunWith(folder, lines, branches);
        EXPECT_EQ(end.exitStatus, status) << folder << ' ' << lines << ' ' << branches;
        const bool told =
            end.errors.find(std::string(folder) + ": 90 % of the lines and ") != std::string::npos;
        EXPECT_EQ(told, status != 0) << end.errors;
    }
}

TEST_F(Coverage, Is_not_told_when_nothing_was_counted) {
    StandIn("gcovr", "exit 64");
    fs::create_directories("build/asan");
    EXPECT_NE(Run("tests/coverage", {fs::absolute("build/asan")}).exitStatus, 0);
}
