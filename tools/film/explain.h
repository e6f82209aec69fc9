#pragma once

#include "tools/film/rate.h"

#include <string>

namespace Film {

/// Writes a page (HTML 5, one file that needs nothing else) that shows how the frame came about
/// that a film at `rate` shows at `time` seconds of demo time: every pass with the pictures that it
/// left.
///
/// Once a process, as PlayShow(). The file appears when it is complete. Throws std::runtime_error
/// with a plain message for a time outside of the show and for a path that cannot be written.
void Explain(const Rate& rate, double time, const std::string& outPath);

} // namespace Film
