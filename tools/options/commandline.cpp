#include "tools/options/commandline.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>

namespace Tools {

namespace {

template <class Row>
const Row* Find(const std::vector<Row>& rows, const std::string& name) {
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.name == name; });
    return found == rows.end() ? nullptr : &*found;
}

bool Contains(const std::vector<std::string>& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool IsOption(const std::string& text) {
    return text.size() > 1 && text[0] == '-' &&
           std::isdigit(static_cast<unsigned char>(text[1])) == 0;
}

/// "a b", or the one of them that is not empty.
std::string Joined(const std::string& a, const std::string& b) {
    return a + (a.empty() || b.empty() ? "" : " ") + b;
}

/// As it is written: "--scale N".
std::string Written(const Option& option) {
    return Joined(option.name, option.value);
}

std::string Written(const Operand& operand) {
    switch (operand.count) {
    case Count::AtMostOne:
        return "[" + operand.name + "]";
    case Count::OneOrMore:
        return operand.name + "...";
    case Count::One:
        break;
    }
    return operand.name;
}

bool Fits(const Kind& kind, const std::string& text) {
    return kind.fits ? kind.fits(text) : !text.empty();
}

/// Throws when the option's value, `given` at `index`, is missing or not of its kind.
void CheckValue(const Option& option, const std::vector<std::string>& given, std::size_t index) {
    const bool missing = index == given.size();
    if (missing || !Fits(option.kind, given[index]))
        throw WrongUsage(option.name + " needs " + option.kind.name +
                         (missing ? "" : ", not \"" + given[index] + "\"") + ": " +
                         Joined(option.name, option.example));
}

[[noreturn]] void RefuseOption(const Program& program, const Mode& mode, const std::string& name) {
    throw WrongUsage(name + " does not go with " +
                     (mode.name.empty() ? program.name + " without a mode" : mode.name) +
                     ", which takes " +
                     (mode.options.empty() ? "no options" : Listed(mode.options, "and")));
}

/// Throws when the mode takes no such option.
void CheckOptions(const Program& program, const Mode& mode, const Arguments& arguments) {
    for (const auto& [name, value] : arguments.options)
        if (program.modes.size() > 1 && !Contains(mode.options, name))
            RefuseOption(program, mode, name);
}

/// The operand at this place, counted from 0; null when there is none.
const Operand* OperandAt(const Mode& mode, std::size_t index) {
    if (index < mode.operands.size())
        return &mode.operands[index];
    const bool repeated = !mode.operands.empty() && mode.operands.back().count == Count::OneOrMore;
    return repeated ? &mode.operands.back() : nullptr;
}

std::string NamesOf(const std::vector<Operand>& operands) {
    std::vector<std::string> names;
    names.reserve(operands.size());
    for (const Operand& operand : operands)
        names.push_back(operand.kind.name);
    return Listed(names, "and");
}

/// Throws when the operand is one too many, or not of its kind.
void CheckOperand(const Mode& mode, std::size_t index, const std::string& text,
                  const std::string& right) {
    const Operand* const operand = OperandAt(mode, index);
    if (!operand)
        throw WrongUsage("\"" + text + "\" is one word too many" + right);
    if (!Fits(operand->kind, text))
        throw WrongUsage(Joined(mode.name, "needs ") + operand->kind.name + ", not \"" + text +
                         "\"" + right);
}

/// Throws when there are too few or too many, or one is not of its kind.
void CheckOperands(const Program& program, const Mode& mode,
                   const std::vector<std::string>& operands) {
    const std::string right =
        ": " + Joined(mode.name.empty() ? program.name : mode.name, mode.example);
    for (std::size_t i = 0; i < operands.size(); ++i)
        CheckOperand(mode, i, operands[i], right);
    const Operand* const next =
        operands.size() < mode.operands.size() ? &mode.operands[operands.size()] : nullptr;
    if (next && next->count != Count::AtMostOne)
        throw WrongUsage(Joined(mode.name, "needs ") + NamesOf(mode.operands) + right);
}

/// What each file and folder that was named has to be.
void Prepare(const Program& program, const Mode& mode, const Arguments& arguments) {
    for (const auto& [name, value] : arguments.options)
        if (const Kind& kind = Find(program.options, name)->kind; kind.prepare)
            kind.prepare(value);
    for (std::size_t i = 0; i < arguments.operands.size(); ++i)
        if (const Kind& kind = OperandAt(mode, i)->kind; kind.prepare)
            kind.prepare(arguments.operands[i]);
}

int RunMode(const Program& program, const std::vector<std::string>& given) {
    if (Contains(given, "-h") || Contains(given, "--help")) {
        std::cout << program.Help() << std::flush;
        return EXIT_SUCCESS;
    }
    const Arguments arguments = program.Parse(given);
    const Mode& mode = *Find(program.modes, arguments.mode);
    Prepare(program, mode, arguments);
    return mode.run(arguments);
}

/// "./movie --at T OUT.png"
std::string CallOf(const Program& program, const Mode& mode) {
    std::string call = Joined(program.name, mode.name);
    for (const Option& option : program.options)
        if (program.modes.size() == 1 || Contains(mode.options, option.name))
            call.append(" [").append(Written(option)).append("]");
    for (const Operand& operand : mode.operands)
        call.append(" ").append(Written(operand));
    return call;
}

/// Two columns: each option, and what it means.
std::string Meanings(const std::vector<Option>& options) {
    constexpr std::size_t gap = 2;
    std::size_t width = 0;
    for (const Option& option : options)
        width = std::max(width, Written(option).size());
    std::string table;
    for (const Option& option : options) {
        std::string left = Written(option);
        std::istringstream lines(option.meaning);
        for (std::string line; std::getline(lines, line); left.clear())
            table.append(left).append(width + gap - left.size(), ' ').append(line).append("\n");
    }
    return table;
}

} // namespace

