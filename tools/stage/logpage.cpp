#include "tools/stage/logpage.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>

namespace Tools {

namespace {

constexpr std::string_view header =
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

constexpr std::string_view footer = "    </table>\n</body>\n</html>\n";

constexpr std::string_view rowBegin = "    <tr>\n";

// The colours that rows take in turn. The first has five digits.
constexpr std::array<std::string_view, 2> rowColours = {"#CCCCC", "#999999"};

// The engine cuts the three texts of a row so that they have no more bytes together.
constexpr std::size_t mostTextBytes = 1800;

std::string_view ColourOf(std::string_view status) {
    if (status == "LOADED" || status == "FREE" || status == "OK")
        return "#006600";
    return status == "ERROR" ? "#660000" : "#000000";
}

bool IsControl(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return byte < 32 || byte == 127;
}

/// In texts, compilers lay out what they say.
bool IsForeign(char letter) {
    return IsControl(letter) && letter != '\n' && letter != '\t' && letter != '\r';
}

/// Takes a text apart from its beginning on.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest(text) {}

    /// Steps over `word`; false, and stays, when something else stands there.
    bool Skip(std::string_view word) {
        if (!rest.starts_with(word))
            return false;
        rest.remove_prefix(word.size());
        return true;
    }

    /// Steps over everything before `end` and over that, and returns what was before; nothing when
    /// it does not come.
    std::optional<std::string_view> Until(std::string_view end) {
        const std::size_t at = rest.find(end);
        if (at == std::string_view::npos)
            return std::nullopt;
        const std::string_view before = rest.substr(0, at);
        rest.remove_prefix(at + end.size());
        return before;
    }

    std::string_view Rest() const { return rest; }

private:
    std::string_view rest;
};

/// A row that was read, and where it ends.
struct ReadRow {
    LogRow row;
    std::size_t bytes = 0;
    std::string_view colour;
};

/// One cell: its colour has to be `colour`.
std::optional<std::string> ReadCell(Scanner& scanner, std::string_view colour,
                                    std::string_view width, std::string_view before,
                                    std::string_view end) {
    if (!scanner.Skip("    <td bgcolor=\"") || !scanner.Skip(colour) ||
        !scanner.Skip("\" width =\"") || !scanner.Skip(width) || !scanner.Skip("\">") ||
        !scanner.Skip(before))
        return std::nullopt;
    const auto text = scanner.Until(end);
    if (!text || std::any_of(text->begin(), text->end(), IsControl))
        return std::nullopt;
    return std::string(*text);
}

/// A status, and the colour that it has.
struct Status {
    std::string word;
    std::string colour;
};

std::optional<Status> ReadStatus(Scanner& scanner, std::string_view colour) {
    auto cell = ReadCell(scanner, colour, "5%", "<font color=\"", "</font></td>\n");
    const std::size_t open = ColourOf("").size();
    if (!cell || cell->size() < open + 2 || cell->substr(open, 2) != "\">")
        return std::nullopt;
    return Status{cell->substr(open + 2), cell->substr(0, open)};
}

/// The colour follows from the status; where the row's texts are as long as they can be, from one
/// of which the end may be lost.
bool ColourFits(const Status& status, std::size_t textBytes) {
    if (status.colour == ColourOf(status.word))
        return true;
    const auto begins = [&](const char* word) {
        return std::string_view(word).starts_with(status.word) && status.colour == ColourOf(word);
    };
    return textBytes == mostTextBytes &&
           (begins("LOADED") || begins("FREE") || begins("OK") || begins("ERROR"));
}

/// The row that `text` begins with, its cells in this colour.
std::optional<ReadRow> ReadColouredRow(std::string_view text, std::string_view colour) {
    Scanner scanner(text.substr(0, mostLogRowBytes));
    if (!scanner.Skip(rowBegin))
        return std::nullopt;
    const auto section = ReadCell(scanner, colour, "15%", "", "</td>\n");
    const auto status = section ? ReadStatus(scanner, colour) : std::nullopt;
    const auto file = status ? ReadCell(scanner, colour, "80%", "", "</td>\n") : std::nullopt;
    if (!file || !scanner.Skip("    </tr>\n\n") ||
        !ColourFits(*status, section->size() + status->word.size() + file->size()))
        return std::nullopt;
    const std::size_t bytes = std::min(text.size(), mostLogRowBytes) - scanner.Rest().size();
    return ReadRow{{*section, status->word, *file}, bytes, colour};
}

std::optional<ReadRow> ReadRowAt(std::string_view text) {
    for (const std::string_view colour : rowColours)
        if (auto row = ReadColouredRow(text, colour))
            return row;
    return std::nullopt;
}

/// Reads a page from its beginning to its end.
class Reader {
public:
    explicit Reader(std::string_view whole) : page(whole), rest(whole) {}

