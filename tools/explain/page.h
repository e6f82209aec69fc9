#pragma once

#include "tools/explain/explain.h"
#include "tools/explain/framerecord.h"

#include <string>

namespace Explain {

/// The page that shows the frame: HTML 5 that is well-formed XML too, with everything in it.
std::string PageOf(const FrameRecord& record, Measured measured);

} // namespace Explain
