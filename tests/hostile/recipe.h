#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace Hostile {

/// Files in order, to make damaged ones of, by name.
using Bases = std::map<std::string, std::string>;

/// What a file is made of.
struct Content {
    std::string bytes;
    std::size_t hole = 0; ///< zeros behind them, which cost no disk
};

/// The content that a recipe describes: it is a row of steps, each with what it needs, between
/// blanks:
///
///     base NAME           one of the bases
///     text "..."          appends; \n \r \t \0 \xNN as usual, {3*ab} is ababab
///     cut N               keeps the first N bytes
///     tokens N            keeps everything before the end of the Nth word
///     put AT "..."        overwrites from there on; AT is a number, or "MARK"+N: N bytes behind
///                         the beginning of the first MARK
///     drop AT N           takes N bytes out
///     insert AT "..."     puts bytes in
///     mend                gives every chunk of a PNG the checksum of what it holds
///     hole N              appends N zeros that cost no disk; the last step only
///
/// Throws std::runtime_error when a recipe is not understood.
Content MakeContent(const std::string& recipe, const Bases& bases);

} // namespace Hostile
