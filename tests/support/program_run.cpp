#include "tests/support/program_run.h"

#include "tests/support/scratch.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr auto pollInterval = std::chrono::milliseconds(5);
const char* const outputFile = "stdout.txt";
const char* const complaintFile = "stderr.txt";

double Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

void Redirect(const char* file, int descriptor) {
    const int opened = open(file, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(opened, descriptor);
    close(opened);
}

[[noreturn]] void Become(const std::vector<std::string>& command, const Environment& added,
                         const std::vector<std::string>& removed) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // does not outlive a test that crashes
    for (const auto& [name, value] : added)
        setenv(name.c_str(), value.c_str(), 1);
    for (const std::string& name : removed)
        unsetenv(name.c_str());
    Redirect(outputFile, STDOUT_FILENO);
    Redirect(complaintFile, STDERR_FILENO);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execv(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

ProgramRun::ProgramRun(const std::vector<std::string>& command, const Environment& added,
                       const std::vector<std::string>& removed)
    : start(Now()) {
    process = fork();
    if (process < 0)
        throw std::runtime_error("cannot start " + command.front());
    if (process == 0)
        Become(command, added, removed);
}

ProgramRun::~ProgramRun() {
    if (Running()) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

void ProgramRun::Look() {
    if (ended || waitpid(process, &status, WNOHANG) == 0)
        return;
    ended = true;
    seconds = Now() - start;
}

bool ProgramRun::Running() {
    Look();
    return !ended;
}

void ProgramRun::Signal(int number) {
    if (Running())
        kill(process, number);
}

Outcome ProgramRun::Wait(double patience) {
    while (Running() && Now() - start < patience)
        std::this_thread::sleep_for(pollInterval);
    Outcome outcome;
    outcome.ended = ended;
    if (!ended) {
        kill(process, SIGKILL);
        waitpid(process, &status, 0);
        ended = true;
        seconds = Now() - start;
    }
    outcome.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    outcome.seconds = seconds;
    outcome.output = ReadFile(outputFile);
    outcome.complaint = ReadFile(complaintFile);
    return outcome;
}

std::map<std::string, std::string> ReadReport(const std::string& path) {
    std::map<std::string, std::string> report;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::size_t blank = line.find(' ');
        report[line.substr(0, blank)] = blank == std::string::npos ? "" : line.substr(blank + 1);
    }
    return report;
}
