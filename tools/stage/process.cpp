#include "tools/stage/process.h"

#include "tools/stage/streams.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Tools {

namespace {

constexpr int pipeBytes = 1 << 20; // a reader that pauses does not stop the writer at once
constexpr int mostPieces = 16;     // read from a terminal before the clock is looked at
constexpr std::size_t messageBytes = 1 << 12;

/// Pointers to texts, ended by a null pointer: the form in which programs get them.
std::vector<char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str())); // exec changes nothing
    pointers.push_back(nullptr);
    return pointers;
}

/// The program's environment, as "NAME=value" texts.
std::vector<std::string> VariablesOf(const Command& command) {
    Environment all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (const std::size_t equals = text.find('='); equals != std::string::npos)
            all[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto& [name, value] : command.added)
        all[name] = value;
    for (const std::string& name : command.removed)
        all.erase(name);
    std::vector<std::string> texts;
    texts.reserve(all.size());
    for (const auto& [name, value] : all)
        texts.push_back(std::string(name).append("=").append(value));
    return texts;
}

/// Signals mean to a program what they mean usually: what is ignored or held back here would stay
/// so there.
void ResetSignals() {
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGTSTP, SIGTTIN, SIGTTOU})
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

/// In the child: becomes the program; returns why not, as errno tells.
int Become(const Command& command, char** arguments, char** variables) {
    if (!command.folder.empty() && chdir(command.folder.c_str()) != 0)
        return errno;
    ResetSignals();
    environ = variables; // in whose PATH the program is looked for
    execvp(arguments[0], arguments);
    return errno;
}

/// What the other end sends before it closes; 0 when that is nothing.
int ReadNumber(int pipe) {
    int number = 0;
    while (read(pipe, &number, sizeof number) < 0 && errno == EINTR)
        continue;
    return number;
}

/// Where a stream of the child goes; `kept` becomes the file in memory when there is to be one.
Descriptor OpenOutput(OutputTo where, Descriptor& kept) {
    switch (where) {
    case OutputTo::Memory:
        kept = OpenKept();
        return kept.Copy("cannot keep what a program writes");
    case OutputTo::Nothing:
        return OpenNowhere();
    case OutputTo::Inherited:
    case OutputTo::Output:
        break;
    }
    return {};
}

} // namespace

Process::Process(Command what) : command(std::move(what)) {
    if (command.arguments.empty())
        throw std::runtime_error("cannot start a program without a name");
    Start();
}

Process::~Process() = default;

Process::Streams Process::OpenStreams() {
    Streams streams;
    streams.output = OpenOutput(command.output, output);
    streams.errors = OpenOutput(command.errors, errors);
    if (command.input == InputFrom::Nothing)
        streams.input = OpenNowhere();
    if (command.input == InputFrom::Pipe) {
        std::signal(SIGPIPE, SIG_IGN);
        Pipe pipe("cannot write to a program");
        fcntl(pipe.writing.Get(), F_SETPIPE_SZ, pipeBytes);
        input = std::move(pipe.writing);
        streams.input = std::move(pipe.reading);
    }
    return streams;
}

Process::Streams Process::OpenTerminal() {
    int ours = -1;
    int its = -1;
    const bool made = openpty(&ours, &its, nullptr, nullptr, nullptr) == 0;
    Streams streams;
    streams.input = Descriptor(made ? its : -1, "cannot open a terminal");
    input = Descriptor(ours, "cannot open a terminal");
    for (const int end : {input.Get(), streams.input.Get()})
        fcntl(end, F_SETFD, FD_CLOEXEC); // or others would keep the line open
    fcntl(input.Get(), F_SETFL, O_NONBLOCK);
    streams.output = streams.input.Copy("cannot open a terminal");
    streams.errors = streams.input.Copy("cannot open a terminal");
    return streams;
}

void Process::Start() {
    std::vector<std::string> texts = VariablesOf(command);
    std::vector<char*> variables = Pointers(texts);
    std::vector<char*> arguments = Pointers(command.arguments);
    const Streams streams = command.terminal ? OpenTerminal() : OpenStreams();
    Pipe refusal("cannot start " + command.arguments[0]); // closed when the program begins
    child = std::make_unique<ChildProcess>(
        [&] {
            if (command.terminal)
                ioctl(streams.input.Get(), TIOCSCTTY, 0);
            SetStandardStreams(streams.input.Get(), streams.output.Get(), streams.errors.Get());
            if (command.errors == OutputTo::Output)
                dup2(STDOUT_FILENO, STDERR_FILENO);
            const int reason = Become(command, arguments.data(), variables.data());
            [[maybe_unused]] const ssize_t written =
                write(refusal.writing.Get(), &reason, sizeof reason);
            return EXIT_FAILURE;
        },
        command.terminal ? ProcessGroup::Session : ProcessGroup::Own, command.deathSignal);
    refusal.writing.Close();
    if (const int reason = ReadNumber(refusal.reading.Get()); reason != 0)
        throw std::runtime_error("cannot start " + command.arguments[0] + ": " +
                                 std::generic_category().message(reason));
}

bool Process::Running() {
    ReadTerminal();
    return child->Running();
}

void Process::Signal(int number) {
    child->Signal(number);
}

void Process::ReadTerminal() {
    std::array<char, 4096> piece{};
    for (int i = 0; i < mostPieces && command.terminal && !terminalEnded && input.IsOpen(); ++i) {
        const ssize_t count = read(input.Get(), piece.data(), piece.size());
        if (count <= 0) {
            terminalEnded = count == 0 || (errno != EAGAIN && errno != EINTR);
            return;
        }
        terminalText.append(piece.data(), static_cast<std::size_t>(count));
    }
}

/// Until the terminal is ready to be read or written (POLLIN, POLLOUT), or it is time to look.
void Process::Pause(short until) {
    if (command.terminal && !terminalEnded && input.IsOpen()) {
        pollfd waiting{input.Get(), until, 0};
        poll(&waiting, 1, static_cast<int>(pollSeconds * 1000.0));
    } else {
        std::this_thread::sleep_for(std::chrono::duration<double>(pollSeconds));
    }
}

void Process::Write(const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = write(input.Get(), text.data() + done, text.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            ReadTerminal(); // what it shows may be what it waits for
            Pause(POLLOUT);
        } else if (errno != EINTR) {
            throw std::runtime_error(command.arguments[0] +
                                     " reads no more: " + std::generic_category().message(errno));
        }
    }
}

void Process::CloseInput() {
    ReadTerminal();
    input.Close();
}

std::string Process::Output() {
    ReadTerminal();
    if (command.terminal)
        return terminalText;
    return output.IsOpen() ? ReadKept(output.Get()) : "";
}

std::string Process::Errors() const {
    return errors.IsOpen() ? ReadKept(errors.Get()) : "";
}

Ending Process::Wait(double patience) {
    const double end = SteadySeconds() + patience;
    while (Running() && SteadySeconds() < end)
        Pause(POLLIN);
    Ending ending = child->Finish(0.0);
    ending.output = Output();
    ending.errors = Errors();
    return ending;
}

std::string Process::Message() {
    std::string text = (Output() + Errors()).substr(0, messageBytes);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

void Process::Finish() {
    CloseInput();
    if (!Wait().InOrder())
        throw std::runtime_error(command.arguments[0] + " failed: " + Message());
}

Ending Run(const Command& command, double patience) {
    return Process(command).Wait(patience);
}

} // namespace Tools
