#pragma once

#include "tools/stage/childprocess.h"

#include <functional>
#include <map>
#include <string>

namespace Tools {

/// What was found out, by name.
using Facts = std::map<std::string, std::string>;

/// The fact of that name, or an empty text when it was not found out.
std::string Fact(const Facts& facts, const std::string& name);

/// Likewise as a number; 0 when it is none.
int FactNumber(const Facts& facts, const std::string& name);

/// Sends facts from a child process to the one that waits for them, each at once: what was found
/// out before a crash is not lost.
class Report {
public:
    explicit Report(int pipeEnd) : pipe(pipeEnd) {}

    /// `name` has no blank. A fact is one line: line breaks in `value` become blanks. Of two facts
    /// of one name the later stands.
    void Add(const std::string& name, const std::string& value) const;
    void Add(const std::string& name, int value) const { Add(name, std::to_string(value)); }

private:
    int pipe;
};

/// What became of work that was done in isolation.
struct IsolatedRun {
    Facts facts;
    Ending ending; ///< with its standard error; its standard output is dropped
};

/// Calls `work` in a child process, for at most so many seconds: drivers, X and sound servers may
/// end a program that asks them, or never answer. There it has no terminal, reads the end of a file
/// from its standard input, and is killed with all it has started when its time is up. Of an
/// exception the text comes back as an error.
/// Throws std::runtime_error when no process is to be had.
IsolatedRun RunIsolated(const std::function<void(const Report&)>& work, double patience);

} // namespace Tools
