#pragma once

#include <string>
#include <vector>

/// One row of "Vell_log.html" as a reader of the page sees it.
struct LogRow {
    std::string section;
    std::string status;
    std::string file;

    bool operator==(const LogRow&) const = default;
};

void PrintTo(const LogRow& row, std::ostream* out);

/// The page in the working directory, byte for byte; empty when there is none.
std::string ReadLogText();

/// Every table row of the page in the working directory, in order (the column heads left out).
std::vector<LogRow> ReadLogRows();

/// Every table row of a page given as text.
std::vector<LogRow> ParseLogRows(const std::string& page);

/// The rows that were added to the page since this object was made: the log is one for the whole
/// process, so a test asks for its own rows only.
class LogWatch {
public:
    LogWatch();
    std::vector<LogRow> NewRows() const;

private:
    std::size_t before;
};
