#pragma once

#include "tools/doctor/row.h"
#include "tools/stage/logpage.h"
#include "tools/stage/process.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Doctor {

/// The programs that a rehearsal needs, in the folder of the build.
struct Programs {
    std::filesystem::path demo;
    std::filesystem::path probe;

    /// Where they lie in a build folder.
    static Programs In(const std::filesystem::path& build);
};

/// A frame of the rehearsal.
struct Frame {
    double time;         ///< seconds of demo time
    double milliseconds; ///< until all of it was drawn
};

/// What a rehearsal showed.
struct Rehearsal {
    Tools::Ending end;                    ///< how the demo ended
    double seconds = 0.0;                 ///< that the show was to take
    std::vector<Frame> frames;            ///< all but the first
    int errors = 0;                       ///< of OpenGL
    std::string firstError;               ///< its number, in hexadecimal
    std::vector<Tools::LogRow> errorRows; ///< of the log, those that say ERROR
};

/// Plays the demo itself, with the data of the working directory: the whole show, in fast motion,
/// within `seconds` after loading, without sound. It runs in a scratch directory, so the user's log
/// page stays as it is.
Rehearsal Rehearse(const Programs& programs, double seconds);

/// The rows about the rehearsal.
Table RehearsalRows(const Rehearsal& rehearsal);

/// The same rows when there was none, for a reason that follows a colon.
Table NoRehearsalRows(const std::string& reason);

} // namespace Doctor
