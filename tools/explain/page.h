#pragma once

#include "tools/explain/explain.h"
#include "tools/explain/story.h"

#include <string>

namespace Explain {

/// The page that tells the story: HTML 5 that is well-formed XML too, with everything in it.
std::string PageOf(const Story& story, Measured measured);

} // namespace Explain
