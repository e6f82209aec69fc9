#include "tools/doctor/rehearsal.h"

#include "tools/probe/preload.h"
#include "tools/stage/scratch.h"

#include "demo/show.h"

#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace Doctor {

namespace {

constexpr double showSeconds = Show::runningTime; // how long the demo lasts
constexpr double loadingPatience = 60.0;          // seconds

const char* const framesFile = "frames.txt";
const char* const reportFile = "report.txt";

/// `text` in front of what the variable holds.
std::string Prepended(const char* variable, const std::string& text) {
    const char* before = std::getenv(variable);
    return before ? text + ':' + before : text;
}

/// The demo, in fast motion and without sound, with what tells how its frames went.
Tools::Command DemoCommand(const Programs& programs, double seconds, const fs::path& folder) {
    Tools::Command command{
        .arguments = {programs.demo},
        .added = {{"LD_PRELOAD", Prepended("LD_PRELOAD", Tools::Preloadable(programs.probe))},
                  {"NIMBREL_PROBE_SPEED", std::to_string(showSeconds / seconds)},
                  {"NIMBREL_PROBE_FRAMES", framesFile},
                  {"NIMBREL_PROBE_REPORT", reportFile},
                  {"ALSA_CONFIG_PATH", "/dev/null"}}, // no device: nothing is heard
        .folder = folder};
#ifdef __SANITIZE_ADDRESS__
    command.added["ASAN_OPTIONS"] =
        Prepended("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
#endif
    return command;
}

std::vector<Frame> ReadFrames(const fs::path& path) {
    std::vector<Frame> frames;
    std::ifstream file(path);
    double processor = 0.0; // milliseconds, which depend less on what else the machine does
    for (Frame frame{}; file >> frame.time >> frame.milliseconds >> processor;)
        frames.push_back(frame);
    return frames;
}

void ReadReport(const fs::path& path, Rehearsal& rehearsal) {
    std::ifstream file(path);
    for (std::string name, value; file >> name >> value;) {
        if (name == "errors")
            rehearsal.errors = static_cast<int>(std::strtol(value.c_str(), nullptr, 10));
        if (name == "first_error")
            rehearsal.firstError = value;
    }
}

} // namespace

Programs Programs::In(const fs::path& build) {
    return {build / "demo/nimbrel", build / "tools/probe/libnimbrel_probe.so"};
}

Rehearsal Rehearse(const Programs& programs, double seconds) {
    const Tools::DemoFolder folder;
    Rehearsal rehearsal;
    rehearsal.seconds = seconds;
    rehearsal.end =
        Tools::Run(DemoCommand(programs, seconds, folder.Path()), loadingPatience + seconds);
    rehearsal.frames = ReadFrames(folder.Path() / framesFile);
    ReadReport(folder.Path() / reportFile, rehearsal);
    rehearsal.errorRows = Tools::ReadLogPage(folder.Path() / Tools::logFile).Errors();
    return rehearsal;
}

} // namespace Doctor
