#pragma once

#include <string>
#include <vector>

namespace Surroundings {

/// A row of show.table, which says what each column means.
struct Row {
    std::string what, made, ends, sees, log;
};

/// The rows of the table in this tree; throws std::runtime_error when one is none.
std::vector<Row> ReadTable();

/// The parts of a text between a separator, without blanks around them; none of an empty text.
std::vector<std::string> Split(const std::string& text, char separator);

} // namespace Surroundings
