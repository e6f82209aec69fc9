#include "tools/stage/isolated.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <unistd.h>

using ::testing::HasSubstr;
using Tools::Fact;
using Tools::FactNumber;
using Tools::IsolatedRun;
using Tools::Report;
using Tools::RunIsolated;

namespace {

constexpr double patience = 20.0; // seconds: more than any of this takes

} // namespace

TEST(RunIsolated, Facts_come_back_each_as_one_line) {
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            report.Add("name", "two words");
            report.Add("lines", "a\nb");
            report.Add("empty", "");
            report.Add("number", 42);
            report.Add("twice", 1);
            report.Add("twice", 2);
        },
        patience);
    EXPECT_TRUE(run.ending.InOrder());
    EXPECT_EQ(Fact(run.facts, "name"), "two words");
    EXPECT_EQ(Fact(run.facts, "lines"), "a b");
    EXPECT_EQ(run.facts.count("empty"), 1u);
    EXPECT_EQ(FactNumber(run.facts, "number"), 42);
    EXPECT_EQ(FactNumber(run.facts, "twice"), 2);
    EXPECT_EQ(Fact(run.facts, "unknown"), "");
    EXPECT_EQ(FactNumber(run.facts, "unknown"), 0);
}

TEST(RunIsolated, More_facts_than_a_pipe_holds_come_back_too) {
    const std::string large(200000, 'x'); // a pipe holds 64 KiB
    const IsolatedRun run =
        RunIsolated([&](const Report& report) { report.Add("large", large); }, patience);
    EXPECT_EQ(Fact(run.facts, "large"), large);
}

TEST(RunIsolated, Crash_is_told_and_what_was_added_before_it_is_kept) {
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            report.Add("before", "kept");
            std::signal(SIGSEGV, SIG_DFL); // a sanitizer would turn it into an exit status
            std::raise(SIGSEGV);
        },
        patience);
    EXPECT_FALSE(run.ending.InOrder());
    EXPECT_EQ(run.ending.signal, SIGSEGV);
    EXPECT_EQ(Fact(run.facts, "before"), "kept");
    EXPECT_EQ(run.ending.InWords(), "was ended by a crash (Segmentation fault)");
}

TEST(RunIsolated, Library_that_ends_the_program_is_quoted) {
    const IsolatedRun run = RunIsolated(
        [](const Report&) {
            const char words[] = "\nX Error of failed request\nand where\n";
            if (write(STDERR_FILENO, words, sizeof words - 1) > 0)
                _exit(7);
        },
        patience);
    EXPECT_EQ(run.ending.exitStatus, 7);
    EXPECT_EQ(run.ending.InWords(),
              "ended with exit status 7, saying \"X Error of failed request\"");
}

TEST(RunIsolated, Exception_is_quoted) {
    const IsolatedRun run =
        RunIsolated([](const Report&) { throw std::runtime_error("no luck"); }, patience);
    EXPECT_EQ(run.ending.InWords(), "ended with exit status 1, saying \"no luck\"");
}

TEST(RunIsolated, Work_that_hangs_is_ended_when_its_time_is_up) {
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            report.Add("before", "kept");
            for (;;)
                pause();
        },
        0.2);
    EXPECT_TRUE(run.ending.timedOut);
    EXPECT_EQ(Fact(run.facts, "before"), "kept");
    EXPECT_EQ(run.ending.InWords(), "gave no answer");
    EXPECT_GE(run.ending.seconds, 0.2);
    EXPECT_LT(run.ending.seconds, patience);
}

TEST(RunIsolated, Facts_without_an_end_do_not_stop_the_clock) {
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            for (;;)
                report.Add("more", 1);
        },
        0.2);
    EXPECT_TRUE(run.ending.timedOut);
    EXPECT_LT(run.ending.seconds, patience);
}

// Whatever the work has started has the pipe as well.
TEST(RunIsolated, Process_that_stays_behind_is_not_waited_for) {
    const double start = Tools::SteadySeconds();
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            if (fork() == 0) {
                sleep(2 * static_cast<unsigned>(patience));
                _exit(EXIT_SUCCESS);
            }
            report.Add("done", 1);
        },
        patience);
    EXPECT_EQ(FactNumber(run.facts, "done"), 1);
    EXPECT_TRUE(run.ending.InOrder());
    EXPECT_LT(Tools::SteadySeconds() - start, patience / 2.0);
}

TEST(RunIsolated, Terminal_is_out_of_reach) {
    const IsolatedRun run = RunIsolated(
        [](const Report& report) {
            char letter = 0;
            report.Add("read", static_cast<int>(read(STDIN_FILENO, &letter, 1)));
            report.Add("leader", getsid(0) == getpid() ? 1 : 0);
        },
        patience);
    EXPECT_EQ(Fact(run.facts, "read"), "0") << "expected the end of a file at once";
    EXPECT_EQ(FactNumber(run.facts, "leader"), 1) << "expected a session of its own";
}

TEST(RunIsolated, Standard_output_is_dropped) {
    ::testing::internal::CaptureStdout();
    RunIsolated([](const Report&) { EXPECT_EQ(write(STDOUT_FILENO, "x", 1), 1); }, patience);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}
