#include "tests/support/virtual_display.h"

#include <stdexcept>

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// In the child: becomes the server, which writes its number into the pipe once it listens.
[[noreturn]] void BecomeServer(int pipeEnd) {
    prctl(PR_SET_PDEATHSIG, SIGTERM); // does not outlive a test that crashes
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    const std::string number = std::to_string(pipeEnd);
    // -noreset: SDL connects, disconnects and connects again to see whether there is a display; a
    // server that starts over when its last client leaves turns the second connection away.
    execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "1280x256x24",
           "+extension", "GLX", "-nolisten", "tcp", "-noreset", static_cast<char*>(nullptr));
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

VirtualDisplay::VirtualDisplay() {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("VirtualDisplay: no pipe");
    server = fork();
    if (server == 0) {
        close(ends[0]);
        BecomeServer(ends[1]);
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
