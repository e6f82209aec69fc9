#pragma once

#include "tools/stage/logpage.h"

#include <string>
#include <vector>

using Tools::LogRow;

/// The page in the working directory, byte for byte; empty when there is none.
std::string ReadLogText();

/// Every table row of the page in the working directory, in order.
std::vector<LogRow> ReadLogRows();

/// The rows that were added to the page since this object was made: the log is one for the whole
/// process, so a test asks for its own rows only.
class LogWatch {
public:
    LogWatch();
    std::vector<LogRow> NewRows() const;

private:
    std::size_t before;
};
