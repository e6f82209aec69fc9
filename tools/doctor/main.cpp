// The doctor: says whether Nimbrel can run on this machine, and what to do when it cannot.

#include "tools/doctor/examination.h"
#include "tools/doctor/page.h"
#include "tools/options/commandline.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr int exitCannotRun = 1;
constexpr int exitWrongUsage = 2;

constexpr double usualSeconds = 3.0;
constexpr double fewestSeconds = 0.1;
constexpr double mostSeconds = 600.0;

int Examine(const Tools::Arguments& arguments);
int Explain(const Tools::Arguments& arguments);

const Tools::CommandLine commandLine = {
    .options = {{"--json", "",
                 "the same as JSON: one object with the keys \"format\" (1), \"verdict\" (\"ok\", "
                 "\"warn\" or\n"
                 "\"fail\"), \"sentence\", \"advice\" (a list) and \"rows\" (a list of objects "
                 "with the keys\n"
                 "\"id\", \"title\", \"state\" (\"ok\", \"warn\", \"fail\" or \"unknown\"), "
                 "\"finding\", \"advice\",\n"
                 "\"detail\" and \"values\"); docs/doctor.md explains them"},
                {"--seconds", "S", "plays for S seconds (3), 0.1 to 600"}},
    .modes = {{"nimbrel_doctor", 0, 0, {"--json", "--seconds"}, Examine},
              {"--help", 0, 0, {"--json", "--seconds"}, Explain}}};

std::string Usage() {
    return "nimbrel_doctor [--json] [--seconds S]\n\n"
           "Says on one page whether Nimbrel can run here, started in Nimbrel's folder. It opens "
           "the demo's\n"
           "window and plays the whole show in fast motion, without sound.\n\n" +
           commandLine.Help() +
           "\nExit status: 0 Nimbrel can run here, 1 it cannot, 2 wrong usage.\n";
}

int Examine(const Tools::Arguments& arguments) {
    const double seconds = arguments.Number("--seconds", fewestSeconds, mostSeconds, usualSeconds);
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    const auto build = self.parent_path().parent_path().parent_path();
    std::cerr << "Looking at this machine, and playing for " << seconds << " s ...\n";
    const Doctor::Table table = Doctor::Examine(Doctor::Programs::In(build), seconds);
    std::cout << (arguments.Has("--json") ? Doctor::AsJson(table) : Doctor::AsText(table))
              << std::flush;
    return Doctor::Verdict(table) == Doctor::State::Fail ? exitCannotRun : EXIT_SUCCESS;
}

int Explain(const Tools::Arguments&) {
    std::cout << Usage();
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    std::vector<std::string> given(arguments + 1, arguments + count);
    std::replace(given.begin(), given.end(), std::string("-h"), std::string("--help"));
    try {
        return commandLine.Run(given);
    } catch (const Tools::WrongUsage& error) {
        std::cerr << Usage() << '\n' << error.what() << '\n';
        return exitWrongUsage;
    } catch (const std::exception& error) {
        std::cerr << "nimbrel_doctor: " << error.what() << '\n';
        return exitCannotRun;
    }
}
