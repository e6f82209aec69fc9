#pragma once

#include <array>

namespace Doctor {

/// One group of OpenGL entry points that the engine fetches when it starts.
struct GlGroup {
    const char* id;        ///< of its row
    const char* title;     ///< of its row
    const char* extension; ///< what the engine looks for in the driver's list
    const char** names;    ///< entry points, ended by a null pointer
    void*** pointers;      ///< where they are stored
};

/// All six, in the order in which the engine fetches them.
const std::array<GlGroup, 6>& GlGroups();

} // namespace Doctor
