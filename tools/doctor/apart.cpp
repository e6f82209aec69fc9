#include "tools/doctor/apart.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Doctor {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto lookInterval = std::chrono::milliseconds(5);
constexpr std::size_t mostComplaint = 1 << 12; // bytes read of what it said

/// A file descriptor that is closed at the end of a block.
class Descriptor {
public:
    explicit Descriptor(int opened) : number(opened) {
        if (number < 0)
            throw std::runtime_error(std::string("no pipe for a part of the examination: ") +
                                     std::strerror(errno));
    }
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return number; }
    void Close() {
        if (number >= 0)
            close(number);
        number = -1;
    }

private:
    int number;
};

/// Without a terminal: a library that takes one over, or prints, shall not meet the user's.
void LeaveTerminal(int complaint) {
    setsid();
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    dup2(complaint, STDERR_FILENO);
}

[[noreturn]] void Work(const std::function<void(const Notebook&)>& work, int pipe, int complaint) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // does not outlive the doctor
    LeaveTerminal(complaint);
    try {
        work(Notebook(pipe));
    } catch (const std::exception& error) {
        dprintf(STDERR_FILENO, "%s\n", error.what());
        _exit(EXIT_FAILURE);
    }
    _exit(EXIT_SUCCESS); // the doctor's own ending is none of the child's business
}

/// Everything that comes through the pipe until the other end is closed, or `end` has come.
std::string ReadAll(int pipe, Clock::time_point end) {
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{pipe, POLLIN, 0};
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) == 0)
            return text;
        const ssize_t count = read(pipe, piece.data(), piece.size());
        if (count == 0 || (count < 0 && errno != EINTR))
            return text;
        text.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

Facts ParseFacts(const std::string& text) {
    Facts facts;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos)
            facts[line.substr(0, blank)] = line.substr(blank + 1);
    }
    return facts;
}

/// The first line tells what went wrong, those behind it where.
std::string FirstLine(int file) {
    std::string text(mostComplaint, '\0');
    text.resize(
        static_cast<std::size_t>(std::max<ssize_t>(pread(file, text.data(), text.size(), 0), 0)));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            return line;
    return "";
}

/// Waits until the process has ended, and ends it when `end` has come.
void Await(pid_t process, Clock::time_point end, Apart& apart) {
    int status = 0;
    while (waitpid(process, &status, WNOHANG) == 0) {
        if (Clock::now() >= end) {
            apart.late = true;
            kill(process, SIGKILL);
            waitpid(process, &status, 0);
            return;
        }
        std::this_thread::sleep_for(lookInterval);
    }
    apart.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    apart.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
}

} // namespace

std::string Fact(const Facts& facts, const std::string& name) {
    const auto found = facts.find(name);
    return found == facts.end() ? "" : found->second;
}

int FactNumber(const Facts& facts, const std::string& name) {
    return std::atoi(Fact(facts, name).c_str());
}

void Notebook::Note(const std::string& name, const std::string& value) const {
    std::string line = name + ' ' + value;
    std::replace(line.begin(), line.end(), '\n', ' ');
    dprintf(pipe, "%s\n", line.c_str());
}

std::string Apart::HowItEnded() const {
    std::string how;
    if (late)
        how = "gave no answer";
    else if (signal != 0)
        how = std::string("was ended by a crash (") + strsignal(signal) + ")";
    else
        how = "ended with exit status " + std::to_string(exitStatus);
    return complaint.empty() ? how : how + ", saying \"" + complaint + '"';
}

Apart RunApart(const std::function<void(const Notebook&)>& work, double seconds) {
    const auto patience = std::chrono::duration<double>(seconds);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(patience);
    int ends[2] = {-1, -1};
    // Closed when the work becomes another program, which is the end of its facts.
    if (pipe2(ends, O_CLOEXEC) != 0)
        ends[0] = ends[1] = -1;
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const Descriptor complaint(memfd_create("complaint", MFD_CLOEXEC));
    const pid_t process = fork();
    if (process < 0)
        throw std::runtime_error(std::string("no process for a part of the examination: ") +
                                 std::strerror(errno));
    if (process == 0)
        Work(work, writing.Get(), complaint.Get());
    writing.Close();

    Apart apart;
    apart.facts = ParseFacts(ReadAll(reading.Get(), end));
    Await(process, end, apart);
    apart.complaint = FirstLine(complaint.Get());
    return apart;
}

} // namespace Doctor
