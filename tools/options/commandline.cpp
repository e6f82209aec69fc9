#include "tools/options/commandline.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace Tools {

namespace {

template <class Row>
const Row* Find(const std::vector<Row>& rows, const std::string& name) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.name == name; });
    return found == rows.end() ? nullptr : &*found;
}

/// As it is written: "--scale N".
std::string Written(const Option& option) {
    return option.value.empty() ? option.name : option.name + ' ' + option.value;
}

void CheckWords(const Mode& mode, std::size_t count) {
    if (count < mode.fewest || count > mode.most)
        throw WrongUsage(mode.name + ": expected " + std::to_string(mode.fewest) + " to " +
                         std::to_string(mode.most) + " words, found " + std::to_string(count));
}

void CheckOptions(const Mode& mode, const Arguments& arguments) {
    for (const auto& [name, value] : arguments.options)
        if (std::find(mode.options.begin(), mode.options.end(), name) == mode.options.end())
            throw WrongUsage(name + " means nothing here");
}

} // namespace

double ParseNumber(const std::string& name, const std::string& text, double least, double most) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(number >= least && number <= most))
        throw WrongUsage(name + ": expected a number from " + std::to_string(least) + " to " +
                         std::to_string(most) + ", found \"" + text + "\"");
    return number;
}

int ParseWholeNumber(const std::string& name, const std::string& text, int least, int most) {
    const double number = ParseNumber(name, text, least, most);
    if (number != std::floor(number))
        throw WrongUsage(name + ": expected a whole number, found \"" + text + "\"");
    return static_cast<int>(number);
}

std::string Arguments::Text(const std::string& option, const std::string& otherwise) const {
    return Has(option) ? options.at(option) : otherwise;
}

double Arguments::Number(const std::string& option, double least, double most,
                         double otherwise) const {
    return Has(option) ? ParseNumber(option, options.at(option), least, most) : otherwise;
}

int Arguments::WholeNumber(const std::string& option, int least, int most, int otherwise) const {
    return Has(option) ? ParseWholeNumber(option, options.at(option), least, most) : otherwise;
}

std::string Arguments::Path(std::size_t index, const std::vector<std::string>& ends) const {
    const std::string& word = words.at(index);
    std::string list;
    for (const std::string& end : ends) {
        if (word.ends_with(end) && word.size() > end.size())
            return word;
        list += (list.empty() ? "" : ", ") + end;
    }
    throw WrongUsage("expected a file name that ends in " + list + ", found \"" + word + "\"");
}

Arguments CommandLine::Parse(const std::vector<std::string>& given) const {
    Arguments arguments;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const std::string& word = given[i];
        if (!word.starts_with("--")) {
            arguments.words.push_back(word);
        } else if (Find(modes, word)) {
            if (!arguments.mode.empty())
                throw WrongUsage(arguments.mode + " and " + word + " do not go together");
            arguments.mode = word;
        } else if (const Option* option = Find(options, word)) {
            if (!option->value.empty() && i + 1 == given.size())
                throw WrongUsage(word + ": expected a value");
            arguments.options[word] = option->value.empty() ? "" : given[++i];
        } else {
            throw WrongUsage("unknown option: " + word);
        }
    }
    if (arguments.mode.empty())
        arguments.mode = modes.front().name;
    const Mode& mode = *Find(modes, arguments.mode);
    CheckWords(mode, arguments.words.size());
    CheckOptions(mode, arguments);
    return arguments;
}

int CommandLine::Run(const std::vector<std::string>& given) const {
    const Arguments arguments = Parse(given);
    return Find(modes, arguments.mode)->run(arguments);
}

std::string CommandLine::Help() const {
    constexpr std::size_t gap = 2;
    std::size_t width = 0;
    for (const Option& option : options)
        width = std::max(width, Written(option).size());
    std::string help;
    for (const Option& option : options) {
        std::string left = Written(option);
        std::istringstream lines(option.meaning);
        for (std::string line; std::getline(lines, line); left.clear())
            help += left + std::string(width + gap - left.size(), ' ') + line + '\n';
    }
    return help;
}

} // namespace Tools
