#pragma once

#include <string>
#include <vector>

namespace Probe {

/// What the probe is to do, as environment variables say it.
struct Settings {
    std::string report;        ///< file; empty for none
    std::string frames;        ///< likewise
    double step = 0.0;         ///< seconds of demo time from frame to frame; 0: not so
    std::vector<double> times; ///< of the frames, in seconds of demo time; empty: not so
    double speed = 0.0;        ///< how many times as fast time passes; 0: not so
    std::vector<double> shots; ///< when pictures are taken, in seconds of demo time
    std::string shotFolder;
};

/// Reads them. Ends the program with a message and with all that can be set when one of them has no
/// sense: a number that is none, a name that is none, two that decide the time.
Settings ReadSettings();

} // namespace Probe
