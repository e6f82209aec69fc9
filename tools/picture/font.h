#pragma once

#include <functional>
#include <string>

namespace Tools {

// A font of dots: capitals, digits and ",.-".

constexpr int glyphRows = 7;
constexpr int glyphColumns = 5;
constexpr int glyphAdvance = 6; ///< dots from one letter's left edge to the next one's

/// Calls `dot` for each dot of the text, which is (column, row) from the text's upper left corner,
/// right and down. Small letters become capitals; what the font lacks leaves a gap.
void ForEachDot(const std::string& text, const std::function<void(int, int)>& dot);

} // namespace Tools
