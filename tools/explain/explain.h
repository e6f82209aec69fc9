#pragma once

#include "tools/stage/rate.h"

#include <string>

namespace Explain {

/// What depends on the machine that makes the page: how long each pass took, and what drew it.
enum class Measured { Shown, LeftOut };

/// Writes a page (HTML 5, one file that needs nothing else) that shows how the frame came about
/// that a film at `rate` shows at `time` seconds of demo time: every pass with the pictures that it
/// left. Without what was measured, pages made from the same data by the same driver are the same.
///
/// Once a process, as PlayShow(), which then has left its working directory. The file appears when
/// it is complete. Throws std::runtime_error with a plain message for a time outside of the show
/// and for a path that cannot be written.
void MakePage(const Stage::Rate& rate, double time, const std::string& outPath, Measured measured);

} // namespace Explain
