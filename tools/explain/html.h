#pragma once

#include <string>
#include <vector>

namespace Explain {

// Pieces of a page. Every tag is closed and every attribute quoted, so that the page is XML as
// well.

/// A text with the characters that mean something in HTML taken apart.
std::string Escape(const std::string& text);

/// "<name attributes>content</name>"; `content` is HTML.
std::string Element(const std::string& name, const std::string& content,
                    const std::string& attributes = "");

/// A link within the page.
std::string LinkTo(const std::string& id, const std::string& content);

/// A whole number with commas: "60,432".
std::string Grouped(long long number);

/// Six digits at most: "0.02".
std::string Number(double number);

/// "(30.1, 3, 15)", or the number alone.
std::string Numbers(const std::vector<float>& numbers);

/// A table with a head. Cells are HTML; a row may be shorter than the head, its last cell then
/// reaches to the end. Columns whose head begins with '#' are numbers, set to the right.
class Table {
public:
    explicit Table(const std::vector<std::string>& columns) : heads(columns) {}

    void Row(const std::vector<std::string>& cells);
    std::string Html() const;

private:
    bool IsNumber(std::size_t column) const { return heads[column].starts_with('#'); }

    const std::vector<std::string> heads;
    std::string rows;
};

} // namespace Explain
