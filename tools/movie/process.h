#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace Movie {

/// A program that works beside this one; what it writes is kept.
class Process {
public:
    /// Starts `arguments[0]`, found in PATH, with its standard input at `Input()`. Ctrl-C does not
    /// reach it. Throws std::runtime_error when it cannot be started.
    explicit Process(const std::vector<std::string>& arguments);
    ~Process(); ///< kills it if it still runs
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    int Input() const { return input; }

    /// Closes its input and waits until it ends; throws std::runtime_error with its last words
    /// unless its exit status is 0.
    void Finish();

    /// What it wrote so far, to standard output and error.
    std::string Output() const;

private:
    std::string name;
    pid_t process = 0;
    int input = -1;
    int output = -1;
};

} // namespace Movie
