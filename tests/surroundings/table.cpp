#include "tests/surroundings/table.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Surroundings {

namespace {

std::string WithoutBlanksAround(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Row RowOf(const std::string& line) {
    constexpr std::size_t columns = 5;
    const std::vector<std::string> fields = Split(line, '|');
    if (fields.size() != columns)
        throw std::runtime_error("show.table: five fields in \"" + line + "\"");
    return {.what = fields[0],
            .made = fields[1],
            .ends = fields[2],
            .sees = fields[3],
            .log = fields[4]};
}

} // namespace

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(WithoutBlanksAround(part));
    return parts;
}

std::vector<Row> ReadTable() {
    std::vector<Row> rows;
    std::ifstream table(NIMBREL_SOURCE_DIR "/tests/surroundings/show.table");
    for (std::string line; std::getline(table, line);)
        if (!line.empty() && line[0] != '#')
            rows.push_back(RowOf(line));
    return rows;
}

} // namespace Surroundings
