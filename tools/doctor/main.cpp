// The doctor: says whether Nimbrel can run on this machine, and what to do when it cannot.

#include "tools/doctor/examination.h"
#include "tools/doctor/page.h"
#include "tools/options/commandline.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace {

constexpr int exitCannotRun = 1;

constexpr double usualSeconds = 3.0;
constexpr double fewestSeconds = 0.1;
constexpr double mostSeconds = 600.0;

int Examine(const Tools::Arguments& arguments) {
    const double seconds = arguments.Number("--seconds", usualSeconds);
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    const auto build = self.parent_path().parent_path().parent_path();
    std::cerr << "Looking at this machine, and playing for " << seconds << " s ...\n";
    const Doctor::Table table = Doctor::Examine(Doctor::Programs::In(build), seconds);
    std::cout << (arguments.Has("--json") ? Doctor::AsJson(table) : Doctor::AsText(table))
              << std::flush;
    return Doctor::Verdict(table) == Doctor::State::Fail ? exitCannotRun : EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "./movie --doctor",
    .purpose =
        "Says on one page whether Nimbrel can run here, started in Nimbrel's folder. It opens "
        "the demo's\nwindow and plays the whole show in fast motion, without sound.",
    .options =
        {{.name = "--json",
          .meaning =
              "the same as JSON: one object with the keys \"format\" (1), \"verdict\" (\"ok\", "
              "\"warn\" or\n"
              "\"fail\"), \"sentence\", \"advice\" (a list) and \"rows\" (a list of objects "
              "with the keys\n"
              "\"id\", \"title\", \"state\" (\"ok\", \"warn\", \"fail\" or \"unknown\"), "
              "\"finding\", \"advice\",\n"
              "\"detail\" and \"values\"); docs/doctor.md explains them"},
         {.name = "--seconds",
          .value = "S",
          .kind = Tools::NumberKind("a number of seconds", fewestSeconds, mostSeconds),
          .example = "3",
          .meaning = "plays for S seconds (3), 0.1 to 600"}},
    .modes = {{.run = Examine}},
    .remark = "Exit status: 0 Nimbrel can run here, 1 it cannot, 2 wrong usage."};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
