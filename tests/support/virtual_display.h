#pragma once

#include <string>

#include <sys/types.h>

/// An X server of the test's own (Xvfb), so that keys and the mouse meet no other program.
/// Started by the constructor, ended by the destructor.
class VirtualDisplay {
public:
    /// Throws std::runtime_error when Xvfb does not start.
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// For the variable DISPLAY: ":7".
    const std::string& Name() const { return name; }

private:
    pid_t server = -1;
    std::string name;
};
