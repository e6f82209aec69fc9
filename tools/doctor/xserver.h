#pragma once

#include "tools/stage/isolated.h"

namespace Doctor {

/// Asks the X server that DISPLAY names, if it names one, for what a window with OpenGL needs of
/// it; to be run in isolation. Reports "glx" and "depth" (bits a pixel), and "resets": whether the
/// server starts over when its last program leaves. To find that out it leaves, as SDL does when it
/// looks for a display.
void CollectServerFacts(const Tools::Report& report);

/// Connects to that server until the process ends, so that it does not start over meanwhile. False
/// when it does not answer; true when DISPLAY names none.
bool HoldServer();

} // namespace Doctor
