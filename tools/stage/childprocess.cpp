#include "tools/stage/childprocess.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tools {

namespace {

constexpr std::size_t mostQuoted = 1 << 12; // bytes of the errors among which a line is looked for

void Enter(ProcessGroup group) {
    if (group == ProcessGroup::Own)
        setpgid(0, 0);
    if (group == ProcessGroup::Session)
        setsid();
}

int StatusOf(const std::function<int()>& work) {
    try {
        return work();
    } catch (const std::exception& error) {
        dprintf(STDERR_FILENO, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}

[[noreturn]] void RunChild(const std::function<int()>& work, ProcessGroup group, int deathSignal,
                           pid_t parent) {
    prctl(PR_SET_PDEATHSIG, deathSignal);
    if (getppid() != parent) // it died before it could be told what to do about that
        _exit(EXIT_FAILURE);
    Enter(group);
    const int status = StatusOf(work);
    static_cast<void>(std::fflush(nullptr));
    _exit(status); // the parent's objects and exit functions are none of the child's business
}

std::string SignalInWords(int number) {
    const char* const words = sigdescr_np(number);
    return words != nullptr ? words : "signal " + std::to_string(number);
}

} // namespace

double SteadySeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

std::string Ending::FirstError() const {
    std::istringstream lines(errors.substr(0, mostQuoted));
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            return line;
    return "";
}

std::string Ending::InWords() const {
    std::string how;
    if (timedOut)
        how = "gave no answer";
    else if (signal != 0)
        how = "was ended by a crash (" + SignalInWords(signal) + ")";
    else
        how = "ended with exit status " + std::to_string(exitStatus);
    const std::string line = FirstError();
    return line.empty() ? how : how + ", saying \"" + line + '"';
}

ChildProcess::ChildProcess(const std::function<int()>& work, ProcessGroup itsGroup, int deathSignal)
    : group(itsGroup), start(SteadySeconds()) {
    // Or the child would write what is buffered a second time.
    static_cast<void>(std::fflush(nullptr));
    const pid_t parent = getpid();
    process = fork();
    if (process < 0)
        throw std::runtime_error(std::string("cannot start another process: ") +
                                 std::generic_category().message(errno));
    if (process == 0)
        RunChild(work, group, deathSignal, parent);
    if (group == ProcessGroup::Own)
        setpgid(process, process); // whoever of the two comes first
}

ChildProcess::~ChildProcess() {
    Kill();
}

void ChildProcess::Note(int waitStatus) {
    ended = true;
    ending.seconds = SteadySeconds() - start;
    ending.exitStatus = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : -1;
    ending.signal = WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : 0;
}

bool ChildProcess::Running() {
    int status = 0;
    if (!ended && waitpid(process, &status, WNOHANG) == process)
        Note(status);
    return !ended;
}

bool ChildProcess::Wait(double patience) {
    const double end = SteadySeconds() + patience;
    while (Running() && SteadySeconds() < end)
        std::this_thread::sleep_for(std::chrono::duration<double>(pollSeconds));
    return ended;
}

void ChildProcess::Signal(int number) {
    if (Running())
        kill(process, number);
}

void ChildProcess::Kill() {
    if (!Running())
        return;
    kill(group == ProcessGroup::Same ? process : -process, SIGKILL);
    kill(process, SIGKILL); // it may not have come into its group yet
    int status = 0;
    waitpid(process, &status, 0);
    Note(status);
}

Ending ChildProcess::Finish(double patience) {
    const bool timedOut = !Wait(patience);
    Kill();
    if (timedOut) {
        ending.timedOut = true;
        ending.signal = 0; // that was ours
    }
    return ending;
}

} // namespace Tools
