#include "tests/scripts/terminal_run.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto pollInterval = std::chrono::milliseconds(5);

[[noreturn]] void Become(const std::vector<std::string>& command, const Environment& added) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // does not outlive a test that crashes
    for (const auto& [name, value] : added)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

TerminalRun::TerminalRun(const std::vector<std::string>& command, const Environment& added) {
    process = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (process < 0)
        throw std::runtime_error("cannot start " + command.front() + " on a terminal");
    if (process == 0)
        Become(command, added);
    fcntl(terminal, F_SETFL, O_NONBLOCK);
    fcntl(terminal, F_SETFD, FD_CLOEXEC); // or others would keep the line open
}

TerminalRun::~TerminalRun() {
    if (Running()) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    HangUp();
}

void TerminalRun::Type(const std::string& text) {
    if (write(terminal, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("the terminal takes no input");
}

void TerminalRun::HangUp() {
    if (terminal >= 0)
        close(terminal);
    terminal = -1;
}

void TerminalRun::Signal(int number) {
    kill(process, number);
}

void TerminalRun::Look() {
    std::array<char, 4096> piece{};
    for (ssize_t count = 0;
         terminal >= 0 && (count = read(terminal, piece.data(), piece.size())) > 0;)
        output.append(piece.data(), static_cast<std::size_t>(count));
    if (!ended && waitpid(process, &status, WNOHANG) == process)
        ended = true;
}

bool TerminalRun::Running() {
    Look();
    return !ended;
}

Outcome TerminalRun::Wait(double seconds) {
    const auto start = Clock::now();
    const auto passed = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    while (Running() && passed() < seconds)
        std::this_thread::sleep_for(pollInterval);
    Outcome outcome;
    outcome.ended = ended;
    outcome.seconds = passed();
    if (!ended) {
        kill(process, SIGKILL);
        waitpid(process, &status, 0);
        ended = true;
    }
    Look(); // the last words
    outcome.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.output = output;
    return outcome;
}
