#pragma once

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include <fcntl.h>

namespace Tools {

/// What LD_PRELOAD has to say so that programs get this library under them. The variable is a list
/// that splits at blanks and colons and has no way to quote them, so the library goes by the number
/// of an open file: it stays open here, and so in every program that is started from here. Throws
/// std::runtime_error when the library cannot be opened.
inline std::string Preloadable(const std::filesystem::path& library) {
    const int opened = open(library.c_str(), O_RDONLY); // not to be closed by exec
    if (opened < 0)
        throw std::runtime_error("cannot preload " + library.string() + ": " +
                                 std::generic_category().message(errno));
    return "/proc/self/fd/" + std::to_string(opened);
}

} // namespace Tools