    LogPage Read() {
        if (page.size() > mostLogBytes) {
            page = rest = page.substr(0, mostLogBytes);
            Object("longer than a page can be", page.size());
        }
        ReadHeader();
        while (!rest.empty() && !BreaksOff() && !ReadFooter() && ReadNext())
            continue;
        EndText();
        return result;
    }

private:
    /// Notes what is wrong with byte `at` of the page, unless something was before.
    void Object(const std::string& what, std::size_t at) {
        if (!result.problem.empty())
            return;
        const auto line =
            1 + std::count(page.begin(), page.begin() + static_cast<std::ptrdiff_t>(at), '\n');
        result.problem = "line " + std::to_string(line) + ": " + what;
    }

    std::size_t At() const { return page.size() - rest.size(); }

    void ReadHeader() {
        result.hasHeader = rest.starts_with(header);
        if (result.hasHeader)
            rest.remove_prefix(header.size());
        else if (header.starts_with(rest)) // it breaks off
            rest = {};
        else
            Object("expected the header of a page", 0);
    }

    /// Whether the page ends here with the beginning of a row or of the footer.
    bool BreaksOff() const {
        if (rowBegin.starts_with(rest) || (footer.starts_with(rest) && rest != footer))
            return true;
        return rest.starts_with(rowBegin) && rest.size() < mostLogRowBytes &&
               rest.find("</tr>\n\n") == std::string_view::npos;
    }

    /// The footer is one only at the end.
    bool ReadFooter() {
        result.complete = result.hasHeader && rest == footer;
        if (!result.complete && rest.starts_with(footer))
            Object("a footer that is not the end", At());
        return result.complete;
    }

    /// A row, or a line of text; false when there is no room for more.
    bool ReadNext() {
        if (const auto row = ReadRowAt(rest))
            return AddRow(*row);
        AddLine(rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1));
        return true;
    }

    bool AddRow(const ReadRow& read) {
        if (result.rows.size() == mostLogRows) {
            Object("more rows than a page can have", At());
            return false;
        }
        EndText();
        if (read.colour != rowColours[result.rows.size() % rowColours.size()])
            Object("a row of the other colour: one is missing before it", At());
        result.rows.push_back(read.row);
        rest.remove_prefix(read.bytes);
        return true;
    }

    void AddLine(std::string_view line) {
        if (line == rowBegin)
            Object("a row that is not as the engine writes it", At());
        if (std::any_of(line.begin(), line.end(), IsForeign))
            Object("a control character", At());
        text += line;
        rest.remove_prefix(line.size());
    }

    void EndText() {
        while (!text.empty() && text.back() == '\n')
            text.pop_back();
        if (!text.empty())
            result.texts.push_back({result.rows.size(), text});
        text.clear();
    }

    std::string_view page;
    std::string_view rest; ///< of the page, unread
    std::string text;      ///< since the last row
    LogPage result;
};

} // namespace

std::ostream& operator<<(std::ostream& out, const LogRow& row) {
    return out << '(' << row.section << " | " << row.status << " | " << row.file << ')';
}

std::vector<LogRow> LogPage::Errors() const {
    std::vector<LogRow> errors;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(errors),
                 [](const LogRow& row) { return row.status == "ERROR"; });
    return errors;
}

std::string ErrorsInWords(const LogPage& page) {
    std::vector<std::string> told;
    std::string list;
    for (const LogRow& row : page.Errors()) {
        const std::string text = row.section + ' ' + row.file;
        if (std::find(told.begin(), told.end(), text) != told.end())
            continue;
        told.push_back(text);
        list += (list.empty() ? "" : "; ") + text;
    }
    return list.empty() ? "" : "The demo's log says ERROR: " + list + " (see ./movie --doctor)\n";
}

LogPage ParseLogPage(std::string_view page) {
    return Reader(page).Read();
}

LogPage ReadLogPage(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, 1 << 16> piece{};
    while (text.size() <= mostLogBytes && // one more shows that there are too many
           (file.read(piece.data(), piece.size()), file.gcount() > 0))
        text.append(piece.data(), static_cast<std::size_t>(file.gcount()));
    return ParseLogPage(text);
}

} // namespace Tools
