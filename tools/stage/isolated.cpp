#include "tools/stage/isolated.h"

#include "tools/stage/descriptor.h"
#include "tools/stage/streams.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <poll.h>

namespace Tools {

namespace {

constexpr const char* purpose = "cannot isolate a piece of work";

/// Whether there is something to read, or the end of it, within the time between two looks.
bool IsReadable(int pipe) {
    pollfd waiting{pipe, POLLIN, 0};
    return poll(&waiting, 1, static_cast<int>(pollSeconds * 1000.0)) > 0;
}

/// Appends what comes through the pipe; false at its end.
bool ReadPiece(int pipe, std::string& text) {
    std::array<char, 4096> piece{};
    const ssize_t count = read(pipe, piece.data(), piece.size());
    if (count == 0 || (count < 0 && errno != EINTR))
        return false;
    text.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return true;
}

/// Everything that comes through the pipe until the child has ended or `end` has come.
std::string ReadAll(int pipe, ChildProcess& child, double end) {
    std::string text;
    while (SteadySeconds() < end) {
        const bool wasRunning = child.Running();
        if (IsReadable(pipe)) {
            if (!ReadPiece(pipe, text))
                return text;
        } else if (!wasRunning) { // what it has started may still hold the other end
            return text;
        }
    }
    return text;
}

Facts ParseFacts(const std::string& text) {
    Facts facts;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos)
            facts[line.substr(0, blank)] = line.substr(blank + 1);
    }
    return facts;
}

} // namespace

std::string Fact(const Facts& facts, const std::string& name) {
    const auto found = facts.find(name);
    return found == facts.end() ? "" : found->second;
}

int FactNumber(const Facts& facts, const std::string& name) {
    return static_cast<int>(std::strtol(Fact(facts, name).c_str(), nullptr, 10));
}

void Report::Add(const std::string& name, const std::string& value) const {
    std::string line = name + ' ' + value;
    std::replace(line.begin(), line.end(), '\n', ' ');
    dprintf(pipe, "%s\n", line.c_str());
}

IsolatedRun RunIsolated(const std::function<void(const Report&)>& work, double patience) {
    const double end = SteadySeconds() + patience;
    Pipe facts(purpose);
    const Descriptor nowhere = OpenNowhere();
    const Descriptor errors = OpenKept();
    ChildProcess child(
        [&] {
            SetStandardStreams(nowhere.Get(), nowhere.Get(), errors.Get());
            work(Report(facts.writing.Get()));
            return EXIT_SUCCESS;
        },
        ProcessGroup::Session);
    facts.writing.Close();

    IsolatedRun run;
    run.facts = ParseFacts(ReadAll(facts.reading.Get(), child, end));
    run.ending = child.Finish(end - SteadySeconds());
    run.ending.errors = ReadKept(errors.Get());
    return run;
}

} // namespace Tools
