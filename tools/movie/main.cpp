// The film of the show, and single looks at it: what ./movie runs. Its --help names the options.

#include "demo/show.h"
#include "tools/explain/explain.h"
#include "tools/movie/film.h"
#include "tools/options/commandline.h"
#include "tools/options/places.h"
#include "tools/verify/verify.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Tools::Arguments;
using Tools::NumberKind;

/// Some moment of the last frame at any rate that is not a very low one.
constexpr double lastMoment = 118.25;

constexpr int mostJobs = 256;
constexpr const char* referenceFolder = "tools/verify/reference";

Stage::Rate RateOf(const Arguments& arguments) {
    return Stage::ParseRate(arguments.Text("--fps", "60"));
}

/// The moment that stands behind the mode.
double MomentOf(const Arguments& arguments) {
    return Tools::ParseNumber(arguments.operands[0]);
}

int JobsOf(const Arguments& arguments) {
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    return arguments.WholeNumber("--jobs", std::clamp(cores, 1, mostJobs));
}

int RunFilm(const Arguments& arguments) {
    const bool lossless = arguments.Has("--lossless");
    const std::string path = arguments.operands.empty() ? "nimbrel.mp4" : arguments.operands[0];
    Tools::CheckFileToWrite(path);
    return Movie::MakeFilm({.path = path,
                            .format = {.rate = RateOf(arguments),
                                       .scale = arguments.WholeNumber("--scale", lossless ? 1 : 2),
                                       .lossless = lossless,
                                       .comment = ""},
                            .begin = arguments.Number("--start", 0.0),
                            .end = arguments.Number("--end", Show::runningTime),
                            .jobs = JobsOf(arguments)});
}

int RunSheet(const Arguments& arguments) {
    if (arguments.Has("--cuts")) {
        Movie::MakeCutSheet(RateOf(arguments), JobsOf(arguments), arguments.operands[0]);
        return EXIT_SUCCESS;
    }
    Movie::MakeContactSheet(RateOf(arguments), arguments.Number("--start", 0.0),
                            arguments.Number("--end", 118.0), arguments.Number("--every", 1.0),
                            JobsOf(arguments), arguments.operands[0]);
    return EXIT_SUCCESS;
}

int RunAt(const Arguments& arguments) {
    Movie::MakePicture(RateOf(arguments), MomentOf(arguments), arguments.operands[1]);
    return EXIT_SUCCESS;
}

int RunExplain(const Arguments& arguments) {
    Explain::MakePage(RateOf(arguments), MomentOf(arguments), arguments.operands[1],
                      arguments.Has("--times") ? Explain::Measured::Shown
                                               : Explain::Measured::LeftOut);
    return EXIT_SUCCESS;
}

int RunVerify(const Arguments& arguments) {
    const std::string folder = arguments.Text("--references", referenceFolder);
    const std::string picture = arguments.operands.empty() ? "" : arguments.operands[0];
    if (!arguments.Has("--renew")) {
        Tools::CheckFolder(folder);
        return Verify::VerifyShow(folder, picture);
    }
    Tools::CheckFolderToFill(folder);
    Verify::RenewReferences(folder);
    return EXIT_SUCCESS;
}

int RunJoin(const Arguments& arguments) {
    Movie::JoinFilms({arguments.operands.begin() + 1, arguments.operands.end()},
                     arguments.operands[0]);
    return EXIT_SUCCESS;
}

bool IsRate(const std::string& text) {
    try {
        Stage::ParseRate(text);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

const Tools::Kind rate = {
    .name = "a number of frames a second from 1 to 1000", .fits = IsRate, .prepare = {}};
const Tools::Kind moment = NumberKind("a time", 0.0, Show::runningTime);
const Tools::Kind shownMoment = NumberKind("a time", 0.0, lastMoment);
const Tools::Kind film = Tools::FileToWrite({".mp4", ".mov", ".mkv"});
const Tools::Kind picture = Tools::FileToWrite({".png"});

// The script's tables are the same: ./movie refuses before it builds this. Its help has the
// meanings.
const Tools::Program program = {
    .name = "./movie",
    .purpose = "./movie --help says what each is for.",
    .options =
        {{.name = "--fps", .value = "RATE", .kind = rate, .example = "60"},
         {.name = "--scale", .value = "N", .kind = Tools::WholeNumberKind(1, 8), .example = "2"},
         {.name = "--start", .value = "S", .kind = moment, .example = "97"},
         {.name = "--end", .value = "S", .kind = moment, .example = "97"},
         {.name = "--lossless"},
         {.name = "--jobs",
          .value = "N",
          .kind = Tools::WholeNumberKind(1, mostJobs),
          .example = "2"},
         {.name = "--every",
          .value = "S",
          .kind = NumberKind("a number of seconds", 0.001, Show::runningTime),
          .example = "5"},
         {.name = "--cuts"},
         {.name = "--references",
          .value = "D",
          .kind = Tools::AnyText("a folder"),
          .example = referenceFolder},
         {.name = "--renew"},
         {.name = "--times"}},
    .modes = {
        {.operands = {{"OUT.mp4", film, Tools::Count::AtMostOne}},
         .example = "film.mp4",
         .options = {"--fps", "--scale", "--start", "--end", "--lossless", "--jobs"},
         .run = RunFilm},
        {.name = "--sheet",
         .operands = {{"OUT.png", picture}},
         .example = "sheet.png",
         .options = {"--fps", "--start", "--end", "--every", "--cuts", "--jobs"},
         .run = RunSheet},
        {.name = "--at",
         .operands = {{"T", shownMoment}, {"OUT.png", picture}},
         .example = "97 frame.png",
         .options = {"--fps"},
         .run = RunAt},
        {.name = "--explain",
         .operands = {{"T", shownMoment}, {"OUT.html", Tools::FileToWrite({".html"})}},
         .example = "97 frame.html",
         .options = {"--fps", "--times"},
         .run = RunExplain},
        {.name = "--join",
         .operands = {{"OUT.mp4", film},
                      {"PIECE", Tools::FileToRead("the film of a piece"), Tools::Count::OneOrMore}},
         .example = "film.mp4 a.mp4 b.mp4",
         .run = RunJoin},
        {.name = "--verify",
         .operands = {{"OUT.png", picture, Tools::Count::AtMostOne}},
         .example = "difference.png",
         .options = {"--references", "--renew"},
         .run = RunVerify},
    }};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
