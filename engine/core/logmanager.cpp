#include "engine/core/logmanager.h"

#include <cstddef>
#include <cstdio>
#include <ctime>

namespace Vell {

namespace {

constexpr char fileName[] = "Vell_log.html";

constexpr char header[] =
    R"(<html>
<head>
    <meta http-equiv="Content-Type" content="text/html; charset=UTF-8"  />
    <title>Vell Engine</title>
</head>


<body bgcolor="#000000">
    <center><b><font color="#FFFFFF" size="+1">Vell Engine - Logger </font></b></center><br>
    <table border bgcolor="#666666" cellspacing="0" cellpadding="2">
    <tr align=LEFT valign=TOP>
    <th><font color="#FFFFFF">Section</font></th>
    <th><font color="#FFFFFF">Status</font></th>
    <th><font color="#FFFFFF">File</font></th>
    </tr>
)";

constexpr char footer[] = R"(    </table>
</body>
</html>
)";

// Row colour, section; row colour, status colour, status; row colour, file.
constexpr char rowTemplate[] = R"(    <tr>
    <td bgcolor="%s" width ="15%%">%s</td>
    <td bgcolor="%s" width ="5%%"><font color="%s">%s</font></td>
    <td bgcolor="%s" width ="80%%">%s</td>
    </tr>
)";

// Five digits on purpose: each browser reads them in its own way.
constexpr char lightRowColour[] = "#CCCCC";
constexpr char darkRowColour[] = "#999999";

struct StatusColour {
    const char* status;
    const char* colour;
};

constexpr StatusColour statusColours[] = {
    {"LOADED", "#006600"},
    {"FREE", "#006600"},
    {"OK", "#006600"},
    {"ERROR", "#660000"},
};
constexpr char otherStatusColour[] = "#000000";

constexpr std::size_t rowBytes = 2048;
constexpr std::size_t rowTextBytes = 1800;
// The template with its four colours and a terminator fits beside the texts, so no row loses its
// closing tags. (Each of the seven "%s" and three "%%" makes room rather than taking it.)
static_assert(sizeof(rowTemplate) + 4 * sizeof(darkRowColour) + rowTextBytes <= rowBytes);

const char* ColourOf(const std::string& status) {
    for (const StatusColour& entry : statusColours)
        if (status == entry.status)
            return entry.colour;
    return otherStatusColour;
}

/// As much of `text` as `room` holds; takes its length off `room`.
std::string Fit(const std::string& text, std::size_t& room) {
    std::string fitting = text.substr(0, room);
    room -= fitting.size();
    return fitting;
}

std::string FormatRow(const char* colour, const std::string& section, const std::string& status,
                      const std::string& file) {
    std::size_t room = rowTextBytes;
    const std::string fittingSection = Fit(section, room);
    const std::string fittingStatus = Fit(status, room);
    const std::string fittingFile = Fit(file, room);
    char row[rowBytes];
    std::snprintf(row, sizeof(row), rowTemplate, colour, fittingSection.c_str(), colour,
                  ColourOf(status), fittingStatus.c_str(), colour, fittingFile.c_str());
    return row;
}

} // namespace

Log& Log::GetInstance() {
    static Log instance;
    return instance;
}

Log::Log() {
    Put(header, std::ios::trunc);
}

Log::~Log() {
    Put(footer, std::ios::app);
}

void Log::Write(const std::string& section, const std::string& status, const std::string& file) {
    // The second line feed leaves an empty line after every row.
    Put(FormatRow(darkRow ? darkRowColour : lightRowColour, section, status, file) + "\n",
        std::ios::app);
    darkRow = !darkRow;
}

Log& Log::operator<<(const std::string& text) {
    Put(text + "\n", std::ios::app);
    return *this;
}

std::string Log::GetDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local); // localtime() keeps one date for all threads
    char date[24];
    return {date, std::strftime(date, sizeof(date), "%d/%m/%Y", &local)};
}

void Log::Put(const std::string& text, std::ios::openmode mode) {
    page.open(fileName, std::ios::out | mode);
    page << text;
    page.close();
}

} // namespace Vell
