#include "tests/surroundings/steps.h"

#include "demo/assets.h"
#include "tests/support/scratch.h"
#include "tests/surroundings/table.h"
#include "tests/system/datafiles.h"
#include "tools/probe/preload.h"

#include <chrono>
#include <map>
#include <stdexcept>
#include <thread>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace fs = std::filesystem;

namespace Surroundings {

namespace {

void Pause(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

/// Permissions count for root as well, for every program that is started from then on.
void LetPermissionsCount() {
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

/// Puts an own file in the place of a link, if it was one.
void Replace(const std::string& file, const std::string& text) {
    fs::remove(file);
    WriteFile(file, text);
}

void SpoilFiles(const std::string& how, Stage&) {
    for (const std::string& file : DataFiles())
        if (fs::exists(file))
            SpoilFile(how, file);
}

/// What the probe leaves must be there beforehand: a file that is there can still be written.
void CloseFolder(const std::string&, Stage& stage) {
    LetPermissionsCount();
    for (const char* file : {"report.txt", "frame_0060.000.ppm"})
        WriteFile(file, "");
    const fs::path folder = fs::current_path();
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    stage.undone.emplace_back(nullptr,
                              [folder](void*) { fs::permissions(folder, fs::perms::owner_all); });
}

void FillDisk(const std::string&, Stage&) {
    fs::create_symlink("/dev/full", "Vell_log.html");
}

void SetUpSound(const std::string& settings, Stage& stage) {
    if (!fs::exists(Assets::music)) {
        fs::create_directories(fs::path(Assets::music).parent_path());
        fs::create_symlink(RealData() / fs::relative(Assets::music, "Data"), Assets::music);
    }
    WriteFile("alsa.conf", "pcm_type.paced { lib \"" PACED_PCM_LIBRARY "\" }\n"
                           "pcm.!default { type paced file heard.raw " +
                               settings + " }\n");
    stage.added["ALSA_CONFIG_PATH"] = fs::absolute("alsa.conf");
}

void PutBeneath(const std::string& what, Stage& stage) {
    stage.preloaded.push_back(Tools::Preloadable(BENEATH_LIBRARY));
    stage.added["NIMBREL_BENEATH"] = what;
}

void SetTimes(const std::string& times, Stage& stage) {
    stage.times = times;
}

void TakeLayer(const std::string&, Stage& stage) {
    stage.added["LD_LIBRARY_PATH"] = SDL_LAYER;
    const Tools::Ending linked = Tools::Run(
        {.arguments = {"ldd", NIMBREL_BINARY_DIR "/demo/nimbrel"}, .added = stage.added}, 10.0);
    if (linked.output.find(SDL_LAYER "/libSDL") == std::string::npos)
        throw std::runtime_error("there is no layer: install libsdl1.2-compat");
}

void TakeComma(const std::string&, Stage& stage) {
    const std::string name = "de_DE.UTF-8";
    const std::string folder = fs::absolute("locales");
    fs::create_directory(folder);
    Tools::Run({.arguments = {"localedef", "-i", "de_DE", "-f", "UTF-8", folder + '/' + name}},
               60.0);
    stage.added.insert({{"LOCPATH", folder}, {"LC_ALL", name}});
    const Tools::Ending half =
        Tools::Run({.arguments = {"/usr/bin/printf", "%.1f", "0,5"}, .added = stage.added}, 10.0);
    if (half.output != "0,5")
        throw std::runtime_error("there is no locale: install locales");
    PutBeneath("locale", stage);
}

void PlayBeside(const std::string& count, Stage& stage) {
    stage.beside = std::stoi(count);
}

void LimitAddresses(const std::string& megabytes, Stage& stage) {
    rlimit before{};
    getrlimit(RLIMIT_AS, &before);
    rlimit less = before;
    less.rlim_cur = std::stoul(megabytes) << 20;
    setrlimit(RLIMIT_AS, &less);
    stage.undone.emplace_back(nullptr, [before](void*) { setrlimit(RLIMIT_AS, &before); });
}

void Close(const std::string&, Stage& stage) {
    stage.events.emplace_back([](Tools::Process&, ForeignWindow& window) { window.AskToClose(); });
}

void Resize(const std::string&, Stage& stage) {
    stage.events.emplace_back([](Tools::Process&, ForeignWindow& window) {
        constexpr int size = 300; // pixels either way
        window.Resize(size, size);
    });
}

void SendEvents(const std::string& seconds, Stage& stage) {
    stage.events.emplace_back(
        [duration = std::stod(seconds)](Tools::Process&, ForeignWindow& window) {
            constexpr int eventsASecond = 10000;
            window.MovePointer(duration, eventsASecond);
        });
}

void Stop(const std::string& seconds, Stage& stage) {
    stage.events.emplace_back(
        [duration = std::stod(seconds)](Tools::Process& show, ForeignWindow&) {
            show.Signal(SIGSTOP);
            Pause(duration);
            show.Signal(SIGCONT);
        });
}

void Wait(const std::string& seconds, Stage& stage) {
    stage.events.emplace_back(
        [duration = std::stod(seconds)](Tools::Process&, ForeignWindow&) { Pause(duration); });
}

const std::map<std::string, void (*)(const std::string&, Stage&)> makers = {
    {"files", SpoilFiles},       {"folder", CloseFolder}, {"log", FillDisk},
    {"sound", SetUpSound},       {"beneath", PutBeneath}, {"times", SetTimes},
    {"layer", TakeLayer},        {"comma", TakeComma},    {"beside", PlayBeside},
    {"address", LimitAddresses}, {"close", Close},        {"resize", Resize},
    {"events", SendEvents},      {"stopped", Stop},       {"wait", Wait},
};

} // namespace

void SpoilFile(const std::string& how, const std::string& file) {
    LetPermissionsCount();
    const std::string text = ReadFile(file);
    if (how == "half")
        Replace(file, text.substr(0, text.size() / 2));
    else
        Replace(file, how == "unreadable" ? text : "");
    if (how == "unreadable")
        fs::permissions(file, fs::perms::none);
    if (how == "folders") {
        fs::remove(file);
        fs::create_directory(file);
    }
}

Stage Make(const std::string& steps) {
    Stage stage;
    for (const std::string& step : Split(steps, ';')) {
        const std::size_t blank = std::min(step.find(' '), step.size());
        const auto maker = makers.find(step.substr(0, blank));
        if (maker == makers.end())
            throw std::runtime_error("\"" + step + "\" is no step");
        maker->second(step.substr(std::min(blank + 1, step.size())), stage);
    }
    return stage;
}

} // namespace Surroundings
