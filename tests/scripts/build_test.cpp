// How the scripts configure and build: what they show of it, that one waits for another, and that a
// copy of a checkout builds its own sources.

#include "tests/scripts/script_stage.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class Build : public ScriptStage {
protected:
    // A script that calls whatever of the shared functions it is told to.
    Build() {
        WriteScript("call", "set -euo pipefail\ncd \"$(dirname \"$(realpath \"$0\")\")\"\n"
                            ". packaging/common.sh\n\"$@\"");
    }

    /// A cmake that builds like ninja: in as many steps.
    void BuildInSteps(int count) {
        StandIn("cmake", "case $1 in --build)\nfor ((i = 1; i <= " + std::to_string(count) +
                             "; ++i)); do echo \"[$i/" + std::to_string(count) +
                             "] Building CXX object $i.o\"; done ;;\nesac");
    }
};

/// A project of the same name and targets as the real one, whose demo is a copy of demo.txt.
class TinyProject : public Build {
protected:
    TinyProject() {
        fs::remove(standIns / "cmake");
        fs::copy(NIMBREL_SOURCE_DIR "/CMakePresets.json", "CMakePresets.json");
        WriteFile(
            "CMakeLists.txt",
            "cmake_minimum_required(VERSION 3.25)\n"
            "project(Nimbrel NONE)\n"
            "option(OTHER \"\" OFF)\n"
            "add_custom_command(OUTPUT demo/copy.txt DEPENDS ${CMAKE_SOURCE_DIR}/demo.txt\n"
            "    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/demo.txt demo/copy.txt\n"
            "    VERBATIM)\n"
            "add_custom_target(nimbrel DEPENDS demo/copy.txt)\n");
        WriteFile("demo.txt", "first");
        BuildDemo();
    }

    Tools::Ending BuildDemo() const {
        Tools::Ending end = Run("call", {"build", "release", "nimbrel"});
        EXPECT_EQ(end.exitStatus, 0) << end.errors;
        return end;
    }

    static std::string Demo() { return ReadFile("build/release/demo/copy.txt"); }

    static fs::file_time_type LastConfigured() {
        return fs::last_write_time("build/release/configure.log");
    }
};

} // namespace

TEST_F(Build, Shows_one_line_that_moves_on_a_terminal) {
    BuildInSteps(200);
    Tools::Process run({.arguments = {fs::absolute("call"), "build_folder", "."},
                        .added = Around(),
                        .terminal = true});
    const Tools::Ending end = run.Wait(60.0);
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.output, HasSubstr("\r\x1b[KBuilding: 0 % (1 of 200 steps)"
                                      "\r\x1b[KBuilding: 1 % (2 of 200 steps)"
                                      "\r\x1b[KBuilding: 1 % (3 of 200 steps)"));
    EXPECT_THAT(end.output, EndsWith("Building: 100 % (200 of 200 steps)\r\x1b[K"));
    EXPECT_THAT(end.output, Not(HasSubstr("\n"))) << "the line stays one";
}

TEST_F(Build, Is_shown_on_a_terminal_that_holds_back_what_is_not_in_front) {
    BuildInSteps(4);
    Tools::Process run({.arguments = {"/bin/bash", "-c", "stty tostop; ./call build_folder ."},
                        .added = Around(),
                        .terminal = true});
    EXPECT_EQ(run.Wait(10.0).exitStatus, 0);
}

TEST_F(Build, Shows_a_few_lines_where_there_is_no_terminal) {
    BuildInSteps(200);
    // 50 of 200 is a quarter; the first step, of 0 %, says that it has begun.
    EXPECT_EQ(Run("call", {"build_folder", "."}).errors, "Building: 0 % (1 of 200 steps)\n"
                                                         "Building: 25 % (50 of 200 steps)\n"
                                                         "Building: 50 % (100 of 200 steps)\n"
                                                         "Building: 75 % (150 of 200 steps)\n"
                                                         "Building: 100 % (200 of 200 steps)\n");
}

