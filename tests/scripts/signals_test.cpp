// However ./play is asked to end, the show ends at once and in order, though the demo itself
// listens to nothing but Escape. The demo is the real one, on small data.

#include "tests/scripts/script_stage.h"
#include "tests/support/demo_data.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

#include <csignal>

namespace fs = std::filesystem;

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const char* const ctrlC = "\x03";
const char* const demo = "build/release/demo/nimbrel";

// A frame, the demo's shutdown, the virtual display's and the script's own few lines.
constexpr double atOnce = 1.0;     // seconds
constexpr double afterLoad = 10.0; // seconds: the key waits until everything is loaded

/// One way of ending ./play, and what its exit status is then: 128 and the signal's number.
struct Way {
    const char* name;
    std::function<void(Tools::Process&)> end;
    int status;
};

const Way ways[] = {
    {"Ctrl_C", [](Tools::Process& run) { run.Write(ctrlC); }, 130},
    {"SIGTERM_to_the_script_alone", [](Tools::Process& run) { run.Signal(SIGTERM); }, 143},
    {"A_terminal_that_hangs_up", [](Tools::Process& run) { run.CloseInput(); }, 129},
};

class Signals : public ScriptStage {
protected:
    Signals() {
        MakeDemoData();
        const fs::path escape = "build/release/tools/escape/nimbrel_escape";
        fs::create_directories(escape.parent_path());
        fs::create_symlink(fs::path(NIMBREL_BINARY_DIR) / "tools/escape/nimbrel_escape", escape);
        // It tells who and where it is, and when it has drawn its first frame.
        WriteScript(demo, "echo $$ >process.txt; echo $DISPLAY >display.txt\n"
                          "exec 9<'" NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so'\n"
                          "export LD_PRELOAD=/proc/self/fd/9 NIMBREL_PROBE_REPORT=report.txt\n"
                          "exec '" NIMBREL_BINARY_DIR "/demo/nimbrel'");
    }

    /// Ends a display that a script left behind.
    void TearDown() override {
        if (!fs::exists("display.txt") || !DisplayIsThere())
            return;
        const fs::path lock = fs::path("/tmp") / (".X" + DisplayNumber() + "-lock");
        kill(std::stoi(ReadFile(lock)), SIGTERM);
    }

    std::unique_ptr<Tools::Process> Play(const Tools::Environment& more = {}) const {
        return std::make_unique<Tools::Process>(Tools::Command{
            .arguments = {fs::absolute("play")}, .added = Around(more), .terminal = true});
    }

    /// The state of the process that told its number, as in /proc: 'R' running, 'S' sleeping, 'T'
    /// stopped, 'Z' ended, but nobody took note of it yet; 0 when it is gone.
    static char DemoState() {
        const int process = std::stoi(ReadFile("process.txt"));
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        for (std::string name; status >> name;)
            if (char state = 0; name == "State:" && status >> state)
                return state;
        return 0;
    }

    static bool DemoRuns() { return DemoState() != 0 && DemoState() != 'Z'; }

    /// Waits until the demo is stopped, or is not; at most five seconds.
    static bool DemoBecomesStopped(bool stopped) {
        for (int tenths = 0; tenths < 50 && (DemoState() == 'T') != stopped; ++tenths)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        return (DemoState() == 'T') == stopped;
    }

    /// Whether the demo's display, which was the script's own, is still there.
    static bool DisplayIsThere() {
        return fs::exists(fs::path("/tmp") / ".X11-unix" / ("X" + DisplayNumber()));
    }

    static std::string DisplayNumber() {
        const std::string name = ReadFile("display.txt"); // ":7\n"
        return name.substr(1, name.size() - 2);
    }

    static void ExpectCompletePage() {
        EXPECT_THAT(ReadFile("Vell_log.html"), EndsWith("</html>\n"));
    }
};

class EachWay : public Signals, public ::testing::WithParamInterface<Way> {
protected:
    void ExpectEndWithin(Tools::Process& run, double seconds) {
        const double start = Tools::SteadySeconds();
        GetParam().end(run);
        const Tools::Ending end = run.Wait(60.0);
        EXPECT_EQ(end.exitStatus, GetParam().status) << end.output;
        EXPECT_LT(Tools::SteadySeconds() - start, seconds);
        EXPECT_FALSE(DemoRuns());
        EXPECT_FALSE(DisplayIsThere());
        ExpectCompletePage();
        EXPECT_THAT(Calls(), Not(HasSubstr("nimbrel_doctor"))) << "nothing was wrong";
    }
};

} // namespace

TEST_P(EachWay, Ends_the_show_at_once_and_in_order) {
    const auto run = Play();
    Await("report.txt");
    ExpectEndWithin(*run, atOnce);
}

