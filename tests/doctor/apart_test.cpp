#include "tools/doctor/apart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <unistd.h>

using Doctor::Apart;
using Doctor::Fact;
using Doctor::FactNumber;
using Doctor::Notebook;
using Doctor::RunApart;
using ::testing::HasSubstr;

namespace {

constexpr double patience = 20.0; // seconds: more than any of this takes

} // namespace

TEST(Apart, Facts_come_back_each_as_one_line) {
    const Apart apart = RunApart(
        [](const Notebook& notebook) {
            notebook.Note("name", "two words");
            notebook.Note("lines", "a\nb");
            notebook.Note("empty", "");
            notebook.Note("number", 42);
        },
        patience);
    EXPECT_TRUE(apart.InOrder());
    EXPECT_EQ(Fact(apart.facts, "name"), "two words");
    EXPECT_EQ(Fact(apart.facts, "lines"), "a b");
    EXPECT_EQ(apart.facts.count("empty"), 1u);
    EXPECT_EQ(FactNumber(apart.facts, "number"), 42);
    EXPECT_EQ(Fact(apart.facts, "unknown"), "");
    EXPECT_EQ(FactNumber(apart.facts, "unknown"), 0);
}

TEST(Apart, More_facts_than_a_pipe_holds_come_back_too) {
    const std::string large(200000, 'x'); // a pipe holds 64 KiB
    const Apart apart =
        RunApart([&](const Notebook& notebook) { notebook.Note("large", large); }, patience);
    EXPECT_EQ(Fact(apart.facts, "large"), large);
}

TEST(Apart, Crash_is_told_and_what_was_noted_before_it_is_kept) {
    const Apart apart = RunApart(
        [](const Notebook& notebook) {
            notebook.Note("before", "kept");
            std::signal(SIGSEGV, SIG_DFL); // a sanitizer would turn it into an exit status
            std::raise(SIGSEGV);
        },
        patience);
    EXPECT_FALSE(apart.InOrder());
    EXPECT_EQ(apart.signal, SIGSEGV);
    EXPECT_EQ(Fact(apart.facts, "before"), "kept");
    EXPECT_EQ(apart.HowItEnded(), "was ended by a crash (Segmentation fault)");
}

TEST(Apart, Library_that_ends_the_program_is_quoted) {
    const Apart apart = RunApart(
        [](const Notebook&) {
            const char words[] = "\nX Error of failed request\nand where\n";
            if (write(STDERR_FILENO, words, sizeof words - 1) > 0)
                _exit(7);
        },
        patience);
    EXPECT_EQ(apart.exitStatus, 7);
    EXPECT_EQ(apart.HowItEnded(), "ended with exit status 7, saying \"X Error of failed request\"");
}

TEST(Apart, Exception_is_quoted) {
    const Apart apart =
        RunApart([](const Notebook&) { throw std::runtime_error("no luck"); }, patience);
    EXPECT_FALSE(apart.InOrder());
    EXPECT_THAT(apart.HowItEnded(), HasSubstr("saying \"no luck\""));
}

TEST(Apart, Work_that_hangs_is_ended_when_its_time_is_up) {
    const auto start = std::chrono::steady_clock::now();
    const Apart apart = RunApart(
        [](const Notebook& notebook) {
            notebook.Note("before", "kept");
            for (;;)
                pause();
        },
        0.2);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_TRUE(apart.late);
    EXPECT_EQ(Fact(apart.facts, "before"), "kept");
    EXPECT_EQ(apart.HowItEnded(), "gave no answer");
    EXPECT_GE(taken.count(), 0.2);
    EXPECT_LT(taken.count(), patience);
}

TEST(Apart, Program_that_the_work_becomes_is_waited_for) {
    const Apart apart = RunApart(
        [](const Notebook&) {
            execl("/bin/sh", "sh", "-c", "sleep 0.1; exit 5", static_cast<char*>(nullptr));
        },
        patience);
    EXPECT_EQ(apart.exitStatus, 5);
}

TEST(Apart, Terminal_is_out_of_reach) {
    const Apart apart = RunApart(
        [](const Notebook& notebook) {
            char letter = 0;
            notebook.Note("read", static_cast<int>(read(STDIN_FILENO, &letter, 1)));
            notebook.Note("leader", getsid(0) == getpid() ? 1 : 0);
        },
        patience);
    EXPECT_EQ(Fact(apart.facts, "read"), "0") << "expected the end of a file at once";
    EXPECT_EQ(FactNumber(apart.facts, "leader"), 1) << "expected a session of its own";
}
