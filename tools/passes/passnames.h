#pragma once

#include <string>
#include <vector>

namespace Passes {

/// What programs are called that draw without one of their own.
inline constexpr char fixedPipeline[] = "fixed pipeline";

/// What tells which pass it is: what its target and its programs are called (engine/core/labels.h),
/// and how it draws.
struct PassFacts {
    bool screen = false;               ///< goes to the screen, not into a texture
    std::string target;                ///< label; empty for the screen and for one without
    int draws = 0;                     ///< calls
    bool depthTested = false;          ///< some drawing was
    bool blended = false;              ///< the last drawing was
    std::vector<std::string> programs; ///< labels, or fixedPipeline
    std::vector<std::string> before;   ///< names of the frame's passes before it
};

/// The name of the pass: that of the first row in a table that fits, with a number when the frame
/// has that name already. A pass that no row fits is called as its target, or, when that has no
/// label, "pass" and its number in the frame.
std::string NameOfPass(const PassFacts& facts);

} // namespace Passes
