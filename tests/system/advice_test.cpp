// What the doctor advises works, also where many do it at the same time.

#include "tools/doctor/advice.h"
#include "tools/probe/preload.h"

#include "tests/support/demo_data.h"
#include "tests/support/log_page.h"
#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include <unistd.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;

namespace {

/// The advised command on the display of this number: xvfb-run's own search for a free one (-a)
/// gives two that start in the same moment the same.
std::string VirtualDisplayAt(int number) {
    std::string command = Doctor::virtualDisplay;
    const std::string search = " -a ";
    const std::size_t at = command.find(search);
    EXPECT_NE(at, std::string::npos);
    return command.replace(at, search.size(), " -n " + std::to_string(number) + ' ');
}

/// That command with a demo whose time is up after its first frame.
std::string Command(int number) {
    return VirtualDisplayAt(number) + " env LD_PRELOAD=" +
           Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so") +
           " NIMBREL_PROBE_STEP=1000 \"" NIMBREL_BINARY_DIR "/demo/nimbrel\"";
}

/// Starts it in a folder of its own.
std::unique_ptr<Tools::Process> StartIn(const fs::path& folder, int number) {
    fs::create_directory(folder);
    fs::current_path(folder);
    MakeDemoData();
    return std::make_unique<Tools::Process>(
        Tools::Command{.arguments = {"/bin/sh", "-c", Command(number)},
                       .added = {{"ALSA_CONFIG_PATH", "/dev/null"},
                                 {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"}},
                       .removed = {"DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"}});
}

/// Fails unless the demo has played: its engine was started, and everything was freed.
void ExpectPlayed(Tools::Process& run) {
    constexpr double patience = 200.0;
    const Tools::Ending end = run.Wait(patience);
    EXPECT_FALSE(end.timedOut);
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_EQ(end.output, "");
    const std::vector<LogRow> rows = ReadLogRows();
    ASSERT_FALSE(rows.empty()) << end.errors;
    EXPECT_EQ(rows.front().section, "InitEngine");
    EXPECT_EQ(rows.front().status, "OK");
    EXPECT_EQ(rows.back().status, "FREE");
    EXPECT_THAT(ReadLogText(), HasSubstr("</html>\n"));
}

} // namespace

TEST(Advice, Virtual_display_lets_the_demo_play_sixteen_times_at_once) {
    if (std::system("command -v xvfb-run xauth >/dev/null") != 0)
        GTEST_SKIP() << "needs xvfb-run and xauth";
    const ScratchDir scratch;
    std::vector<std::unique_ptr<Tools::Process>> runs;
    constexpr int most = 16;
    const int firstNumber = 1000 + getpid() % 1000 * most; // nobody else's
    for (int i = 0; i < most; ++i)
        runs.push_back(StartIn(scratch.Path() / std::to_string(i), firstNumber + i));
    for (std::size_t i = 0; i < runs.size(); ++i) {
        SCOPED_TRACE(i);
        fs::current_path(scratch.Path() / std::to_string(i));
        ExpectPlayed(*runs[i]);
    }
}
