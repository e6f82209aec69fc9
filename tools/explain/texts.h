#pragma once

#include "demo/timeline.h"

#include <string>

namespace Explain {

/// One sentence or two: what the pass of that name is for; empty for one that nothing is known of.
std::string PurposeOf(const std::string& pass);

/// What happens in a segment of the timeline.
std::string DescriptionOf(Timeline::Segment segment);

/// The page's style sheet, for light and dark.
std::string StyleSheet();

} // namespace Explain
