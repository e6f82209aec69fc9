#pragma once

#include <csignal>
#include <functional>
#include <string>

#include <sys/types.h>

namespace Tools {

/// How a child process ended, and what it left.
struct Ending {
    bool timedOut = false; ///< it still ran when its time was up, and was killed
    int signal = 0;        ///< what ended it otherwise; 0: it exited by itself
    int exitStatus = 0;    ///< -1 unless it exited by itself
    double seconds = 0.0;  ///< from its start until its end was noticed, 5 ms later at most
    std::string output;    ///< what it wrote to its standard output, as far as that was kept
    std::string errors;    ///< likewise to its standard error

    /// Whether it exited by itself, with status 0.
    bool InOrder() const { return !timedOut && signal == 0 && exitStatus == 0; }

    /// The first line of `errors` that is not empty, among its first 4096 bytes: it tells what went
    /// wrong, those behind it where.
    std::string FirstError() const;

    /// "ended with exit status 3", "was ended by a crash (Segmentation fault)" or "gave no answer",
    /// and behind that, when there is one, the first error: `, saying "..."`.
    std::string InWords() const;
};

/// What a child process shares with the one that started it.
enum class ProcessGroup {
    Same,   ///< a terminal's Ctrl-C reaches both
    Own,    ///< the terminal's keys do not reach it; it is killed with all that it has started
    Session ///< likewise, and it has no terminal at all
};

/// A child process of this one, forked off to run a function. Killed and waited for with the
/// object; it does not outlive this process either, however that ends.
class ChildProcess {
public:
    /// Runs `work` in the child, whose exit status is what that returns; 1 when it throws, after
    /// the exception's text is written to standard error. Nothing is destroyed and no exit function
    /// runs then: `work` may call std::exit() itself where that is wanted.
    ///
    /// `deathSignal` is what the child gets when the thread that calls this ends before it.
    ///
    /// Throws std::runtime_error when no process is to be had.
    explicit ChildProcess(const std::function<int()>& work, ProcessGroup group = ProcessGroup::Own,
                          int deathSignal = SIGKILL);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t Id() const { return process; }

    bool Running();

    /// Waits for its end, at most so many seconds from now; false when it still runs then.
    bool Wait(double patience);

    /// Sends it a signal (SIGTERM, ...), if it still runs; not to what it has started.
    void Signal(int number);

    /// Kills it if it still runs, and what it has started if its group is its own; waits for that.
    void Kill();

    /// Waits for its end, at most so many seconds from now, and kills it then. How it ended is
    /// without what it wrote.
    Ending Finish(double patience);

private:
    void Note(int waitStatus);

    const ProcessGroup group;
    const double start; ///< seconds, of the steady clock
    pid_t process = -1;
    bool ended = false;
    Ending ending;
};

/// Seconds of the steady clock, for those who wait.
double SteadySeconds();

/// How long those who wait sleep before they look again, in seconds.
constexpr double pollSeconds = 0.005;

} // namespace Tools
