#pragma once

#include <functional>
#include <map>
#include <string>

namespace Doctor {

/// What a part of the examination found out, by name.
using Facts = std::map<std::string, std::string>;

/// The fact of that name, or an empty text when it was not found out.
std::string Fact(const Facts& facts, const std::string& name);

/// Likewise as a number; 0 when it is none.
int FactNumber(const Facts& facts, const std::string& name);

/// Hands facts over to the process that waits for them, each at once: what was found out before a
/// crash is not lost.
class Notebook {
public:
    explicit Notebook(int pipeEnd) : pipe(pipeEnd) {}

    /// `name` has no blank. A fact is one line: line breaks in `value` become blanks.
    void Note(const std::string& name, const std::string& value) const;
    void Note(const std::string& name, int value) const { Note(name, std::to_string(value)); }

private:
    int pipe;
};

/// What became of a piece of work that was done apart.
struct Apart {
    Facts facts;
    bool late = false;     ///< whether it took too long and was killed
    int signal = 0;        ///< what killed it otherwise; 0: nothing
    int exitStatus = 0;    ///< 0 unless it ended by itself, and not in order
    std::string complaint; ///< the first line that it wrote on standard error

    bool InOrder() const { return !late && signal == 0 && exitStatus == 0; }

    /// "ended with ...", "was ended by ...", "gave no answer": how it went when not in order.
    std::string HowItEnded() const;
};

/// Does `work` in a process of its own, for at most so many seconds: drivers, X and sound servers
/// may end a program that asks them, or never answer. The work has no terminal; it may become
/// another program.
/// Throws std::runtime_error when no process can be had.
Apart RunApart(const std::function<void(const Notebook&)>& work, double seconds);

} // namespace Doctor
