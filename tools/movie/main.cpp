// The film of the show, and single looks at it: what ./movie runs. Its --help names the options.

#include "demo/show.h"
#include "tools/explain/explain.h"
#include "tools/movie/film.h"
#include "tools/verify/verify.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What the user wants, as he wrote it.
struct Wish {
    std::string mode = "film";
    std::vector<std::string> words;
    std::map<std::string, std::string> values; ///< of options, by name; "" for those without

    bool Has(const std::string& name) const { return values.contains(name); }
};

class WrongUsage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Option {
    const char* name;
    bool hasValue;
};

const Option options[] = {
    {"--fps", true},    {"--scale", true},     {"--start", true}, {"--end", true},
    {"--jobs", true},   {"--lossless", false}, {"--every", true}, {"--references", true},
    {"--renew", false}, {"--times", false},
};

/// A number within bounds, which are told when it is not.
double Number(const std::string& name, const std::string& text, double least, double most) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(number >= least && number <= most))
        throw WrongUsage(name + ": expected a number from " + std::to_string(least) + " to " +
                         std::to_string(most) + ", found \"" + text + "\"");
    return number;
}

int WholeNumber(const std::string& name, const std::string& text, int least, int most) {
    const double number = Number(name, text, least, most);
    if (number != std::floor(number))
        throw WrongUsage(name + ": expected a whole number, found \"" + text + "\"");
    return static_cast<int>(number);
}

/// Some moment of the last frame at any rate that is not a very low one.
constexpr double lastMoment = 118.25;

double Time(const Wish& wish, const std::string& name, double otherwise) {
    return wish.Has(name) ? Number(name, wish.values.at(name), 0.0, Show::runningTime) : otherwise;
}

Stage::Rate RateOf(const Wish& wish) {
    return wish.Has("--fps") ? Stage::ParseRate(wish.values.at("--fps")) : Stage::Rate{};
}

int JobsOf(const Wish& wish) {
    constexpr int most = 256;
    if (wish.Has("--jobs"))
        return WholeNumber("--jobs", wish.values.at("--jobs"), 1, most);
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, most);
}

int ScaleOf(const Wish& wish) {
    constexpr int largest = 8;
    if (wish.Has("--scale"))
        return WholeNumber("--scale", wish.values.at("--scale"), 1, largest);
    return wish.Has("--lossless") ? 1 : 2;
}

/// The `index`th word; throws unless it ends in one of `ends`.
std::string OutPath(const Wish& wish, std::size_t index, const std::vector<std::string>& ends) {
    std::string list;
    for (const std::string& end : ends) {
        if (wish.words[index].ends_with(end) && wish.words[index].size() > end.size())
            return wish.words[index];
        list += (list.empty() ? "" : ", ") + end;
    }
    throw WrongUsage("expected a file name that ends in " + list + ", found \"" +
                     wish.words[index] + "\"");
}

const std::vector<std::string> filmEnds = {".mp4", ".mov", ".mkv"};

int RunFilm(const Wish& wish) {
    return Movie::MakeFilm({OutPath(wish, 0, filmEnds),
                            {RateOf(wish), ScaleOf(wish), wish.Has("--lossless"), ""},
                            Time(wish, "--start", 0.0),
                            Time(wish, "--end", Show::runningTime),
                            JobsOf(wish)});
}

int RunSheet(const Wish& wish) {
    const double step = wish.Has("--every")
                            ? Number("--every", wish.values.at("--every"), 0.001, Show::runningTime)
                            : 1.0;
    Movie::MakeContactSheet(RateOf(wish), Time(wish, "--start", 0.0), Time(wish, "--end", 118.0),
                            step, JobsOf(wish), OutPath(wish, 0, {".png"}));
    return EXIT_SUCCESS;
}

int RunAt(const Wish& wish) {
    Movie::MakePicture(RateOf(wish), Number("--at", wish.words[0], 0.0, lastMoment),
                       OutPath(wish, 1, {".png"}));
    return EXIT_SUCCESS;
}

