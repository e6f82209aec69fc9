#pragma once

#include "tools/passes/passes.h"

#include <string>
#include <vector>

namespace Explain {

/// A drawing (inline SVG) with a line for each target and a column for each pass: a dot where it
/// writes, rings where it reads, and a bar for as long as what was written is still read. Columns
/// link to "pass-1", "pass-2", ...
std::string FlowDiagram(const std::vector<Passes::Pass>& passes);

} // namespace Explain
