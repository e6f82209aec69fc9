#include "art/common/options.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Art {

namespace {

constexpr int wrongUsage = 2;

std::string CallOf(const Option& option) {
    return option.value == nullptr ? option.name : option.name + std::string(" ") + option.value;
}

bool IsOptional(const char* operand) {
    return operand[0] == '[';
}

/// Why the option cannot be taken; empty when it was. Moves `next` behind the option's value.
std::string Take(const CommandLine& line, const std::vector<std::string>& words,
                 std::size_t& next) {
    const std::string name = words[next++];
    const auto option = std::find_if(line.options.begin(), line.options.end(),
                                     [&](const Option& o) { return o.name == name; });
    if (option == line.options.end())
        return "there is no \"" + name + "\"";
    if (option->value == nullptr)
        return option->apply("") ? "" : name + " cannot be used here";
    if (next == words.size())
        return name + " needs a value";
    const std::string value = words[next++];
    return option->apply(value) ? "" : name + " cannot be \"" + value + "\"";
}

/// Why the words cannot be understood; empty when they can.
std::string Understand(const CommandLine& line, const std::vector<std::string>& words,
                       std::vector<std::string>& operands) {
    for (std::size_t i = 0; i < words.size();) {
        if (words[i].starts_with("-")) {
            if (const std::string reason = Take(line, words, i); !reason.empty())
                return reason;
        } else {
            operands.push_back(words[i++]);
        }
    }
    if (operands.size() > line.operands.size())
        return "there is no \"" + operands[line.operands.size()] + "\"";
    if (operands.size() < line.operands.size() && !IsOptional(line.operands[operands.size()]))
        return std::string(line.operands[operands.size()]) + " is missing";
    return {};
}

} // namespace

std::string HelpOf(const CommandLine& line) {
    std::string help = line.program;
    for (const Option& option : line.options)
        help += " [" + CallOf(option) + "]";
    for (const char* operand : line.operands)
        help += std::string(" ") + operand;
    help += std::string("\n\n") + line.purpose + "\n";
    std::size_t width = 0;
    for (const Option& option : line.options)
        width = std::max(width, CallOf(option).size());
    for (const Option& option : line.options) {
        const std::string call = CallOf(option);
        help += "\n" + call + std::string(width - call.size() + 2, ' ') + option.help;
    }
    return line.options.empty() ? help : help + "\n";
}

std::optional<std::vector<std::string>> ReadArguments(const CommandLine& line, int count,
                                                      char** arguments, int& status) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    status = EXIT_SUCCESS;
    if (std::any_of(words.begin(), words.end(),
                    [](const std::string& w) { return w == "-h" || w == "--help"; })) {
        std::fputs(HelpOf(line).c_str(), stdout);
        return std::nullopt;
    }
    std::vector<std::string> operands;
    const std::string reason = Understand(line, words, operands);
    if (reason.empty())
        return operands;
    status = Refuse(line, reason);
    return std::nullopt;
}

int Refuse(const CommandLine& line, const std::string& reason) {
    std::fprintf(stderr, "%s\n%s: %s\n", HelpOf(line).c_str(), line.program, reason.c_str());
    return wrongUsage;
}

} // namespace Art
