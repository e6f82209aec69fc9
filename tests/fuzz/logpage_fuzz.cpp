// The reader of the log page: rows and texts are pieces of the page, and no more than may be.

#include "tools/stage/logpage.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view page(reinterpret_cast<const char*>(bytes), size);
    const Tools::LogPage read = Tools::ParseLogPage(page);
    std::size_t length = 0;
    for (const Tools::LogRow& row : read.rows)
        for (const std::string& cell : {row.section, row.status, row.file}) {
            length += cell.size();
            if (page.find(cell) == std::string_view::npos)
                std::abort();
        }
    for (const Tools::LogText& text : read.texts) {
        length += text.text.size();
        if (text.text.empty() || text.rowsBefore > read.rows.size())
            std::abort();
    }
    if (length > size || (read.complete && !read.hasHeader))
        std::abort();
    return 0;
}
