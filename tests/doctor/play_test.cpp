// ./play calls the doctor when the demo broke off or its log has a row that says ERROR, and only
// then. It runs in a copy of what it needs, where the compiler's work is done already: `cmake` only
// takes note there of what it is asked for.

#include "tests/support/demo_data.h"
#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

const char* const demo = "build/release/demo/nimbrel";
const char* const doctor = "build/release/tools/doctor/nimbrel_doctor";

/// A log page as the engine writes it, with one row of this status.
std::string LogPage(const std::string& status) {
    return "<table>\n    <tr>\n    <td bgcolor=\"#CCCCC\" width =\"15%\">Image</td>\n"
           "    <td bgcolor=\"#CCCCC\" width =\"5%\"><font color=\"#660000\">" +
           status +
           "</font></td>\n    <td bgcolor=\"#CCCCC\" width =\"80%\">some.png</td>\n    </tr>\n\n";
}
const std::string logFoot = "    </table>\n</body>\n</html>\n";

class Play : public ::testing::Test {
protected:
    void SetUp() override {
        fs::copy(NIMBREL_SOURCE_DIR "/play", "play");
        fs::copy(NIMBREL_SOURCE_DIR "/packaging", "packaging");
        WriteScript("bin/cmake", "echo \"$*\" >>cmake.txt");
        WriteScript(doctor, "echo the doctor is here");
    }

    static void WriteScript(const std::string& path, const std::string& text) {
        WriteFile(path, "#!/bin/sh\n" + text + "\n");
        fs::permissions(path, fs::perms::owner_all);
    }

    /// A demo that ends at once and leaves this page.
    static void WriteDemo(const std::string& page, int exitStatus) {
        WriteFile("page.html", page);
        WriteScript(demo, "cp page.html Vell_log.html\nexit " + std::to_string(exitStatus));
    }

    static Tools::Ending Run(Tools::Environment environment = {}) {
        environment.insert({{"PATH", fs::absolute("bin").string() + ":" + std::getenv("PATH")},
                            {"DISPLAY", display.Name()},
                            {"ALSA_CONFIG_PATH", "/dev/null"}});
        return Tools::Run({.arguments = {fs::absolute("play").string()}, .added = environment},
                          100.0);
    }

    ScratchDir scratch;
    static inline Tools::VirtualDisplay display;
};

} // namespace

TEST_F(Play, Leaves_the_doctor_alone_when_the_demo_ended_in_order) {
    WriteDemo(LogPage("LOADED") + logFoot, 0); // so does Escape
    const Tools::Ending outcome = Run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Vell_log.html: no row says ERROR."));
    EXPECT_THAT(outcome.output, Not(HasSubstr("doctor")));
    EXPECT_THAT(ReadFile("cmake.txt"), Not(HasSubstr("doctor"))) << "it was built for nothing";
}

TEST_F(Play, Calls_the_doctor_when_the_demo_broke_off) {
    WriteDemo(LogPage("LOADED"), 3);
    const Tools::Ending outcome = Run();
    EXPECT_EQ(outcome.exitStatus, 3) << "the demo's own";
    EXPECT_THAT(outcome.output, HasSubstr("the doctor is here"));
    EXPECT_THAT(ReadFile("cmake.txt"), HasSubstr("--target nimbrel_doctor"));
}

TEST_F(Play, Calls_the_doctor_when_the_log_has_no_foot) {
    WriteDemo(LogPage("LOADED"), 0);
    EXPECT_THAT(Run().output, HasSubstr("the doctor is here"));
}

TEST_F(Play, Calls_the_doctor_when_there_is_no_log) {
    WriteScript(demo, "exit 1");
    const Tools::Ending outcome = Run();
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.output, HasSubstr("Vell_log.html: the demo wrote none."));
    EXPECT_THAT(outcome.output, HasSubstr("the doctor is here"));
}

TEST_F(Play, Takes_an_earlier_page_for_no_sign_of_this_run_and_leaves_it_alone) {
    const std::string earlier = LogPage("ERROR") + logFoot;
    WriteFile("Vell_log.html", earlier);
    WriteScript(demo, "exit 0"); // though it has not played
    const Tools::Ending outcome = Run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, HasSubstr("Vell_log.html: the demo wrote none."));
    EXPECT_THAT(outcome.output, HasSubstr("the doctor is here"));
    EXPECT_EQ(ReadFile("Vell_log.html"), earlier);
}

TEST_F(Play, Reads_the_page_that_takes_the_place_of_an_earlier_one) {
    WriteFile("Vell_log.html", LogPage("ERROR") + logFoot);
    WriteDemo(LogPage("LOADED") + logFoot, 0);
    EXPECT_THAT(Run().output, HasSubstr("Vell_log.html: no row says ERROR."));
}

TEST_F(Play, Says_so_when_the_doctor_cannot_be_built) {
    WriteDemo(LogPage("ERROR") + logFoot, 0);
    WriteScript("bin/cmake", "case \"$*\" in *doctor*) exit 1 ;; esac");
    const Tools::Ending outcome = Run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("The doctor could not be built"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("the doctor is here")));
}

TEST_F(Play, Has_the_doctor_name_the_file_that_the_demo_missed) {
    MakeDemoData();
    fs::remove("Data/Gfx/water.jpg");
    // The real demo, its time moved on by three seconds a frame, and the real doctor.
    WriteScript(demo, "exec 9<'" NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so'\n"
                      "export LD_PRELOAD=/proc/self/fd/9 NIMBREL_PROBE_STEP=3\n"
                      "exec '" NIMBREL_BINARY_DIR "/demo/nimbrel'");
    fs::remove(doctor);
    fs::create_symlink(NIMBREL_BINARY_DIR "/tools/doctor/nimbrel_doctor", doctor);
    const Tools::Ending outcome =
        Run({{"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"}});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("rows that say ERROR: Image Data/Gfx/water.jpg\n"));
    EXPECT_THAT(outcome.output, HasSubstr("Nimbrel runs here, but: "));
    EXPECT_THAT(outcome.output, HasSubstr("The demo's log        rows that say ERROR: Image "
                                          "Data/Gfx/water.jpg"));
}
