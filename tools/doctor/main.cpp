// The doctor: says whether Nimbrel can run on this machine, and what to do when it cannot.

#include "tools/doctor/examination.h"
#include "tools/doctor/page.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

constexpr int exitCannotRun = 1;
constexpr int exitWrongUsage = 2;

constexpr double usualSeconds = 3.0;
constexpr double mostSeconds = 600.0;

const char* const usage =
    R"(nimbrel_doctor [--json] [--seconds S]

Says on one page whether Nimbrel can run here, started in Nimbrel's folder. It opens the demo's
window and plays the whole show in fast motion, without sound.

--json       the same as JSON: one object with the keys "format" (1), "verdict" ("ok", "warn" or
             "fail"), "sentence", "advice" (a list) and "rows" (a list of objects with the keys
             "id", "title", "state" ("ok", "warn", "fail" or "unknown"), "finding", "advice",
             "detail" and "values"); docs/doctor.md explains them
--seconds S  plays for S seconds (3), 0.1 to 600

Exit status: 0 Nimbrel can run here, 1 it cannot, 2 wrong usage.
)";

struct Options {
    bool help = false;
    bool json = false;
    double seconds = usualSeconds;
};

/// False for anything but a number of seconds that can be played for.
bool ParseSeconds(const char* text, double& seconds) {
    char* end = nullptr;
    seconds = std::strtod(text, &end);
    return end != text && *end == '\0' && seconds >= 0.1 && seconds <= mostSeconds;
}

/// False when the command line is not to be understood.
bool Parse(int count, char** arguments, Options& options) {
    for (int i = 1; i < count; ++i) {
        const std::string word = arguments[i];
        if (word == "--help" || word == "-h")
            options.help = true;
        else if (word == "--json")
            options.json = true;
        else if (word != "--seconds" || ++i == count ||
                 !ParseSeconds(arguments[i], options.seconds))
            return false;
    }
    return true;
}

int Run(const Options& options) {
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    const auto build = self.parent_path().parent_path().parent_path();
    std::cerr << "Looking at this machine, and playing for " << options.seconds << " s ...\n";
    const Doctor::Table table = Doctor::Examine(Doctor::Programs::In(build), options.seconds);
    std::cout << (options.json ? Doctor::AsJson(table) : Doctor::AsText(table)) << std::flush;
    return Doctor::Verdict(table) == Doctor::State::Fail ? exitCannotRun : EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    Options options;
    if (!Parse(count, arguments, options)) {
        std::cerr << usage;
        return exitWrongUsage;
    }
    if (options.help) {
        std::cout << usage;
        return EXIT_SUCCESS;
    }
    try {
        return Run(options);
    } catch (const std::exception& error) {
        std::cerr << "nimbrel_doctor: " << error.what() << '\n';
        return exitCannotRun;
    }
}
