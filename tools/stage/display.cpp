#include "tools/stage/display.h"

#include "tools/stage/isolated.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include <X11/Xlib.h>

namespace Tools {

namespace {

constexpr double startPatience = 30.0; // seconds; it takes a tenth of one on an idle machine
constexpr double endPatience = 10.0;

/// How Xvfb is started. The last of two options that contradict each other counts.
Command XvfbCommand(const std::vector<std::string>& options) {
    // -displayfd 1: it takes a number that is free and writes it to its standard output once it
    // listens.
    // -noreset: SDL connects, disconnects and connects again to see whether there is a display; a
    // server that starts over when its last client leaves turns the second connection away.
    Command command{.arguments = {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x256x24",
                                  "+extension", "GLX", "-nolisten", "tcp", "-noreset"},
                    .deathSignal = SIGTERM}; // so that it takes its lock and its socket along
    command.arguments.insert(command.arguments.end(), options.begin(), options.end());
    return command;
}

/// The number that the server writes, and a line feed; empty when it ends without, or takes longer.
std::string AwaitNumber(Process& server) {
    const double end = SteadySeconds() + startPatience;
    for (;;) {
        const bool goesOn = server.Running() && SteadySeconds() < end;
        const std::string text = server.Output();
        if (const std::size_t line = text.find('\n'); line != std::string::npos)
            return text.substr(0, line);
        if (!goesOn)
            return "";
        std::this_thread::sleep_for(std::chrono::duration<double>(pollSeconds));
    }
}

} // namespace

VirtualDisplay::VirtualDisplay(const std::vector<std::string>& options)
    : server(XvfbCommand(options)) {
    const std::string number = AwaitNumber(server);
    if (number.empty())
        throw std::runtime_error("the virtual display (Xvfb) did not start: " + server.Message());
    name = ":" + number;
}

VirtualDisplay::~VirtualDisplay() {
    server.Signal(SIGTERM);
    server.Wait(endPatience);
}

bool DisplayAnswers(const std::string& name, double patience) {
    if (name.empty()) // to Xlib that means the one that DISPLAY names
        return false;
    const IsolatedRun run = RunIsolated(
        [&](const Report& report) {
            Display* const display = XOpenDisplay(name.c_str());
            report.Add("answers", display != nullptr ? 1 : 0);
            if (display != nullptr)
                XCloseDisplay(display);
        },
        patience);
    return FactNumber(run.facts, "answers") != 0;
}

} // namespace Tools
