#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Tools {

/// What an operand or the value of an option must be.
struct Kind {
    std::string name; ///< as refusals call it: "a whole number from 1 to 8"
    std::function<bool(const std::string&)> fits; ///< whether a text is one; without it, all but ""
    std::function<void(const std::string&)>
        prepare; ///< before the work: throws WrongUsage when that
                 ///< cannot be done with it, in spite of its look
};

/// Any text, called `name`.
Kind AnyText(const std::string& name);

/// A decimal number without exponent from `least` to `most`; `what` is "a number", or more exactly
/// "a time".
Kind NumberKind(const std::string& what, double least, double most);

/// Likewise a whole one.
Kind WholeNumberKind(int least, int most);

/// One of these, as in `name`.
Kind OneOf(const std::string& name, const std::vector<std::string>& texts);

/// A file that will be written, whose name ends in one of these and has more than that.
Kind FileToWrite(const std::vector<std::string>& ends);

/// A file that is there, called `name`: "a score".
Kind FileToRead(const std::string& name);

/// A folder that is there.
Kind FolderToRead();

/// A folder that will be filled. It is made if it is not there.
Kind FolderToFill();

/// "a, b or c", with `last` before the last one.
std::string Listed(const std::vector<std::string>& texts, const std::string& last);

/// A number that NumberKind() takes, of whatever size; not a number for every other text.
double ParseNumber(const std::string& text);

} // namespace Tools
