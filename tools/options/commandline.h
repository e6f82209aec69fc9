#pragma once

#include "tools/options/kinds.h"
#include "tools/options/wrongusage.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Tools {

/// The exit status of a program that refuses what it was called with; nothing was done then.
constexpr int exitWrongUsage = 2;

/// What a program was told, each text as its table wants it.
struct Arguments {
    std::string mode; ///< "" in the first of the program's modes
    std::vector<std::string> operands;
    std::multimap<std::string, std::string> options; ///< by name; "" for those without a value

    bool Has(const std::string& option) const { return options.contains(option); }

    /// The value of an option, of several the last, or `otherwise` without it.
    std::string Text(const std::string& option, const std::string& otherwise) const;
    double Number(const std::string& option, double otherwise) const;
    int WholeNumber(const std::string& option, int otherwise) const;

    /// All its values, in the order in which they were given.
    std::vector<std::string> Texts(const std::string& option) const;
};

/// An option, such as "--scale N".
struct Option {
    std::string name;
    std::string value = {};   ///< as the help calls it; empty for an option without
    Kind kind = {};           ///< of its value
    std::string example = {}; ///< of its value
    std::string meaning = {}; ///< for the help; may have several lines
};

/// How many of a kind there are.
enum class Count { One, AtMostOne, OneOrMore };

/// What stands beside the options.
struct Operand {
    std::string name; ///< in the help: "FOLDER"
    Kind kind;
    Count count = Count::One; ///< of all but the last operand, One
};

/// One of the things that a program can do.
struct Mode {
    std::string name = {}; ///< "--join"; the first mode, which need not be named, has none
    std::vector<Operand> operands = {};
    std::string example = {};                 ///< operands that would be right: "97 frame.png"
    std::vector<std::string> options = {};    ///< names of those that mean something to it
    std::function<int(const Arguments&)> run; ///< answers the exit status
};

/// All that a program understands. Whatever it refuses, it does so in the same words as the scripts
/// (packaging/options.sh): the mistake, and what would be right.
struct Program {
    std::string name;    ///< as its user calls it: "./movie"
    std::string purpose; ///< what it does, in a line or more
    std::vector<Option> options = {};
    std::vector<Mode> modes;
    std::string remark = {}; ///< the end of its help

    /// Sorts the arguments of main(), without the program's name. Throws WrongUsage for options
    /// that are in no table, lack their value or mean nothing in the mode; for two modes; for too
    /// few or too many operands; and for texts that are not of their kind. A word that begins with
    /// a dash is an option, unless a digit follows.
    Arguments Parse(const std::vector<std::string>& given) const;

    /// How it is called, what it does, and a line or more for each option.
    std::string Help() const;

    /// All that main() does: answers -h and --help on standard output, else parses, prepares what
    /// was named and runs the mode. The exit status: the mode's; 2 with the reason on standard
    /// error for WrongUsage; 1 likewise for any other exception.
    int Run(int count, char** arguments) const;
};

} // namespace Tools
