// docs/reliability.md: its tables are those of the tree.

#include "tests/support/scratch.h"
#include "tests/surroundings/table.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::ElementsAreArray;

namespace {

const fs::path root = NIMBREL_SOURCE_DIR;

/// The rows of the table whose head begins so, as they stand on the page.
std::vector<std::string> RowsBelow(const std::string& head) {
    std::istringstream lines(ReadFile(root / "docs/reliability.md"));
    std::vector<std::string> rows;
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        if (inside && line.empty())
            break;
        if (inside && !line.starts_with("|---"))
            rows.push_back(line);
        inside = inside || line.starts_with(head);
    }
    return rows;
}

/// What the scripts' users may write behind "./test": the parts, as the script tells them.
bool IsPart(const std::string& name) {
    return ReadFile(root / "test").find("\n./test " + name + ' ') != std::string::npos;
}

/// Whether that is in the name of some test.
bool IsInATest(const std::string& text) {
    const fs::recursive_directory_iterator files(root / "tests");
    return std::any_of(begin(files), end(files), [&](const fs::directory_entry& file) {
        const std::string stem = file.path().stem();
        const std::string folder = file.path().parent_path().filename();
        return stem.ends_with("_test") && (folder + '_' + stem).find(text) != std::string::npos;
    });
}

/// Whether the tree has the program of a command, and the program what is asked of it.
bool IsThere(const std::string& command) {
    std::istringstream words(command);
    std::string program, name;
    words >> program >> name;
    if (program == "./test" && !name.empty())
        return IsPart(name) || IsInATest(name);
    return !program.empty() && fs::exists(root / program);
}

/// Of a row, the commands in its last field.
std::vector<std::string> CommandsOf(const std::string& row) {
    std::istringstream pieces(Surroundings::Split(row, '|').back());
    std::vector<std::string> commands;
    bool inside = false;
    for (std::string piece; std::getline(pieces, piece, '`'); inside = !inside)
        if (inside)
            commands.push_back(piece);
    return commands;
}

} // namespace

TEST(PageOfReliability, Has_a_command_behind_each_figure_that_the_tree_has) {
    const std::vector<std::string> rows = RowsBelow("| what |");
    EXPECT_GT(rows.size(), 20U);
    for (const std::string& row : rows) {
        const std::vector<std::string> commands = CommandsOf(row);
        EXPECT_FALSE(commands.empty()) << row;
        for (const std::string& command : commands)
            EXPECT_TRUE(IsThere(command)) << row;
    }
}

TEST(PageOfReliability, Is_complained_of_when_a_command_is_not_there) {
    EXPECT_TRUE(IsThere("./test fuzz"));
    EXPECT_TRUE(IsThere("./test hostile_files"));
    EXPECT_TRUE(IsThere("tests/fuzz/run --sums"));
    EXPECT_FALSE(IsThere("./test fuzzy"));
    EXPECT_FALSE(IsThere("./test hostile_pictures"));
    EXPECT_FALSE(IsThere("tests/fuzzed"));
}

TEST(PageOfReliability, Tells_of_each_surrounding_what_its_test_expects) {
    std::vector<std::string> expected;
    for (const Surroundings::Row& row : Surroundings::ReadTable())
        expected.push_back("| " + row.what + " | " + row.sees + ", " + row.ends + " | " + row.log +
                           " |");
    EXPECT_THAT(RowsBelow("| surroundings |"), ElementsAreArray(expected));
}

TEST(PageOfReliability, Tells_of_each_parser_how_long_it_was_tried) {
    const std::string ending = "_fuzz.cpp";
    std::vector<std::string> parsers;
    for (const fs::directory_entry& entry : fs::directory_iterator(root / "tests/fuzz"))
        if (const std::string name = entry.path().filename(); name.ends_with(ending))
            parsers.push_back(name.substr(0, name.size() - ending.size()));
    std::sort(parsers.begin(), parsers.end());
    std::vector<std::string> told;
    for (const std::string& row : RowsBelow("| parser |"))
        told.push_back(Surroundings::Split(row, '|').at(1));
    EXPECT_THAT(told, ElementsAreArray(parsers));
}
