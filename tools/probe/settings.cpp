#include "tools/probe/settings.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string_view>

#include <unistd.h>

namespace Probe {

namespace {

const std::string prefix = "NIMBREL_PROBE_";

/// Ends the program: whoever set the variables reads why, and what there is to set.
[[noreturn]] void Refuse(const std::string& reason);

/// "0.5,2,13.9" -> numbers.
std::vector<double> Numbers(const std::string& name, const std::string& text) {
    std::vector<double> numbers;
    std::istringstream list(text);
    for (std::string item; std::getline(list, item, ',');) {
        char* end = nullptr;
        numbers.push_back(std::strtod(item.c_str(), &end));
        if (item.empty() || *end != '\0')
            Refuse(prefix + name + ": expected a number, found \"" + item + "\"");
    }
    return numbers;
}

/// One environment variable.
struct Setting {
    const char* name; ///< behind the prefix
    const char* value;
    const char* meaning;
    void (*take)(Settings& settings, const char* name, const std::string& text);
};

template <std::string Settings::*member>
void TakeText(Settings& settings, const char*, const std::string& text) {
    settings.*member = text;
}

template <double Settings::*member>
void TakeNumber(Settings& settings, const char* name, const std::string& text) {
    settings.*member = Numbers(name, text).front();
}

template <std::vector<double> Settings::*member>
void TakeNumbers(Settings& settings, const char* name, const std::string& text) {
    settings.*member = Numbers(name, text);
}

const Setting all[] = {
    {"REPORT", "FILE",
     "gets one \"name value\" line per fact, after the first frame and again at the end",
     TakeText<&Settings::report>},
    {"FRAMES", "FILE",
     "gets one line per frame: demo time, the milliseconds until all was drawn, and those of the "
     "processor",
     TakeText<&Settings::frames>},
    {"STEP", "SECONDS", "of demo time per frame, in the place of the real time",
     TakeNumber<&Settings::step>},
    {"TIMES", "0,0.5,13.9",
     "demo times of the frames, likewise; after the last one the demo's time is up",
     TakeNumbers<&Settings::times>},
    {"SPEED", "FACTOR", "time passes so many times as fast from the first frame on",
     TakeNumber<&Settings::speed>},
    {"SHOTS", "0.5,2,13.9", "rising demo times to take a picture at",
     TakeNumbers<&Settings::shots>},
    {"SHOT_DIR", "FOLDER", "that exists, for the pictures: \"frame_0013.900.ppm\"",
     TakeText<&Settings::shotFolder>},
};

void Refuse(const std::string& reason) {
    std::cerr << reason << "\nThe probe's settings are:\n";
    for (const Setting& setting : all)
        std::cerr << "  " << prefix << setting.name << '=' << setting.value << "  "
                  << setting.meaning << '\n';
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): before the first frame
}

void Take(Settings& settings, const std::string& name, const std::string& text) {
    const auto* const found = std::find_if(std::begin(all), std::end(all),
                                           [&](const Setting& each) { return name == each.name; });
    if (found == std::end(all))
        Refuse("there is no " + prefix + name);
    if (!text.empty())
        found->take(settings, found->name, text);
}

} // namespace

Settings ReadSettings() {
    Settings settings;
    for (char** entry = environ; *entry; ++entry) {
        const std::string variable = *entry;
        const std::size_t equals = variable.find('=');
        if (variable.starts_with(prefix) && equals != std::string::npos)
            Take(settings, variable.substr(prefix.size(), equals - prefix.size()),
                 variable.substr(equals + 1));
    }
    const int clocks = (settings.step != 0.0) + !settings.times.empty() + (settings.speed != 0.0);
    if (clocks > 1)
        Refuse("expected one of " + prefix + "STEP, TIMES and SPEED, found " +
               std::to_string(clocks));
    return settings;
}

} // namespace Probe
