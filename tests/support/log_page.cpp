#include "tests/support/log_page.h"

#include <fstream>
#include <iterator>
#include <ostream>

namespace {

/// Whether `text` stands in `page` at `at`; a '?' stands for any character.
bool StandsAt(const std::string& page, std::size_t at, const std::string& text) {
    if (at + text.size() > page.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '?' && text[i] != page[at + i])
            return false;
    return true;
}

/// Finds the next `opening` from `at` on and takes what follows it up to `closing`; moves `at`
/// behind that. False when there is none.
bool TakeCell(const std::string& page, std::size_t& at, const std::string& opening,
              const std::string& closing, std::string& text) {
    while (at < page.size() && !StandsAt(page, at, opening))
        ++at;
    const std::size_t begin = at + opening.size();
    const std::size_t end = begin < page.size() ? page.find(closing, begin) : std::string::npos;
    if (end == std::string::npos)
        return false;
    text = page.substr(begin, end - begin);
    at = end;
    return true;
}

} // namespace

void PrintTo(const LogRow& row, std::ostream* out) {
    *out << '(' << row.section << " | " << row.status << " | " << row.file << ')';
}

std::string ReadLogText() {
    std::ifstream file("Vell_log.html", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<LogRow> ParseLogRows(const std::string& page) {
    std::vector<LogRow> rows;
    std::size_t at = 0;
    LogRow row;
    while (
        TakeCell(page, at, "width =\"15%\">", "</td>", row.section) &&
        TakeCell(page, at, "width =\"5%\"><font color=\"#??????\">", "</font></td>", row.status) &&
        TakeCell(page, at, "width =\"80%\">", "</td>", row.file))
        rows.push_back(row);
    return rows;
}

std::vector<LogRow> ReadLogRows() {
    return ParseLogRows(ReadLogText());
}

LogWatch::LogWatch() : before(ReadLogRows().size()) {}

std::vector<LogRow> LogWatch::NewRows() const {
    std::vector<LogRow> rows = ReadLogRows();
    rows.erase(rows.begin(),
               rows.begin() + static_cast<std::ptrdiff_t>(std::min(before, rows.size())));
    return rows;
}