std::string Arguments::Text(const std::string& option, const std::string& otherwise) const {
    return Has(option) ? Texts(option).back() : otherwise;
}

double Arguments::Number(const std::string& option, double otherwise) const {
    return Has(option) ? ParseNumber(Texts(option).back()) : otherwise;
}

int Arguments::WholeNumber(const std::string& option, int otherwise) const {
    return static_cast<int>(Number(option, otherwise));
}

std::vector<std::string> Arguments::Texts(const std::string& option) const {
    std::vector<std::string> texts;
    const auto [begin, end] = options.equal_range(option);
    for (auto each = begin; each != end; ++each)
        texts.push_back(each->second);
    return texts;
}

Arguments Program::Parse(const std::vector<std::string>& given) const {
    Arguments arguments;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const std::string& word = given[i];
        if (!IsOption(word)) {
            arguments.operands.push_back(word);
        } else if (Find(modes, word)) {
            if (!arguments.mode.empty())
                throw WrongUsage(arguments.mode + " and " + word + " do not go together");
            arguments.mode = word;
        } else if (const Option* option = Find(options, word); !option) {
            throw WrongUsage("there is no option " + word);
        } else if (option->value.empty()) {
            arguments.options.emplace(word, "");
        } else {
            CheckValue(*option, given, ++i);
            arguments.options.emplace(word, given[i]);
        }
    }
    const Mode& mode = *Find(modes, arguments.mode);
    CheckOptions(*this, mode, arguments);
    CheckOperands(*this, mode, arguments.operands);
    return arguments;
}

std::string Program::Help() const {
    std::string help;
    for (const Mode& mode : modes)
        help += CallOf(*this, mode) + '\n';
    help += '\n' + purpose + '\n';
    if (!options.empty())
        help += '\n' + Meanings(options);
    return remark.empty() ? help : help + '\n' + remark + '\n';
}

int Program::Run(int count, char** arguments) const {
    try {
        return RunMode(*this, {arguments + 1, arguments + count});
    } catch (const WrongUsage& error) {
        std::cerr << name << ": " << error.what() << "\nSee " << name << " --help.\n";
        return exitWrongUsage;
    } catch (const std::exception& error) {
        std::cerr << name << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}

} // namespace Tools
