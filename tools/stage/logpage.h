#pragma once

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace Tools {

/// One row of the table on the engine's log page, as a reader of the page sees it.
struct LogRow {
    std::string section; ///< who reports: "Image"
    std::string status;  ///< "LOADED", "ERROR", ...
    std::string file;    ///< what it is about: a path, or another detail

    bool operator==(const LogRow&) const = default;
};

std::ostream& operator<<(std::ostream& out, const LogRow& row);

/// Text that stands outside the rows: what a compiler of shaders said.
struct LogText {
    std::size_t rowsBefore = 0; ///< how many rows stand above it
    std::string text;           ///< without the line feeds at its end; not empty

    bool operator==(const LogText&) const = default;
};

/// What the engine's log page "Vell_log.html" says.
struct LogPage {
    bool hasHeader = false; ///< whether it begins as the engine begins a page
    bool complete = false;  ///< whether the footer is its end, as after an orderly exit
    std::vector<LogRow> rows;
    std::vector<LogText> texts;

    /// The first thing that the engine would not have written, as "line 17: ..."; empty when there
    /// is none. A page that breaks off is none such, wherever it does. What comes behind is read
    /// all the same.
    std::string problem;

    /// The rows that say "ERROR".
    std::vector<LogRow> Errors() const;
};

/// The longest page that is read, and the most rows; a show leaves some hundred, of 300 bytes each.
constexpr std::size_t mostLogBytes = static_cast<std::size_t>(16) << 20;
constexpr std::size_t mostLogRows = 50000;

/// The longest row, in bytes: the engine writes no longer one.
constexpr std::size_t mostLogRowBytes = 2048;

/// What a user has to know of the rows that say "ERROR", each once: "The demo's log says ERROR:
/// Image Data/a.png; XT3DStatic Data/b.xt3dstatic (see ./movie --doctor)", and a line feed; empty
/// when there are none.
std::string ErrorsInWords(const LogPage& page);

/// Reads a page, whatever its bytes are. A row is one only if it stands there as the engine writes
/// it, to the byte: its three cells of one colour, its status of the colour that belongs to it (or
/// to the word that it was before the engine cut the row), and no control character (bytes 0 to 31,
/// and 127) in its cells. Everything else between header and footer is text. What comes behind one
/// of the limits above is left out, which is a problem too.
LogPage ParseLogPage(std::string_view page);

/// The same of a file; of none, an empty page.
LogPage ReadLogPage(const std::filesystem::path& path = "Vell_log.html");

} // namespace Tools
