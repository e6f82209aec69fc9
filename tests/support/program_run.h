#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

/// How a program ended and what it said.
struct Outcome {
    bool ended = false;   ///< false: it was still running when the patience ran out, and was killed
    int exitStatus = -1;  ///< -1 when a signal ended it
    int signal = 0;       ///< 0 when it exited
    double seconds = 0.0; ///< from its start to its end
    std::string output;   ///< standard output
    std::string complaint; ///< standard error
};

/// Variables to add to the environment; those of this process are inherited.
using Environment = std::map<std::string, std::string>;

/// Another program, started in the current working directory with its output caught in the files
/// "stdout.txt" and "stderr.txt" there. Killed by the destructor when still running.
class ProgramRun {
public:
    /// `removed` are variables that the program does not get, wherever they are from.
    ProgramRun(const std::vector<std::string>& command, const Environment& added,
               const std::vector<std::string>& removed = {});
    ~ProgramRun();
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    bool Running();

    /// Sends it a signal (SIGINT, ...), if it still runs.
    void Signal(int number);

    /// Waits for the end, at most so many seconds after the start; kills the program then.
    Outcome Wait(double seconds);

private:
    /// Takes note if the program has ended.
    void Look();

    pid_t process = -1;
    double start = 0.0;
    int status = 0; ///< as waitpid() gave it, once ended
    bool ended = false;
    double seconds = 0.0;
};

/// The "name value" lines of a file, by name; empty when there is no such file.
std::map<std::string, std::string> ReadReport(const std::string& path);
