#include "tools/stage/process.h"

#include "tests/support/scratch.h"
#include "tools/stage/isolated.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <thread>

#include <unistd.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using Tools::Command;
using Tools::Ending;
using Tools::Fact;
using Tools::FactNumber;
using Tools::InputFrom;
using Tools::OutputTo;
using Tools::Process;

namespace {

constexpr double patience = 60.0; // seconds: more than any of this takes
constexpr std::size_t much = static_cast<std::size_t>(64) << 20;

Command Shell(const std::string& text) {
    return {.arguments = {"sh", "-c", text}};
}

/// What is thrown; empty when nothing is.
std::string Refusal(const std::function<void()>& step) {
    try {
        step();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

/// Waits until the program has written this.
void Await(Process& process, const std::string& text) {
    const double end = Tools::SteadySeconds() + patience;
    while (process.Output().find(text) == std::string::npos) {
        ASSERT_LT(Tools::SteadySeconds(), end) << text << " does not come";
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

/// Waits until no process of this number runs; one that nobody has asked for is none.
bool Ends(const std::string& process) {
    const double end = Tools::SteadySeconds() + patience;
    for (;;) {
        std::error_code none;
        if (!fs::exists("/proc/" + process, none))
            return true;
        const std::string status = ReadFile("/proc/" + process + "/status");
        if (status.find("State:\tZ") != std::string::npos)
            return true;
        if (Tools::SteadySeconds() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace

TEST(Process, Output_errors_and_status_come_back_each_by_itself) {
    const Ending end = Tools::Run(Shell("echo out; echo err >&2; exit 3"), patience);
    EXPECT_EQ(end.output, "out\n");
    EXPECT_EQ(end.errors, "err\n");
    EXPECT_EQ(end.exitStatus, 3);
    EXPECT_EQ(end.InWords(), "ended with exit status 3, saying \"err\"");
}

TEST(Process, Errors_may_go_where_the_output_goes) {
    Command command = Shell("echo a; echo b >&2; echo c");
    command.errors = OutputTo::Output;
    const Ending end = Tools::Run(command, patience);
    EXPECT_EQ(end.output, "a\nb\nc\n");
    EXPECT_EQ(end.errors, "");
}

TEST(Process, Output_may_be_dropped) {
    Command command = Shell("echo a; echo b >&2");
    command.output = command.errors = OutputTo::Nothing;
    const Ending end = Tools::Run(command, patience);
    EXPECT_TRUE(end.InOrder());
    EXPECT_EQ(end.output + end.errors, "");
}

TEST(Process, Output_may_go_where_that_of_this_process_goes) {
    Command command = Shell("echo a; echo b >&2");
    command.output = command.errors = OutputTo::Inherited;
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    const Ending end = Tools::Run(command, patience);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "a\n");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "b\n");
    EXPECT_EQ(end.output + end.errors, "");
}

TEST(Process, Arguments_arrive_as_they_are) {
    const Ending end =
        Tools::Run({.arguments = {"printf", "%s|", "a b", "", "\"$HOME\"", "x\ny"}}, patience);
    EXPECT_EQ(end.output, "a b||\"$HOME\"|x\ny|");
}

TEST(Process, Environment_is_inherited_added_to_and_taken_from) {
    setenv("NIMBREL_TEST_KEPT", "kept", 1);
    setenv("NIMBREL_TEST_CHANGED", "old", 1);
    setenv("NIMBREL_TEST_REMOVED", "here", 1);
    Command command = Shell("echo $NIMBREL_TEST_KEPT $NIMBREL_TEST_CHANGED $NIMBREL_TEST_NEW "
                            "${NIMBREL_TEST_REMOVED-gone} ${NIMBREL_TEST_BOTH-gone}");
    command.added = {
        {"NIMBREL_TEST_CHANGED", "new"}, {"NIMBREL_TEST_NEW", "a=b"}, {"NIMBREL_TEST_BOTH", "x"}};
    command.removed = {"NIMBREL_TEST_REMOVED", "NIMBREL_TEST_BOTH"};
    EXPECT_EQ(Tools::Run(command, patience).output, "kept new a=b gone gone\n");
    EXPECT_STREQ(std::getenv("NIMBREL_TEST_CHANGED"), "old") << "this process keeps its own";
}

TEST(Process, Program_is_looked_for_in_the_path_that_it_gets) {
    const ScratchDir scratch;
    WriteFile("bin/nimbrel_test_tool", "#!/bin/sh\necho found\n");
    fs::permissions("bin/nimbrel_test_tool", fs::perms::owner_all);
    const Command command{.arguments = {"nimbrel_test_tool"},
                          .added = {{"PATH", scratch.Path() / "bin"}}};
    EXPECT_EQ(Tools::Run(command, patience).output, "found\n");
}

TEST(Process, Works_in_its_folder_and_is_a_path_from_there) {
    const ScratchDir scratch;
    WriteFile("sub/tool", "#!/bin/sh\npwd\n");
    fs::permissions("sub/tool", fs::perms::owner_all);
    const Command command{.arguments = {"./tool"}, .folder = "sub"};
    EXPECT_EQ(Tools::Run(command, patience).output, (scratch.Path() / "sub").string() + "\n");
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(Process, That_cannot_be_started_says_why) {
    const ScratchDir scratch;
    WriteFile("text", "no program");
    const auto refusal = [](const Command& command) {
        return Refusal([&] { const Process process(command); });
    };
    EXPECT_EQ(refusal({.arguments = {"nimbrel_no_such_program"}}),
              "cannot start nimbrel_no_such_program: No such file or directory");
    EXPECT_EQ(refusal({.arguments = {"./text"}}), "cannot start ./text: Permission denied");
    EXPECT_EQ(refusal({.arguments = {"true"}, .folder = "nowhere"}),
              "cannot start true: No such file or directory");
    EXPECT_EQ(refusal({.arguments = {"nimbrel_no_such_program"}, .terminal = true}),
              "cannot start nimbrel_no_such_program: No such file or directory");
    EXPECT_EQ(refusal({.arguments = {}}), "cannot start a program without a name");
}

TEST(Process, Sixty_four_megabytes_each_way_do_not_stop_it) {
    const Ending end =
        Tools::Run(Shell("head -c 67108864 /dev/zero; head -c 67108864 /dev/zero >&2"), patience);
    EXPECT_EQ(end.output.size(), much);
    EXPECT_EQ(end.errors.size(), much);

    Process copy({.arguments = {"cat"}, .input = InputFrom::Pipe});
    const std::string text(much, 'x');
    copy.Write(text);
    copy.CloseInput();
    EXPECT_TRUE(copy.Wait(patience).output == text); // not to be printed
}

TEST(Process, Reads_the_end_of_a_file_unless_something_else_is_asked_for) {
    const Ending end = Tools::Run({.arguments = {"cat"}}, patience);
    EXPECT_TRUE(end.InOrder());
    EXPECT_EQ(end.output, "");
}

TEST(Process, That_closes_its_input_is_noticed_when_writing) {
    Process process(
        {.arguments = {"sh", "-c", "exec <&-; echo closed; sleep 100"}, .input = InputFrom::Pipe});
    Await(process, "closed");
    EXPECT_EQ(Refusal([&] { process.Write("x"); }), "sh reads no more: Broken pipe");
}

TEST(Process, That_has_ended_is_noticed_when_writing) {
    Process process({.arguments = {"true"}, .input = InputFrom::Pipe});
    process.Wait(patience);
    EXPECT_EQ(Refusal([&] { process.Write("x"); }), "true reads no more: Broken pipe");
}

// Files that are opened get the numbers 0 to 2 then.
TEST(Process, Has_its_streams_although_this_process_has_none) {
    const Tools::IsolatedRun run = Tools::RunIsolated(
        [](const Tools::Report& report) {
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
                close(stream);
            Process process(
                {.arguments = {"sh", "-c", "cat; echo err >&2"}, .input = InputFrom::Pipe});
            process.Write("in");
            process.CloseInput();
            const Ending end = process.Wait(patience);
            report.Add("output", end.output);
            report.Add("errors", end.errors);
        },
        patience);
    EXPECT_EQ(Fact(run.facts, "output"), "in");
    EXPECT_EQ(Fact(run.facts, "errors"), "err ") << run.ending.InWords();
}

TEST(Process, Is_killed_when_its_time_is_up_and_what_it_said_is_kept) {
    const Ending end = Tools::Run(Shell("echo before; sleep 100; echo behind"), 0.5);
    EXPECT_TRUE(end.timedOut);
    EXPECT_EQ(end.output, "before\n");
    EXPECT_GE(end.seconds, 0.5);
    EXPECT_LT(end.seconds, patience);
}

TEST(Process, Crash_is_told) {
    const Ending end = Tools::Run(Shell("kill -SEGV $$"), patience);
    EXPECT_EQ(end.signal, SIGSEGV);
    EXPECT_EQ(end.InWords(), "was ended by a crash (Segmentation fault)");
}

TEST(Process, Answers_signals_and_tells_what_it_has_written_so_far) {
    Process process(Shell("trap 'exit 7' TERM; echo ready; while :; do sleep 0.01; done"));
    Await(process, "ready\n");
    EXPECT_TRUE(process.Running());
    process.Signal(SIGTERM);
    EXPECT_EQ(process.Wait(patience).exitStatus, 7);
    EXPECT_FALSE(process.Running());
}

TEST(Process, Signals_end_it_although_they_are_ignored_and_held_back_here) {
    const Tools::IsolatedRun run = Tools::RunIsolated(
        [](const Tools::Report& report) {
            std::signal(SIGTERM, SIG_IGN);
            std::signal(SIGPIPE, SIG_IGN);
            sigset_t all;
            sigfillset(&all);
            sigprocmask(SIG_SETMASK, &all, nullptr);
            report.Add("term", Tools::Run(Shell("kill -TERM $$; echo alive"), patience).signal);
            report.Add("pipe", Tools::Run(Shell("kill -PIPE $$; echo alive"), patience).signal);
        },
        patience);
    EXPECT_EQ(FactNumber(run.facts, "term"), SIGTERM);
    EXPECT_EQ(FactNumber(run.facts, "pipe"), SIGPIPE);
}

TEST(Process, Is_killed_with_the_object) {
    std::string number;
    {
        Process process(Shell("echo $$ .; exec sleep 100"));
        Await(process, ".\n");
        number = std::to_string(std::stoi(process.Output()));
    }
    EXPECT_TRUE(Ends(number));
}

TEST(Process, Does_not_outlive_a_process_that_crashes) {
    const Tools::IsolatedRun run = Tools::RunIsolated(
        [](const Tools::Report& report) {
            Process process(Shell("echo $$ .; exec sleep 100"));
            Await(process, ".\n");
            report.Add("number", std::stoi(process.Output()));
            std::raise(SIGKILL);
        },
        patience);
    EXPECT_EQ(run.ending.signal, SIGKILL);
    ASSERT_NE(FactNumber(run.facts, "number"), 0);
    EXPECT_TRUE(Ends(Fact(run.facts, "number")));
}

TEST(Process, That_has_to_succeed_is_quoted_when_it_does_not) {
    Process fine({.arguments = {"cat"}, .input = InputFrom::Pipe});
    EXPECT_EQ(Refusal([&] { fine.Finish(); }), "");
    Process bad(Shell("echo what; echo why >&2; echo; exit 1"));
    EXPECT_EQ(Refusal([&] { bad.Finish(); }), "sh failed: what\n\nwhy");
    Process talkative(Shell("head -c 5000 /dev/zero | tr '\\0' x; exit 1"));
    EXPECT_EQ(Refusal([&] { talkative.Finish(); }), "sh failed: " + std::string(4096, 'x'));
}

TEST(Terminal, Is_all_three_streams) {
    const Ending end = Tools::Run({.arguments = {"sh", "-c",
                                                 "test -t 0 && test -t 1 && test -t 2 "
                                                 "&& echo all >/dev/tty"},
                                   .terminal = true},
                                  patience);
    EXPECT_TRUE(end.InOrder());
    EXPECT_EQ(end.output, "all\r\n");
}

TEST(Terminal, Takes_what_is_typed_and_shows_it) {
    Process process({.arguments = {"sh", "-c", "read line; echo \"got $line\""}, .terminal = true});
    process.Write("a b\n");
    EXPECT_EQ(process.Wait(patience).output, "a b\r\ngot a b\r\n");
}

TEST(Terminal, Interrupts_the_program_by_Ctrl_C) {
    Process process({.arguments = {"cat"}, .terminal = true});
    process.Write("ready\n");
    Await(process, "ready\r\nready\r\n"); // shown, and answered
    process.Write("\x03");
    const Ending end = process.Wait(patience);
    EXPECT_EQ(end.signal, SIGINT);
    EXPECT_THAT(end.output, HasSubstr("^C"));
}

TEST(Terminal, Hangs_up_when_it_is_taken_away) {
    Process process({.arguments = {"sh", "-c", "echo ready; sleep 100"}, .terminal = true});
    Await(process, "ready");
    process.CloseInput();
    const Ending end = process.Wait(patience);
    EXPECT_EQ(end.signal, SIGHUP);
    EXPECT_EQ(end.output, "ready\r\n") << "what came before stays";
}

// It holds some thousand bytes that nobody has read.
TEST(Terminal, Much_output_does_not_stop_the_program) {
    const Ending end =
        Tools::Run({.arguments = {"sh", "-c", "head -c 1000000 /dev/zero | tr '\\0' x; exit 4"},
                    .terminal = true},
                   patience);
    EXPECT_EQ(end.exitStatus, 4);
    EXPECT_EQ(end.output.size(), 1000000u);
}

TEST(Terminal, That_writes_without_an_end_does_not_stop_the_clock) {
    const Ending end = Tools::Run({.arguments = {"yes"}, .terminal = true}, 0.3);
    EXPECT_TRUE(end.timedOut);
    EXPECT_LT(end.seconds, patience);
}
