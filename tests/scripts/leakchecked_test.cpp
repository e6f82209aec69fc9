// What runs the tests of the sanitizer build: when it gives a test another try, and when not.

#include "tests/scripts/script_stage.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <string>

using ::testing::HasSubstr;

namespace {

/// A test program that writes a line for each run, and then ends as its text says.
class LeakChecked : public ScriptStage {
protected:
    static constexpr int orderly = 0;
    static constexpr int ownFailure = 4;

    Tools::Ending RunTest(const std::string& text) const {
        WriteScript("program", "echo run >>runs\nfell() {\n"
                               "echo '==7==LeakSanitizer has encountered a fatal error.' >&2\n"
                               "exit 23\n}\nruns() { wc -l <runs; }\n" +
                                   text);
        return Run(NIMBREL_SOURCE_DIR "/tests/leakchecked.sh", {"./program"});
    }

    static std::string Runs() { return ReadFile("runs"); }
};

TEST_F(LeakChecked, Runs_a_test_once_and_passes_on_what_it_says) {
    const Tools::Ending end = RunTest("echo said");
    EXPECT_EQ(end.exitStatus, orderly);
    EXPECT_EQ(end.output, "said\n");
    EXPECT_EQ(Runs(), "run\n");
}

TEST_F(LeakChecked, Runs_it_again_when_only_the_leak_checker_fell) {
    EXPECT_EQ(RunTest("[ $(runs) -gt 4 ] || fell").exitStatus, orderly);
    EXPECT_EQ(Runs(), "run\nrun\nrun\nrun\nrun\n");
}

TEST_F(LeakChecked, Gives_up_when_the_leak_checker_falls_every_time) {
    EXPECT_EQ(RunTest("fell").exitStatus, 23);
    EXPECT_EQ(Runs(), "run\nrun\nrun\nrun\nrun\n");
}

TEST_F(LeakChecked, Gives_a_test_that_fails_no_other_try) {
    EXPECT_EQ(RunTest("exit 4").exitStatus, ownFailure);
    EXPECT_EQ(Runs(), "run\n");
}

TEST_F(LeakChecked, Gives_a_test_that_fails_no_other_try_though_the_leak_checker_fell_too) {
    EXPECT_EQ(RunTest("echo '[  FAILED  ] One.Test'\nfell").exitStatus, 23);
    EXPECT_EQ(Runs(), "run\n");
}

TEST_F(LeakChecked, Gives_a_test_that_leaks_no_other_try) {
    const Tools::Ending end =
        RunTest("echo '==7==ERROR: LeakSanitizer: detected memory leaks'\nexit 23");
    EXPECT_EQ(end.exitStatus, 23);
    EXPECT_THAT(end.output, HasSubstr("detected memory leaks"));
    EXPECT_EQ(Runs(), "run\n");
}

} // namespace
