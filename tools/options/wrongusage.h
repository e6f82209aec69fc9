#pragma once

#include <stdexcept>

namespace Tools {

/// What a program was asked for and cannot be; nothing was done for it. Its text is for the user,
/// and says what would be right.
class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Tools
