#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tools {

/// What a command line says that cannot be; its text is for the user.
class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `text` as a number from `least` to `most`. Throws WrongUsage, which tells these and begins with
/// `name`, for anything else.
double ParseNumber(const std::string& name, const std::string& text, double least, double most);

/// Likewise a whole one.
int ParseWholeNumber(const std::string& name, const std::string& text, int least, int most);

/// What a program was told: a mode, the words that go with it, and options.
class Arguments {
public:
    std::string mode;
    std::vector<std::string> words;
    std::map<std::string, std::string> options; ///< by name; "" for those without a value

    bool Has(const std::string& option) const { return options.contains(option); }

    /// The value of an option, or `otherwise` without it. The numbers throw as ParseNumber() does.
    std::string Text(const std::string& option, const std::string& otherwise) const;
    double Number(const std::string& option, double least, double most, double otherwise) const;
    int WholeNumber(const std::string& option, int least, int most, int otherwise) const;

    /// Word `index`, a file name that ends in one of `ends` and has more than that; throws
    /// WrongUsage for another.
    std::string Path(std::size_t index, const std::vector<std::string>& ends) const;
};

/// "--scale N", and what the help says of it.
struct Option {
    std::string name;
    std::string value;   ///< as the help calls it; empty for an option without
    std::string meaning; ///< may have several lines; empty in a program without help
};

/// One of the things that a program can do.
struct Mode {
    std::string name;                         ///< "--join"
    std::size_t fewest = 0;                   ///< words that go with it
    std::size_t most = 0;                     ///< likewise
    std::vector<std::string> options;         ///< names of those that mean something to it
    std::function<int(const Arguments&)> run; ///< answers the exit status
};

/// All that a program understands.
struct CommandLine {
    std::vector<Option> options;
    std::vector<Mode> modes; ///< the first is what it does unless another is named

    /// Sorts the arguments of main(), without the program's name. Throws WrongUsage for an option
    /// that is not in the tables, that lacks its value or means nothing in the mode, for two modes,
    /// and for too few or too many words.
    Arguments Parse(const std::vector<std::string>& given) const;

    /// Parses, and runs the mode.
    int Run(const std::vector<std::string>& given) const;

    /// A line for each option with its meaning beside it.
    std::string Help() const;
};

} // namespace Tools
