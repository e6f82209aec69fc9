// ./test: what its parts are, which it is at, and that single tests need no more than themselves.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

std::vector<std::string> Lines(const std::string& text, const std::string& beginning) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(beginning))
            lines.push_back(line);
    return lines;
}

/// Configures like the real one as far as ./test looks at it: a list of the tests in the build
/// folder.
const char* const configuring = R"(
case $1 in --preset)
    here=$PWD/build/$2/tests
    mkdir -p "$here"
    cat >"$here/CTestTestfile.cmake" <<TEXT
add_test([=[core_clock_test]=] "$here/core_clock_test")
set_tests_properties([=[core_clock_test]=] PROPERTIES  LABELS "core" TIMEOUT "300")
add_test([=[core_fbo_test]=] "$here/core_fbo_test")
add_test([=[soak_rounds_test]=] "$here/soak_rounds_test")
add_test([=[sound_threads]=] "setarch" "-R" "$here/sound/sound_threads")
TEXT
    [ $2 = asan ] || echo 'add_test([=[art_check]=] "/any/where/art/make" "--check")' \
        >>"$here/CTestTestfile.cmake" ;;
esac)";

class Parts : public ScriptStage {
protected:
    Parts() {
        StandIn("cmake", configuring);
        StandIn("ctest");
        StandIn("clang-format");
        StandIn("Xvfb", "echo 0 >&3; exec sleep 100");
        for (const char* file : {"core/clock_test.cpp", "core/fbo_test.cpp"})
            WriteFile(fs::path("tests") / file, "");
        WriteFile("tests/sound/CMakeLists.txt", "add_test(NAME sound_threads COMMAND threads)\n");
        WriteFile("tests/art/x.cmake", "add_test(NAME art_check\n    COMMAND art/make --check)\n");
    }

    /// What each part calls, doing nothing.
    void StandInForParts() {
        for (const char* folder : {"engine", "demo", "gallery", "sound", "art", "tools", "web"})
            fs::create_directory(folder);
        for (const char* script : {"tests/style", "tests/faults/run", "tests/coverage", "art/make"})
            WriteScript(script, "");
    }
};

} // namespace

TEST_F(Parts, Are_counted_and_named_in_their_order) {
    StandInForParts();
    const Tools::Ending end = Run("test");
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(Lines(end.errors, "=="),
                ElementsAre("== 1/6 format", "== 2/6 style", "== 3/6 release: build",
                            "== 3/6 release: tests", "== 4/6 art", "== 5/6 asan: build",
                            "== 5/6 asan: tests", "== 6/6 coverage"));
}

TEST_F(Parts, End_with_the_first_that_fails) {
    StandInForParts();
    WriteScript("tests/style", "exit 1");
    const Tools::Ending end = Run("test");
    EXPECT_NE(end.exitStatus, 0);
    EXPECT_THAT(end.errors, Not(HasSubstr("== 3/6")));
}

TEST_F(Parts, Of_one_name_build_only_what_it_needs_before_each_of_its_runs) {
    const Tools::Ending end = Run("test", {"core_clock"});
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(Lines(Calls(), "cmake --build"),
                ElementsAre("cmake --build build/release --target build.ninja", // the list of tests
                            "cmake --build build/release --target tests/core_clock_test",
                            "cmake --build build/asan --target build.ninja",
                            "cmake --build build/asan --target tests/core_clock_test"));
    const std::string all = Calls();
    EXPECT_LT(all.find("ctest --test-dir build/release"), all.find("--build build/asan"))
        << "the quick build's tests first";
    for (const std::string& call : Lines(all, "ctest"))
        EXPECT_THAT(call, HasSubstr("--tests-regex core_clock"));
    EXPECT_THAT(Lines(end.errors, "=="),
                ElementsAre("== 1/2 release: build", "== 1/2 release: tests", "== 2/2 asan: build",
                            "== 2/2 asan: tests"));
}

TEST_F(Parts, Of_one_name_find_the_program_behind_a_command) {
    Run("test", {"sound_thr"});
    EXPECT_THAT(Calls(), HasSubstr("--build build/release --target tests/sound/sound_threads\n"));
}

TEST_F(Parts, Of_one_name_pass_over_the_build_that_has_no_such_test) {
    const Tools::Ending end = Run("test", {"art_check"});
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(end.errors, HasSubstr("None of these tests is for this build.\n"));
    EXPECT_THAT(Calls(), Not(HasSubstr("--target tests/"))) << "the script that it runs builds";
    EXPECT_EQ(Lines(Calls("ctest"), "").size(), 1U);
}

TEST_F(Parts, Of_one_name_tell_how_many_tests_passed_and_what_they_measured) {
    StandIn("ctest", R"(
mkdir -p "$2/Testing/Temporary"
cat >"$2/Testing/Temporary/LastTest.log" <<TEXT
1/1 Testing: core_clock_test
1/1 Test: core_clock_test
measured: a tick: 0.1 s
unmeasured: 1
[  PASSED  ] 7 tests.
TEXT)");
    const Tools::Ending end = Run("test", {"core_clock"});
    EXPECT_THAT(Lines(end.errors, "core_clock_test"),
                ElementsAre("core_clock_test: a tick: 0.1 s", "core_clock_test: 7 tests pass",
                            "core_clock_test: a tick: 0.1 s", "core_clock_test: 7 tests pass"))
        << "of both builds";
}

TEST_F(Parts, Of_a_soak_tell_it_how_often_and_how_fast) {
    StandIn("ctest", "echo $NIMBREL_SOAK_SCENES $NIMBREL_SOAK_SHOWS $NIMBREL_SOAK_FRAMES >numbers");
    EXPECT_EQ(Run("test", {"soak"}).exitStatus, 0);
    EXPECT_EQ(ReadFile("numbers"), "200 3 2\n");
    Run("test", {"soak", "--shows", "20", "--fps", "60", "--scenes", "5"});
    EXPECT_EQ(ReadFile("numbers"), "5 20 60\n");
}

TEST_F(Parts, Know_every_test_that_there_is) {
    const auto names = [](const std::vector<std::string>& command) {
        const Tools::Ending end = Tools::Run({.arguments = command}, 60.0);
        std::set<std::string> found;
        std::istringstream words(end.output);
        std::copy_if(std::istream_iterator<std::string>(words), {},
                     std::inserter(found, found.end()),
                     [](const std::string& word) { return word.find('_') != std::string::npos; });
        return found;
    };
    std::set<std::string> told = names({NIMBREL_SOURCE_DIR "/test", "--names"});
    // "  Test  #1: core_clock_test"
    const std::set<std::string> built =
        names({"/bin/sh", "-c", "ctest -N --test-dir '" NIMBREL_BINARY_DIR "' | grep '#'"});
    // These are built only for ./test, only beside the sound library of this tree, or only for
    // ./test web-gl.
    for (const char* group :
         {"art_", "sound_", "stage_", "passes_", "explain_", "verify_", "movie_", "docs_",
          "scripts_movie_", "scripts_installed_", "webgl_frames_"}) {
        const auto ofGroup = [&](const std::string& name) { return name.starts_with(group); };
        if (std::none_of(built.begin(), built.end(), ofGroup))
            std::erase_if(told, ofGroup);
    }
    EXPECT_EQ(told, built);
}
