#pragma once

#include "tests/support/program_run.h"

#include <string>
#include <vector>

#include <sys/types.h>

/// A program on a terminal of its own, where it may be interrupted as a user does it. Killed by the
/// destructor when still running.
class TerminalRun {
public:
    /// Starts it in the current working directory, as the terminal's foreground; `added` goes to
    /// its environment.
    TerminalRun(const std::vector<std::string>& command, const Environment& added);
    ~TerminalRun();
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    /// As if typed; "\x03" is Ctrl-C.
    void Type(const std::string& text);

    /// Takes the terminal away, as a closed window or a broken line does.
    void HangUp();

    /// Sends a signal to the program alone, not to what it has started.
    void Signal(int number);

    bool Running();

    /// Waits for the end, at most so many seconds from now; kills the program then. Everything that
    /// came to the terminal is in `output`, with "\r\n" at line ends; `seconds` counts from now.
    Outcome Wait(double seconds);

private:
    void Look();

    pid_t process = -1;
    int terminal = -1; ///< -1 once hung up
    int status = 0;    ///< as waitpid() gave it, once ended
    bool ended = false;
    std::string output;
};
