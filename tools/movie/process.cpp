#include "tools/movie/process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Movie {

namespace {

constexpr int pipeBytes = 1 << 20; // three frames: neither side waits for the other's every move

std::vector<char*> Pointers(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str())); // execvp() changes nothing
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(const std::vector<std::string>& arguments) : name(arguments[0]) {
    std::signal(SIGPIPE, SIG_IGN); // a program that gave up is noticed when writing
    std::array<int, 2> ends{};
    output = memfd_create("output", MFD_CLOEXEC);
    if (output < 0 || pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot start " + name + ": " + std::strerror(errno));
    input = ends[1];
    fcntl(input, F_SETPIPE_SZ, pipeBytes);
    const std::vector<char*> pointers = Pointers(arguments);
    process = fork();
    if (process == 0) {
        setpgid(0, 0); // out of the terminal's reach, or Ctrl-C would break the file off
        dup2(ends[0], STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        execvp(pointers[0], pointers.data());
        const std::string reason = name + ": " + std::strerror(errno) + "\n";
        [[maybe_unused]] const ssize_t written = write(output, reason.data(), reason.size());
        _exit(EXIT_FAILURE);
    }
    close(ends[0]);
}

Process::~Process() {
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    if (input >= 0)
        close(input);
    close(output);
}

void Process::Finish() {
    close(input);
    input = -1;
    int status = 0;
    waitpid(process, &status, 0);
    process = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error(name + " failed: " + Output());
}

std::string Process::Output() const {
    std::string text(4096, '\0');
    const ssize_t count = pread(output, text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

} // namespace Movie
