// Ends the demo as its viewer would: by Escape, pressed in its window and nowhere else. The demo
// takes no other word for its end: SDL turns SIGINT and SIGTERM into a request to close the window,
// which the demo ignores.

#include "tools/options/commandline.h"

#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <csignal>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto patience = std::chrono::seconds(10);
constexpr auto pressInterval = std::chrono::milliseconds(50);

struct XFreeing {
    void operator()(void* memory) const { XFree(memory); }
};
template <class Type>
using XMemory = std::unique_ptr<Type, XFreeing>;

/// A window may be gone by the time it is asked something.
int IgnoreError(Display*, XErrorEvent*) {
    return 0;
}

bool Runs(pid_t process) {
    return kill(process, 0) == 0;
}

/// The process that a window says it belongs to; 0 when it says nothing.
pid_t OwnerOf(Display* display, Window window) {
    Atom type = None;
    int bits = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    const Atom property = XInternAtom(display, "_NET_WM_PID", False);
    const int status = XGetWindowProperty(display, window, property, 0, 1, False, XA_CARDINAL,
                                          &type, &bits, &count, &left, &bytes);
    const XMemory<unsigned char> owned(bytes);
    if (status != Success || bits != 32 || count != 1)
        return 0;
    return static_cast<pid_t>(
        *reinterpret_cast<unsigned long*>(bytes)); // Xlib keeps 32 bits in a long
}

/// The process's window among `parent` and all that it holds; None without one.
Window FindWindow(Display* display, Window parent, pid_t process) {
    if (OwnerOf(display, parent) == process)
        return parent;
    Window root = None;
    Window above = None;
    Window* list = nullptr;
    unsigned int count = 0;
    if (XQueryTree(display, parent, &root, &above, &list, &count) == 0)
        return None;
    const XMemory<Window> children(list);
    Window found = None;
    for (unsigned int i = 0; i < count && found == None; ++i)
        found = FindWindow(display, list[i], process);
    return found;
}

void SendKey(Display* display, Window window, int type, long mask) {
    XEvent event{};
    event.xkey.type = type;
    event.xkey.window = window;
    event.xkey.root = DefaultRootWindow(display);
    event.xkey.same_screen = True;
    event.xkey.keycode = XKeysymToKeycode(display, XK_Escape);
    XSendEvent(display, window, True, mask, &event);
}

void PressEscape(Display* display, Window window) {
    SendKey(display, window, KeyPress, KeyPressMask);
    SendKey(display, window, KeyRelease, KeyReleaseMask);
    XSync(display, False);
}

/// Presses until the process has ended: a key that came too early harms nothing.
bool End(Display* display, pid_t process) {
    const auto end = Clock::now() + patience;
    while (Runs(process) && Clock::now() < end) {
        if (const Window window = FindWindow(display, DefaultRootWindow(display), process))
            PressEscape(display, window);
        std::this_thread::sleep_for(pressInterval);
    }
    return !Runs(process);
}

int EndOne(const Tools::Arguments& arguments) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        throw std::runtime_error("the display does not answer");
    XSetErrorHandler(IgnoreError);
    const bool ended = End(display, static_cast<pid_t>(Tools::ParseNumber(arguments.operands[0])));
    XCloseDisplay(display);
    return ended ? EXIT_SUCCESS : EXIT_FAILURE;
}

const Tools::Program program = {
    .name = "nimbrel_escape",
    .purpose =
        "Ends the demo of this number, as its viewer would: by Escape, in the window on DISPLAY "
        "that says\nit belongs to the process. While the demo loads the key waits in its queue "
        "of events; before it\nhas a window, it is waited for.",
    .modes = {{.operands = {{"PROCESS",
                             Tools::WholeNumberKind(1, std::numeric_limits<pid_t>::max())}},
               .example = "1234",
               .run = EndOne}},
    .remark =
        "Exit status: 0 the process has ended, 1 it still runs after ten seconds or the display\n"
        "cannot be reached, 2 wrong usage."};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
