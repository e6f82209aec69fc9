#include "tools/doctor/rehearsal.h"

#include "tools/doctor/advice.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace Doctor {

namespace {

constexpr double smoothEnough = 25.0; // frames per second: below, the flight visibly jerks
constexpr double slowPart = 0.95;     // the slowest 5 % take longer than this part of the frames

const char* const slowAdvice =
    "use a graphics card with its driver (libgl1-mesa-dri for AMD and Intel, nvidia-driver for "
    "NVIDIA), close what else is busy, or let ./movie make a film of it, smooth on any machine";
const char* const brokenAdvice = "send this page and Vell_log.html to the authors";

std::string Rounded(double number, int digits) {
    std::ostringstream text;
    text.setf(std::ios::fixed);
    text.precision(digits);
    text << number;
    return text.str();
}

/// The time that `part` (0..1) of the frames stay within. There is at least one frame.
double Milliseconds(const std::vector<double>& sorted, double part) {
    return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

/// Whether the engine told the log that it found no usable OpenGL: the demo ends then at once, and
/// in order.
bool EngineRefused(const Rehearsal& rehearsal) {
    return std::any_of(rehearsal.errorRows.begin(), rehearsal.errorRows.end(),
                       [](const Tools::LogRow& row) { return row.section == "InitEngine"; });
}

void CheckEnd(const Rehearsal& rehearsal, Row& row) {
    if (rehearsal.end.InOrder() && EngineRefused(rehearsal))
        row.Set(State::Fail, "the demo found no usable OpenGL and ended at once", resetAdvice);
    else if (rehearsal.end.InOrder())
        row.Set(State::Ok, "played the whole show in fast motion, in " +
                               Rounded(rehearsal.seconds, 1) + " s, and ended by itself");
    else
        row.Set(State::Fail, "the demo " + rehearsal.end.InWords(), brokenAdvice);
}

void Measure(const std::vector<double>& sorted, Row& row) {
    double sum = 0.0;
    for (const double milliseconds : sorted)
        sum += milliseconds;
    const double median = Milliseconds(sorted, 0.5);
    const double slow = Milliseconds(sorted, slowPart);
    const double rate = sum > 0.0 ? static_cast<double>(sorted.size()) * 1000.0 / sum : 0.0;
    row.values = {NumberValue("frames", static_cast<double>(sorted.size())),
                  NumberValue("fps", rate), NumberValue("median_ms", median),
                  NumberValue("slow_ms", slow), NumberValue("longest_ms", sorted.back())};
    row.finding = Rounded(rate, 1) + " frames per second; half of the frames take " +
                  Rounded(median, 1) + " ms or less, the slowest 5 % more than " +
                  Rounded(slow, 1) + " ms";
    row.state = State::Ok;
    if (rate < smoothEnough)
        row.Set(State::Warn, "the picture jerks: " + row.finding, slowAdvice);
}

void CheckSpeed(const Rehearsal& rehearsal, Row& row) {
    std::vector<double> sorted;
    for (const Frame& frame : rehearsal.frames)
        sorted.push_back(frame.milliseconds);
    std::sort(sorted.begin(), sorted.end());
    if (!sorted.empty())
        Measure(sorted, row);
    else if (rehearsal.end.InOrder())
        row.Set(State::Warn,
                "a single frame takes longer than " + Rounded(rehearsal.seconds, 1) + " s",
                slowAdvice);
}

void CheckErrors(const Rehearsal& rehearsal, Row& row) {
    row.values = {NumberValue("errors", rehearsal.errors)};
    row.Set(State::Ok, "none");
    if (rehearsal.errors > 0)
        row.Set(State::Warn,
                "OpenGL reported " + std::to_string(rehearsal.errors) + " errors, the first " +
                    rehearsal.firstError,
                brokenAdvice);
}

void CheckLog(const Rehearsal& rehearsal, Row& row) {
    row.values = {NumberValue("rows", static_cast<double>(rehearsal.errorRows.size()))};
    row.Set(State::Ok, "no row says ERROR");
    if (rehearsal.errorRows.empty())
        return;
    std::string list;
    for (const Tools::LogRow& error : rehearsal.errorRows)
        list += (list.empty() ? "" : "; ") + error.section + ' ' + error.file;
    row.Set(State::Warn, "rows that say ERROR: " + list,
            "bring back the files that they name, as above; shaders that are there but do not "
            "compile need another driver");
}

struct Check {
    const char* id;
    const char* title;
    void (*check)(const Rehearsal& rehearsal, Row& row);
};
const Check checks[] = {
    {"show", "Rehearsal", CheckEnd}, // the others have nothing to check when it did not begin
    {"speed", "Speed", CheckSpeed},
    {"gl_errors", "OpenGL errors", CheckErrors},
    {"log", "The demo's log", CheckLog},
};

} // namespace

Table RehearsalRows(const Rehearsal& rehearsal) {
    Table table = NoRehearsalRows("the demo did not get that far");
    const std::size_t begun = EngineRefused(rehearsal) ? 1 : table.size();
    for (std::size_t i = 0; i < begun; ++i)
        checks[i].check(rehearsal, table[i]);
    return table;
}

Table NoRehearsalRows(const std::string& reason) {
    Table table;
    for (const Check& check : checks) {
        Row row{check.id, check.title};
        row.Set(State::Unknown, "not looked at: " + reason);
        table.push_back(row);
    }
    return table;
}

} // namespace Doctor
