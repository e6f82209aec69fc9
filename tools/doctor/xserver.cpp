#include "tools/doctor/xserver.h"

#include <chrono>
#include <cstdlib>
#include <thread>

#include <X11/Xlib.h>

namespace Doctor {

namespace {

// A name that the server forgets when it starts over.
constexpr const char* mark = "NIMBREL_DOCTOR";

bool ServerIsNamed() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr && *name != '\0';
}

/// A server that is just starting over turns connections away. Null when it goes on doing so.
Display* ConnectPatiently() {
    constexpr int attempts = 20;
    constexpr auto pause = std::chrono::milliseconds(50);
    for (int i = 0; i < attempts; ++i) {
        if (Display* const display = XOpenDisplay(nullptr))
            return display;
        std::this_thread::sleep_for(pause);
    }
    return nullptr;
}

void ReportAbilities(Display* display, const Tools::Report& report) {
    int opcode = 0;
    int event = 0;
    int error = 0;
    report.Add("glx", XQueryExtension(display, "GLX", &opcode, &event, &error));
    report.Add("depth", DefaultDepth(display, DefaultScreen(display)));
}

bool HasMark(Display* display) {
    constexpr Bool onlyIfItIsThere = True;
    return XInternAtom(display, mark, onlyIfItIsThere) != None;
}

} // namespace

void CollectServerFacts(const Tools::Report& report) {
    Display* const display = ServerIsNamed() ? XOpenDisplay(nullptr) : nullptr;
    if (display == nullptr)
        return;
    ReportAbilities(display, report);
    XInternAtom(display, mark, False);
    XCloseDisplay(display);
    Display* const again = ConnectPatiently();
    report.Add("resets", again == nullptr || !HasMark(again) ? 1 : 0);
}

bool HoldServer() {
    return !ServerIsNamed() || ConnectPatiently() != nullptr;
}

} // namespace Doctor
