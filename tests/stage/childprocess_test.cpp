#include "tools/stage/childprocess.h"

#include "tools/stage/descriptor.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include <poll.h>
#include <unistd.h>

using Tools::ChildProcess;
using Tools::Ending;
using Tools::Pipe;
using Tools::ProcessGroup;

namespace {

constexpr double patience = 20.0; // seconds: more than any of this takes

[[noreturn]] void WaitForever() {
    for (;;)
        pause();
}

/// The next byte that comes through the pipe; 0 at its end, which comes when nobody holds the other
/// one any more; -1 when neither comes in time.
int Next(const Pipe& pipe) {
    pollfd waiting{pipe.reading.Get(), POLLIN, 0};
    char byte = 0;
    if (poll(&waiting, 1, static_cast<int>(patience * 1000.0)) <= 0)
        return -1;
    return read(pipe.reading.Get(), &byte, 1) == 1 ? byte : 0;
}

void Send(const Pipe& pipe, char byte) {
    ASSERT_EQ(write(pipe.writing.Get(), &byte, 1), 1);
}

} // namespace

TEST(ChildProcess, Exits_with_what_the_work_returns) {
    for (const int status : {0, 3, 255}) {
        const Ending end = ChildProcess([=] { return status; }).Finish(patience);
        EXPECT_EQ(end.exitStatus, status);
        EXPECT_EQ(end.signal, 0);
        EXPECT_FALSE(end.timedOut);
        EXPECT_EQ(end.InOrder(), status == 0);
    }
}

TEST(ChildProcess, Crash_has_a_signal_and_no_status) {
    const Ending end = ChildProcess([] {
                           std::signal(SIGSEGV, SIG_DFL); // a sanitizer would make it a status
                           return std::raise(SIGSEGV);
                       }).Finish(patience);
    EXPECT_EQ(end.signal, SIGSEGV);
    EXPECT_EQ(end.exitStatus, -1);
    EXPECT_FALSE(end.InOrder());
    EXPECT_EQ(end.InWords(), "was ended by a crash (Segmentation fault)");
}

TEST(ChildProcess, Is_killed_when_its_time_is_up) {
    ChildProcess child([]() -> int { WaitForever(); });
    const Ending end = child.Finish(0.2);
    EXPECT_TRUE(end.timedOut);
    EXPECT_EQ(end.signal, 0) << "it was not a crash";
    EXPECT_FALSE(end.InOrder());
    EXPECT_EQ(end.InWords(), "gave no answer");
    EXPECT_GE(end.seconds, 0.2);
    EXPECT_LT(end.seconds, patience);
    EXPECT_FALSE(child.Running());
    EXPECT_TRUE(child.Finish(patience).timedOut) << "asked again it says the same";
}

TEST(ChildProcess, Is_waited_for_no_longer_than_it_takes) {
    const double start = Tools::SteadySeconds();
    ChildProcess child([] { return 0; });
    EXPECT_TRUE(child.Wait(patience));
    EXPECT_LT(Tools::SteadySeconds() - start, patience / 2.0);
}

TEST(ChildProcess, Still_runs_after_a_wait_that_was_too_short) {
    ChildProcess child([]() -> int { WaitForever(); });
    EXPECT_FALSE(child.Wait(0.0));
    EXPECT_TRUE(child.Running());
}

TEST(ChildProcess, Gets_signals) {
    ChildProcess child([]() -> int { WaitForever(); });
    child.Signal(SIGTERM);
    const Ending end = child.Finish(patience);
    EXPECT_EQ(end.signal, SIGTERM);
    EXPECT_FALSE(end.timedOut);
    child.Signal(SIGTERM); // to nobody
}

TEST(ChildProcess, Is_killed_with_the_object_and_with_all_that_it_has_started) {
    for (const ProcessGroup group : {ProcessGroup::Own, ProcessGroup::Session}) {
        Pipe pipe("test");
        {
            const ChildProcess child(
                [&]() -> int {
                    const ChildProcess grandchild(
                        [&]() -> int {
                            Send(pipe, 'r');
                            WaitForever();
                        },
                        ProcessGroup::Same);
                    WaitForever();
                },
                group);
            pipe.writing.Close();
            ASSERT_EQ(Next(pipe), 'r');
        }
        EXPECT_EQ(Next(pipe), 0);
    }
}

TEST(ChildProcess, Does_not_outlive_a_parent_that_crashes) {
    Pipe pipe("test");
    ChildProcess parent([&]() -> int {
        const ChildProcess child([&]() -> int {
            Send(pipe, 'r');
            WaitForever();
        });
        WaitForever();
    });
    pipe.writing.Close();
    ASSERT_EQ(Next(pipe), 'r');
    parent.Signal(SIGKILL);
    EXPECT_EQ(Next(pipe), 0);
}

TEST(ChildProcess, Is_in_the_group_that_was_asked_for) {
    const auto start = [](ProcessGroup group) {
        return std::make_unique<ChildProcess>([]() -> int { WaitForever(); }, group);
    };
    const auto same = start(ProcessGroup::Same);
    EXPECT_EQ(getpgid(same->Id()), getpgrp());
    const auto own = start(ProcessGroup::Own);
    EXPECT_EQ(getpgid(own->Id()), own->Id());
    EXPECT_EQ(getsid(own->Id()), getsid(0));
    const auto begun = start(ProcessGroup::Session);
    for (double end = Tools::SteadySeconds() + patience;
         getsid(begun->Id()) != begun->Id() && Tools::SteadySeconds() < end;)
        usleep(1000); // it makes its session itself
    EXPECT_EQ(getsid(begun->Id()), begun->Id());
}

TEST(ChildProcess, Does_not_write_again_what_was_not_yet_written) {
    std::FILE* const file = std::tmpfile();
    std::fputs("once", file); // stands in the buffer
    ChildProcess([] { return 0; }).Finish(patience);
    std::fflush(file);
    EXPECT_EQ(lseek(fileno(file), 0, SEEK_END), 4);
    std::fclose(file);
}

TEST(ChildProcess, Leaves_the_exit_functions_to_its_parent) {
    static const Pipe* told = nullptr;
    Pipe pipe("test");
    told = &pipe;
    ChildProcess child([] { return std::atexit([] { Send(*told, 'x'); }); });
    pipe.writing.Close();
    EXPECT_EQ(Next(pipe), 0);
}

TEST(Ending, Quotes_the_first_line_that_says_something) {
    Ending end;
    end.exitStatus = 7;
    EXPECT_EQ(end.InWords(), "ended with exit status 7");
    end.errors = "\n\nfirst\nsecond\n";
    EXPECT_EQ(end.InWords(), "ended with exit status 7, saying \"first\"");
    end.errors = std::string(5000, 'x'); // 4096 of them are looked at
    EXPECT_EQ(end.InWords(), "ended with exit status 7, saying \"" + std::string(4096, 'x') + "\"");
}
