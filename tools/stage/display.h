#pragma once

#include "tools/stage/process.h"

#include <string>
#include <vector>

namespace Tools {

/// An X server without a screen (Xvfb), with OpenGL, that nobody else knows of: keys and the mouse
/// meet no other program. Started by the constructor, ended by the destructor; it does not outlive
/// this process.
class VirtualDisplay {
public:
    /// A screen of 1280 x 256 pixels and 24 bits, on a display number that was free; it stays when
    /// its last program leaves. `options` are options of Xvfb that overrule the usual ones:
    /// {"-extension", "GLX"}. Throws std::runtime_error when Xvfb does not start.
    explicit VirtualDisplay(const std::vector<std::string>& options);
    VirtualDisplay() : VirtualDisplay(std::vector<std::string>()) {}
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// For the variable DISPLAY: ":7".
    const std::string& Name() const { return name; }

private:
    Process server;
    std::string name;
};

/// Whether an X server takes this process's programs at the display of that name (":7",
/// "host:0.0"), within so many seconds. A server that starts over when its last program leaves may
/// do so then. No display has an empty name.
bool DisplayAnswers(const std::string& name, double patience = 10.0);

} // namespace Tools
