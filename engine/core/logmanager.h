#pragma once

#include <fstream>
#include <string>

namespace Vell {

/// The HTML page "Vell_log.html" in the working directory: one table row for each thing that was
/// started, loaded, freed or that failed.
///
/// The file is opened, appended to and closed by every single call, so that it is complete on disk
/// even when the program dies. Nothing is reported when it cannot be opened. Texts are written as
/// they are, not escaped.
class Log {
public:
    /// The one instance. The first call of a run empties the page and writes its header; the footer
    /// follows at normal exit.
    static Log& GetInstance();

    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    /// Appends one row; rows alternate between two greys, a row that could not be written counts.
    ///
    /// @param section  who reports: a class or a stage of start-up.
    /// @param status   "LOADED", "FREE" and "OK" show green, "ERROR" red, any other word black,
    ///                 "ok" among them.
    /// @param file     path or detail. The three texts share 1,800 characters; what is beyond is
    ///                 cut from the last of them.
    void Write(const std::string& section, const std::string& status, const std::string& file);

    /// Appends `text` and a line feed between the rows, for compiler messages. Does not count as a
    /// row: the greys go on as if it were not there.
    Log& operator<<(const std::string& text);

    /// Today's local date as day/month/year, for example 05/03/2010.
    static std::string GetDate();

private:
    Log();
    ~Log();

    /// Opens the page in `mode` (truncating or appending), writes `text` as it is and closes it.
    void Put(const std::string& text, std::ios::openmode mode);

    std::ofstream page;   ///< open only inside Put()
    bool darkRow = false; ///< whether the next row is the darker of the two greys
};

} // namespace Vell