TEST_P(EachWay, Ends_the_show_in_order_while_it_loads) {
    const auto run = Play();
    Await("Vell_log.html");
    ExpectEndWithin(*run, afterLoad);
}

INSTANTIATE_TEST_SUITE_P(Ways, EachWay, ::testing::ValuesIn(ways),
                         [](const auto& way) { return std::string(way.param.name); });

TEST_F(Signals, Say_how_long_the_show_ran) {
    const auto run = Play();
    Await("report.txt");
    run->Write(ctrlC);
    const Tools::Ending end = run->Wait(60.0);
    EXPECT_THAT(end.output, HasSubstr("Nimbrel ran for "));
    EXPECT_THAT(end.output, Not(HasSubstr("exit status")));
    EXPECT_THAT(end.output, HasSubstr("Vell_log.html: no row says ERROR."));
}

TEST_F(Signals, Leave_another_show_on_the_same_display_alone) {
    const Tools::VirtualDisplay display;
    fs::create_directory("other");
    fs::create_directory_symlink(fs::absolute("Data"), "other/Data");
    fs::current_path("other");
    Tools::Process other({.arguments = {NIMBREL_BINARY_DIR "/demo/nimbrel"},
                          .added = Around({{"DISPLAY", display.Name()}})});
    Await("Vell_log.html"); // it has its window by then
    fs::current_path("..");
    const auto run = Play({{"DISPLAY", display.Name()}});
    Await("report.txt");
    run->Write(ctrlC);
    EXPECT_EQ(run->Wait(60.0).exitStatus, 130);
    EXPECT_EQ(ReadFile("display.txt"), display.Name() + "\n") << "the display at hand";
    ExpectCompletePage();
    EXPECT_TRUE(other.Running());
}

TEST_F(Signals, Kill_what_does_not_listen_the_second_time) {
    WriteScript(demo, "trap '' INT TERM; echo $$ >process.txt; exec sleep 100");
    const auto run = Play();
    Await("process.txt");
    run->Write(ctrlC);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ASSERT_TRUE(run->Running()) << "it may want to end in order";
    const double start = Tools::SteadySeconds();
    run->Write(ctrlC);
    EXPECT_EQ(run->Wait(60.0).exitStatus, 130);
    EXPECT_LT(Tools::SteadySeconds() - start, atOnce);
    EXPECT_FALSE(DemoRuns());
}

TEST_F(Signals, Leave_neither_show_nor_display_behind_when_the_script_is_killed) {
    const auto run = Play();
    Await("report.txt");
    run->Signal(SIGKILL);
    EXPECT_EQ(run->Wait(60.0).signal, SIGKILL);
    for (int tenths = 0; tenths < 50 && (DemoRuns() || DisplayIsThere()); ++tenths)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(DemoRuns());
    EXPECT_FALSE(DisplayIsThere());
    ExpectCompletePage();
}

TEST_F(Signals, Stop_the_show_and_let_it_go_on_with_the_script) {
    const auto run = Play();
    Await("report.txt");
    run->Write("\x1a"); // Ctrl-Z
    EXPECT_TRUE(DemoBecomesStopped(true));
    run->Signal(SIGCONT);
    EXPECT_TRUE(DemoBecomesStopped(false));
    run->Write(ctrlC);
    EXPECT_EQ(run->Wait(60.0).exitStatus, 130);
    ExpectCompletePage();
}

TEST_F(Signals, Let_a_film_be_completed_but_not_twice) {
    for (const bool patient : {true, false}) {
        // It takes a second over completing the film.
        WriteScript("build/release/tools/movie/nimbrel_film",
                    "rm -f film.txt; echo $$ >process.txt\n"
                    "trap 'sleep 1; echo complete >film.txt; exit 130' TERM\n"
                    "while :; do sleep 0.1; done");
        fs::remove("process.txt");
        Tools::Process run(
            {.arguments = {fs::absolute("movie")}, .added = Around(), .terminal = true});
        Await("process.txt");
        run.Write(ctrlC);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        if (!patient)
            run.Write(ctrlC);
        EXPECT_EQ(run.Wait(60.0).exitStatus, 130);
        EXPECT_EQ(fs::exists("film.txt"), patient);
        EXPECT_FALSE(DemoRuns());
    }
}

TEST_F(Signals, End_a_build_with_all_that_it_started) {
    StandIn("cmake", "case $1 in --build) sleep 100 & echo $! >process.txt; wait ;; esac");
    const auto run = Play();
    Await("process.txt");
    const double start = Tools::SteadySeconds();
    run->Signal(SIGTERM);
    EXPECT_EQ(run->Wait(60.0).exitStatus, 143);
    EXPECT_LT(Tools::SteadySeconds() - start, atOnce);
    EXPECT_FALSE(DemoRuns()) << "the sleep, which is a compiler here";
}
