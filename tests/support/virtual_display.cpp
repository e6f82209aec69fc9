#include "tests/support/virtual_display.h"

#include <stdexcept>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Xvfb's command line. The last of two options that contradict each other counts.
std::vector<std::string> CommandLine(int pipeEnd, const std::vector<std::string>& changes) {
    // -noreset: SDL connects, disconnects and connects again to see whether there is a display; a
    // server that starts over when its last client leaves turns the second connection away.
    std::vector<std::string> words = {"Xvfb",       "-displayfd", std::to_string(pipeEnd),
                                      "-screen",    "0",          "1280x256x24",
                                      "+extension", "GLX",        "-nolisten",
                                      "tcp",        "-noreset"};
    words.insert(words.end(), changes.begin(), changes.end());
    return words;
}

/// In the child: becomes the server, which writes its number into the pipe once it listens.
[[noreturn]] void BecomeServer(int pipeEnd, const std::vector<std::string>& changes) {
    prctl(PR_SET_PDEATHSIG, SIGTERM); // does not outlive a test that crashes
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    std::vector<std::string> words = CommandLine(pipeEnd, changes);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

/// What the server wrote: its number and a line feed; empty when it ended without.
std::string ReadNumber(int pipeEnd) {
    std::string number;
    for (char letter = 0; read(pipeEnd, &letter, 1) == 1 && letter != '\n';)
        number += letter;
    return number;
}

} // namespace

VirtualDisplay::VirtualDisplay(const std::vector<std::string>& changes) {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("VirtualDisplay: no pipe");
    server = fork();
    if (server == 0) {
        close(ends[0]);
        BecomeServer(ends[1], changes);
    }
    close(ends[1]);
    const std::string number = ReadNumber(ends[0]);
    close(ends[0]);
    if (number.empty())
        throw std::runtime_error("VirtualDisplay: Xvfb did not start; is it installed?");
    name = ":" + number;
}

VirtualDisplay::~VirtualDisplay() {
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
}
