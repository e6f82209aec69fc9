#include "tests/support/log_page.h"

#include <fstream>
#include <iterator>
#include <ostream>
#include <regex>

void PrintTo(const LogRow& row, std::ostream* out) {
    *out << '(' << row.section << " | " << row.status << " | " << row.file << ')';
}

std::string ReadLogText() {
    std::ifstream file("Vell_log.html", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<LogRow> ParseLogRows(const std::string& page) {
    static const std::regex row("<td bgcolor=\"[^\"]*\" width =\"15%\">([^\n]*)</td>\\s*"
                                "<td bgcolor=\"[^\"]*\" width =\"5%\"><font color=\"[^\"]*\">"
                                "([^\n]*)</font></td>\\s*"
                                "<td bgcolor=\"[^\"]*\" width =\"80%\">([^\n]*)</td>");
    std::vector<LogRow> rows;
    for (std::sregex_iterator it(page.begin(), page.end(), row), end; it != end; ++it)
        rows.push_back({(*it)[1], (*it)[2], (*it)[3]});
    return rows;
}

std::vector<LogRow> ReadLogRows() {
    return ParseLogRows(ReadLogText());
}

LogWatch::LogWatch() : before(ReadLogRows().size()) {}

std::vector<LogRow> LogWatch::NewRows() const {
    std::vector<LogRow> rows = ReadLogRows();
    rows.erase(rows.begin(), rows.begin() + std::ptrdiff_t(std::min(before, rows.size())));
    return rows;
}
