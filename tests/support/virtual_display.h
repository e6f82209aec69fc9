#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

/// An X server of the test's own (Xvfb), so that keys and the mouse meet no other program.
/// Started by the constructor, ended by the destructor.
class VirtualDisplay {
public:
    /// With the usual options. Throws std::runtime_error when Xvfb does not start.
    VirtualDisplay() : VirtualDisplay(std::vector<std::string>()) {}

    /// `changes` are options of Xvfb that overrule the usual ones: {"-extension", "GLX"}.
    explicit VirtualDisplay(const std::vector<std::string>& changes);

    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// For the variable DISPLAY: ":7".
    const std::string& Name() const { return name; }

private:
    pid_t server = -1;
    std::string name;
};