TEST_F(Build, Shows_what_went_wrong_without_the_steps) {
    StandIn("cmake", "echo '[1/2] Building CXX object good.o'\necho 'FAILED: bad.o'\n"
                     "echo \"bad.cpp:1: error: expected ';'\"\nexit 1");
    const Tools::Ending end = Run("call", {"build_folder", "."});
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, EndsWith("FAILED: bad.o\nbad.cpp:1: error: expected ';'\n"
                                     "Building in . failed.\n"));
    EXPECT_THAT(end.errors, Not(HasSubstr("good.o")));
    EXPECT_THAT(ReadFile("build.log"), HasSubstr("good.o"));
}

TEST_F(Build, Waits_for_another_command_that_builds_here) {
    // Two at once would fail: the second finds the folder of the first.
    StandIn("cmake", "mkdir building || exit 1\nsleep 0.3\nrmdir building");
    fs::create_directory("first");
    fs::current_path("first"); // where its words go
    Tools::Process first(
        {.arguments = {fs::absolute("../call"), "build", "release", "nimbrel"}, .added = Around()});
    fs::current_path("..");
    Await(calls);
    const Tools::Ending second = Run("call", {"build", "release", "nimbrel"});
    EXPECT_EQ(second.exitStatus, 0) << second.errors;
    EXPECT_EQ(second.errors, "Another command is building here: waiting for it to finish.\n");
    fs::current_path("first");
    const Tools::Ending end = first.Wait(60.0);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_EQ(end.errors, "") << "it did not let the other in between";
}

TEST_F(TinyProject, Is_configured_and_built_once) {
    EXPECT_EQ(Demo(), "first");
    const auto configured = LastConfigured();
    EXPECT_EQ(BuildDemo().errors, "") << "there was nothing to do";
    EXPECT_EQ(LastConfigured(), configured);
}

TEST_F(TinyProject, Tells_steps_as_ninja_counts_them) {
    WriteFile("demo.txt", "second");
    EXPECT_EQ(BuildDemo().errors, "Building: 100 % (1 of 1 steps)\n");
    EXPECT_EQ(Demo(), "second");
}

TEST_F(TinyProject, Is_configured_again_for_an_option_that_is_not_set_yet) {
    const auto configured = LastConfigured();
    Run("call", {"configure_preset", "release", "-DOTHER=ON"});
    const auto again = LastConfigured();
    EXPECT_NE(again, configured);
    Run("call", {"configure_preset", "release", "-DOTHER=ON"});
    BuildDemo(); // whatever else it is configured for
    EXPECT_EQ(LastConfigured(), again);
}

TEST_F(TinyProject, Is_configured_again_after_a_configuration_that_failed) {
    const std::string good = ReadFile("CMakeLists.txt");
    WriteFile("CMakeLists.txt", good + "message(FATAL_ERROR \"no such library\")\n");
    const Tools::Ending end = Run("call", {"configure_preset", "release", "-DOTHER=ON"});
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, AllOf(HasSubstr("no such library"),
                                  EndsWith("Configuring build/release failed.\n")));
    WriteFile("CMakeLists.txt", good);
    const auto failed = LastConfigured();
    EXPECT_EQ(Run("call", {"configure_preset", "release", "-DOTHER=ON"}).exitStatus, 0);
    EXPECT_NE(LastConfigured(), failed);
}

TEST_F(TinyProject, Builds_its_own_sources_in_a_copied_checkout) {
    const fs::path original = fs::current_path();
    fs::copy(original, "../copy", fs::copy_options::recursive);
    fs::current_path("../copy");
    WriteFile("demo.txt", "the copy's");
    BuildDemo();
    EXPECT_EQ(Demo(), "the copy's");
    fs::current_path(original);
    EXPECT_EQ(Demo(), "first");
}

TEST_F(TinyProject, Builds_its_own_sources_in_a_renamed_checkout) {
    fs::rename(fs::current_path(), "../renamed");
    fs::current_path("../renamed");
    WriteFile("demo.txt", "renamed");
    BuildDemo();
    EXPECT_EQ(Demo(), "renamed");
}
