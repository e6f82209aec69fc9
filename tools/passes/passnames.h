#pragma once

#include <string>
#include <vector>

namespace Passes {

/// What can be seen of a pass from outside, and tells which one it is.
struct PassFacts {
    bool screen = false; ///< goes to the screen, not into a texture
    int width = 0;       ///< of the target, in pixels
    int height = 0;
    int screenWidth = 0;
    int draws = 0;
    bool colourOff = false;            ///< no drawing wrote red, green or blue
    bool depthTested = false;          ///< some drawing was
    bool blended = false;              ///< the last drawing was
    std::vector<std::string> programs; ///< names
    std::vector<std::string> before;   ///< names of the frame's passes before it
};

/// The name of the pass: that of the first row in a table that fits, with a number when the frame
/// has that name already. A pass that no row fits is called "pass" and its number in the frame.
std::string NameOfPass(const PassFacts& facts);

/// What the target is called that a pass of this name drew into first; empty when nothing is known.
std::string TargetNamedBy(const std::string& pass);

/// What a program is called: the files that the texts came from, or the class that holds them,
/// found by words of the texts. "program" when nothing is known.
std::string NameOfProgram(const std::string& vertexText, const std::string& fragmentText,
                          const std::vector<std::string>& textFiles);

} // namespace Passes
