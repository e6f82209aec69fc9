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

} // namespace

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
