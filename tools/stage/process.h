#pragma once

#include "tools/stage/childprocess.h"
#include "tools/stage/descriptor.h"

#include <csignal>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tools {

/// Variables of an environment, by name.
using Environment = std::map<std::string, std::string>;

/// Where a program's standard input comes from.
enum class InputFrom {
    Nothing,   ///< it reads the end of a file
    Inherited, ///< that of this process
    Pipe       ///< what is written to the Process
};

/// Where a program's standard output, or its errors, go.
enum class OutputTo {
    Memory,    ///< kept, without a limit
    Nothing,   ///< dropped
    Inherited, ///< where that of this process goes
    Output     ///< of errors: where the output goes
};

/// A program to start.
struct Command {
    /// The first is the program: a path, as seen from `folder`, or a name that is looked for in the
    /// PATH which the program gets. There is at least one.
    std::vector<std::string> arguments;
    Environment added = {};                ///< to the environment, which is that of this process
    std::vector<std::string> removed = {}; ///< from it, those that were added among them
    std::filesystem::path folder = {};     ///< to work in; empty: that of this process
    InputFrom input = InputFrom::Nothing;
    OutputTo output = OutputTo::Memory;
    OutputTo errors = OutputTo::Memory;
    bool terminal = false;     ///< one of its own takes the place of all three; output in memory
    int deathSignal = SIGKILL; ///< that it gets when the thread that started it ends
};

/// Another program beside this one. The keys of this process's terminal do not reach it, and all
/// signals that end programs do so at its beginning, whatever this process ignores. Killed with the
/// object if it still runs, together with what it has started in its process group; it does not
/// outlive this process either.
///
/// Needs: to be used by one thread, which outlives the program.
class Process {
public:
    /// Starts it. Throws std::runtime_error, which says why, when it cannot be started. With
    /// InputFrom::Pipe, SIGPIPE is ignored in this process from then on: a program that reads no
    /// more is noticed when writing.
    explicit Process(Command command);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool Running();

    /// Sends the program a signal (SIGINT, ...), if it still runs; not what it has started.
    void Signal(int number);

    /// Writes all of it to the program's input, or types it on its terminal: "\x03" is Ctrl-C.
    /// Waits while the program does not read. Throws std::runtime_error when it reads no more.
    void Write(const std::string& text);

    /// The end of the program's input comes behind what was written; a terminal is taken away, as
    /// when its window is closed.
    void CloseInput();

    /// For those who write by themselves: the descriptor of the program's input or its terminal; -1
    /// when there is none.
    int InputDescriptor() const { return input.Get(); }

    /// What it has written so far; empty when it is not kept. A terminal ends lines by "\r\n", and
    /// shows what is typed.
    std::string Output();
    std::string Errors() const;

    /// Waits for its end, at most so many seconds from now; kills it then.
    Ending Wait(double patience = std::numeric_limits<double>::infinity());

    /// What it has to say for itself, for a message: the first 4096 bytes of output and errors,
    /// without line feeds at the end.
    std::string Message();

    /// Closes its input and waits for its end; throws std::runtime_error "NAME failed: MESSAGE"
    /// unless that is in order.
    void Finish();

private:
    /// The child's ends of its streams; those that it inherits are none.
    struct Streams {
        Descriptor input, output, errors;
    };

    Streams OpenStreams();
    Streams OpenTerminal();
    void Start();
    void ReadTerminal();
    void Pause(short until);

    const Command command;
    Descriptor input;  ///< the writing end of a pipe, or the terminal
    Descriptor output; ///< what is kept
    Descriptor errors;
    std::string terminalText;
    bool terminalEnded = false; ///< nothing more will come from it
    std::unique_ptr<ChildProcess> child;
};

/// Starts the program and waits for its end, at most so many seconds; kills it then.
Ending Run(const Command& command, double patience);

} // namespace Tools
