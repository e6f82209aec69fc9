#include "tests/support/log_page.h"

#include "tools/stage/scratch.h"

#include <algorithm>

std::string ReadLogText() {
    return Tools::TextOf(Tools::logFile);
}

std::vector<LogRow> ReadLogRows() {
    return Tools::ReadLogPage().rows;
}

LogWatch::LogWatch() : before(ReadLogRows().size()) {}

std::vector<LogRow> LogWatch::NewRows() const {
    std::vector<LogRow> rows = ReadLogRows();
    rows.erase(rows.begin(),
               rows.begin() + static_cast<std::ptrdiff_t>(std::min(before, rows.size())));
    return rows;
}
