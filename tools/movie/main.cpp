// The film of the show, and single looks at it: what ./movie runs. Its --help names the options.

#include "demo/show.h"
#include "tools/explain/explain.h"
#include "tools/movie/film.h"
#include "tools/options/commandline.h"
#include "tools/verify/verify.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Tools::Arguments;

/// Some moment of the last frame at any rate that is not a very low one.
constexpr double lastMoment = 118.25;

const std::vector<std::string> filmEnds = {".mp4", ".mov", ".mkv"};

double TimeOf(const Arguments& arguments, const std::string& option, double otherwise) {
    return arguments.Number(option, 0.0, Show::runningTime, otherwise);
}

/// The moment that stands behind the mode.
double MomentOf(const Arguments& arguments) {
    return Tools::ParseNumber(arguments.mode, arguments.words[0], 0.0, lastMoment);
}

Stage::Rate RateOf(const Arguments& arguments) {
    return arguments.Has("--fps") ? Stage::ParseRate(arguments.options.at("--fps")) : Stage::Rate{};
}

int JobsOf(const Arguments& arguments) {
    constexpr int most = 256;
    const int cores = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, most);
    return arguments.WholeNumber("--jobs", 1, most, cores);
}

int ScaleOf(const Arguments& arguments) {
    constexpr int largest = 8;
    return arguments.WholeNumber("--scale", 1, largest, arguments.Has("--lossless") ? 1 : 2);
}

int RunFilm(const Arguments& arguments) {
    return Movie::MakeFilm(
        {.path = arguments.words.empty() ? "nimbrel.mp4" : arguments.Path(0, filmEnds),
         .format = {.rate = RateOf(arguments),
                    .scale = ScaleOf(arguments),
                    .lossless = arguments.Has("--lossless"),
                    .comment = ""},
         .begin = TimeOf(arguments, "--start", 0.0),
         .end = TimeOf(arguments, "--end", Show::runningTime),
         .jobs = JobsOf(arguments)});
}

int RunSheet(const Arguments& arguments) {
    const double step = arguments.Number("--every", 0.001, Show::runningTime, 1.0);
    Movie::MakeContactSheet(RateOf(arguments), TimeOf(arguments, "--start", 0.0),
                            TimeOf(arguments, "--end", 118.0), step, JobsOf(arguments),
                            arguments.Path(0, {".png"}));
    return EXIT_SUCCESS;
}

int RunAt(const Arguments& arguments) {
    Movie::MakePicture(RateOf(arguments), MomentOf(arguments), arguments.Path(1, {".png"}));
    return EXIT_SUCCESS;
}

int RunExplain(const Arguments& arguments) {
    Explain::MakePage(RateOf(arguments), MomentOf(arguments), arguments.Path(1, {".html"}),
                      arguments.Has("--times") ? Explain::Measured::Shown
                                               : Explain::Measured::LeftOut);
    return EXIT_SUCCESS;
}

int RunVerify(const Arguments& arguments) {
    const std::string folder = arguments.Text("--references", "tools/verify/reference");
    const std::string picture = arguments.words.empty() ? "" : arguments.Path(0, {".png"});
    if (!arguments.Has("--renew"))
        return Verify::VerifyShow(folder, picture);
    Verify::RenewReferences(folder);
    return EXIT_SUCCESS;
}

int RunJoin(const Arguments& arguments) {
    Movie::JoinFilms({arguments.words.begin() + 1, arguments.words.end()},
                     arguments.Path(0, filmEnds));
    return EXIT_SUCCESS;
}

const Tools::CommandLine commandLine = {
    .options = {{"--fps", "RATE", ""},
                {"--scale", "N", ""},
                {"--start", "S", ""},
                {"--end", "S", ""},
                {"--jobs", "N", ""},
                {"--lossless", "", ""},
                {"--every", "S", ""},
                {"--references", "D", ""},
                {"--renew", "", ""},
                {"--times", "", ""}},
    .modes = {
        {"film", 0, 1, {"--fps", "--scale", "--start", "--end", "--lossless", "--jobs"}, RunFilm},
        {"--sheet", 1, 1, {"--fps", "--start", "--end", "--every", "--jobs"}, RunSheet},
        {"--at", 2, 2, {"--fps"}, RunAt},
        {"--explain", 2, 2, {"--fps", "--times"}, RunExplain},
        {"--join", 2, 1000, {}, RunJoin},
        {"--verify", 0, 1, {"--references", "--renew"}, RunVerify},
    }};

} // namespace

int main(int count, char** arguments) {
    try {
        return commandLine.Run({arguments + 1, arguments + count});
    } catch (const Tools::WrongUsage& error) {
        std::cerr << "movie: " << error.what() << "\nSee ./movie --help.\n";
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "movie: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