int RunExplain(const Wish& wish) {
    Explain::MakePage(RateOf(wish), Number("--explain", wish.words[0], 0.0, lastMoment),
                      OutPath(wish, 1, {".html"}),
                      wish.Has("--times") ? Explain::Measured::Shown : Explain::Measured::LeftOut);
    return EXIT_SUCCESS;
}

int RunVerify(const Wish& wish) {
    const std::string folder = wish.Has("--references") ? wish.values.at("--references")
                                                        : std::string("tools/verify/reference");
    const std::string picture = wish.words.empty() ? "" : OutPath(wish, 0, {".png"});
    if (!wish.Has("--renew"))
        return Verify::VerifyShow(folder, picture);
    Verify::RenewReferences(folder);
    return EXIT_SUCCESS;
}

int RunJoin(const Wish& wish) {
    Movie::JoinFilms({wish.words.begin() + 1, wish.words.end()}, OutPath(wish, 0, filmEnds));
    return EXIT_SUCCESS;
}

struct Mode {
    const char* name;
    std::size_t fewest; ///< words that go with it
    std::size_t most;
    std::function<int(const Wish&)> run;
    std::vector<std::string> options; ///< that mean something to it
};

const std::vector<Mode> modes = {
    {"film", 1, 1, RunFilm, {"--fps", "--scale", "--start", "--end", "--lossless", "--jobs"}},
    {"--sheet", 1, 1, RunSheet, {"--fps", "--start", "--end", "--every", "--jobs"}},
    {"--at", 2, 2, RunAt, {"--fps"}},
    {"--explain", 2, 2, RunExplain, {"--fps", "--times"}},
    {"--join", 2, 1000, RunJoin, {}},
    {"--verify", 0, 1, RunVerify, {"--references", "--renew"}},
};

const Mode* FindMode(const std::string& name) {
    const auto found = std::find_if(modes.begin(), modes.end(),
                                    [&](const Mode& mode) { return mode.name == name; });
    return found == modes.end() ? nullptr : &*found;
}

const Option* FindOption(const std::string& name) {
    const auto found = std::find_if(std::begin(options), std::end(options),
                                    [&](const Option& option) { return option.name == name; });
    return found == std::end(options) ? nullptr : &*found;
}

Wish Parse(const std::vector<std::string>& arguments) {
    Wish wish;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (!word.starts_with("--")) {
            wish.words.push_back(word);
        } else if (FindMode(word)) {
            if (wish.mode != "film")
                throw WrongUsage(wish.mode + " and " + word + " do not go together");
            wish.mode = word;
        } else if (const Option* option = FindOption(word)) {
            if (option->hasValue && i + 1 == arguments.size())
                throw WrongUsage(word + ": expected a value");
            wish.values[word] = option->hasValue ? arguments[++i] : "";
        } else {
            throw WrongUsage("unknown option: " + word);
        }
    }
    if (wish.mode == "film" && wish.words.empty())
        wish.words.push_back("nimbrel.mp4");
    return wish;
}

int Run(const Wish& wish) {
    const Mode& mode = *FindMode(wish.mode);
    if (wish.words.size() < mode.fewest || wish.words.size() > mode.most)
        throw WrongUsage(std::string(mode.name) + ": expected " + std::to_string(mode.fewest) +
                         " to " + std::to_string(mode.most) + " words, found " +
                         std::to_string(wish.words.size()));
    for (const auto& [name, value] : wish.values)
        if (std::find(mode.options.begin(), mode.options.end(), name) == mode.options.end())
            throw WrongUsage(name + " means nothing here");
    return mode.run(wish);
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    try {
        return Run(Parse(words));
    } catch (const WrongUsage& error) {
        std::cerr << "movie: " << error.what() << "\nSee ./movie --help.\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "movie: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
