#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Art {

/// One option of a program: `--name`, or `--name VALUE` when it has a value.
struct Option {
    const char* name;            ///< with its dashes
    const char* value = nullptr; ///< what the help calls its value; null for a flag
    const char* help;            ///< what it does, in a line
    /// Called with the value (empty for a flag); false when the value cannot be used.
    std::function<bool(const std::string&)> apply;
};

/// What a program is called with. All programs that make the data read it alike, and answer -h and
/// --help with the same form of text.
struct CommandLine {
    const char* program;
    const char* purpose;                            ///< what the program does, in a line or more
    std::vector<const char*> operands = {"FOLDER"}; ///< their names; those in [] may be left out
    std::vector<Option> options{};
};

/// The help of a program: how it is called, what it does, and a line an option.
std::string HelpOf(const CommandLine& line);

/// Applies the options and returns the operands. Nothing when the program has only to end, with
/// `status`: 0 after the help that was asked for, on standard output; 2 after a call that cannot
/// be understood, with help and reason on standard error.
std::optional<std::vector<std::string>> ReadArguments(const CommandLine& line, int count,
                                                      char** arguments, int& status);

/// Prints help and reason on standard error; the status to end with, 2.
int Refuse(const CommandLine& line, const std::string& reason);

} // namespace Art
