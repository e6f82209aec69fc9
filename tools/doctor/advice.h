#pragma once

#include <string>

namespace Doctor {

// What to do, where more than one row says so.

/// A virtual display that does not turn SDL away, for the command that follows. A server that
/// starts over when its last program leaves does: SDL looks for a display, leaves, and comes back.
inline const std::string virtualDisplay = "xvfb-run -a -s \"-screen 0 1280x1024x24 -noreset\"";

inline const std::string resetAdvice =
    "have the X server stay when its last program leaves: give Xvfb, Xephyr or Xorg the option "
    "-noreset, as in " +
    virtualDisplay;

} // namespace Doctor
