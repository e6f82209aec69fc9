#pragma once

#include <iostream>
#include <string>

/// Says a figure that docs/reliability.md has; ./test NAME shows what the tests of that name said
/// so.
inline void TellMeasured(const std::string& what, const std::string& figures) {
    std::cout << "measured: " << what << ": " << figures << std::endl;
}
