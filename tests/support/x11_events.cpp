#include "tests/support/x11_events.h"

#include <chrono>
#include <stdexcept>
#include <thread>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto pollInterval = std::chrono::milliseconds(20);

/// A window may be gone by the time it is asked for its name: that is no reason to end the test.
int IgnoreError(Display*, XErrorEvent*) {
    return 0;
}

bool HasCaption(Display* connection, Window window, const std::string& caption) {
    char* name = nullptr;
    const bool same = XFetchName(connection, window, &name) != 0 && name && name == caption;
    if (name)
        XFree(name);
    return same;
}

/// All zero for a window that is gone.
XWindowAttributes AttributesOf(Display* connection, Window window) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(connection, window, &attributes);
    return attributes;
}

bool IsShown(Display* connection, Window window) {
    return AttributesOf(connection, window).map_state == IsViewable;
}

/// The first shown window with this caption among `parent` and what it holds; None without one.
Window Find(Display* connection, Window parent, const std::string& caption) {
    if (HasCaption(connection, parent, caption) && IsShown(connection, parent))
        return parent;
    Window root = None;
    Window above = None;
    Window* children = nullptr;
    unsigned int count = 0;
    Window found = None;
    if (XQueryTree(connection, parent, &root, &above, &children, &count) == 0)
        return None;
    for (unsigned int i = 0; i < count && found == None; ++i)
        found = Find(connection, children[i], caption);
    if (children)
        XFree(children);
    return found;
}

} // namespace

ForeignWindow::ForeignWindow(const std::string& display, const std::string& caption, double seconds)
    : connection(XOpenDisplay(display.c_str())), window(None) {
    if (!connection)
        throw std::runtime_error("no connection to display " + display);
    XSetErrorHandler(IgnoreError);
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (window == None && Clock::now() < end) {
        window = Find(connection, DefaultRootWindow(connection), caption);
        std::this_thread::sleep_for(pollInterval);
    }
    if (window == None) {
        XCloseDisplay(connection);
        throw std::runtime_error("no window \"" + caption + "\" on display " + display);
    }
}

ForeignWindow::~ForeignWindow() {
    XCloseDisplay(connection);
}

int ForeignWindow::Width() const {
    return AttributesOf(connection, window).width;
}

int ForeignWindow::Height() const {
    return AttributesOf(connection, window).height;
}

void ForeignWindow::PressKey(unsigned long key) {
    XSetInputFocus(connection, window, RevertToParent, CurrentTime);
    XSync(connection, False);
    const KeyCode code = XKeysymToKeycode(connection, key);
    XTestFakeKeyEvent(connection, code, True, CurrentTime);
    XTestFakeKeyEvent(connection, code, False, CurrentTime);
    XSync(connection, False);
}

void ForeignWindow::AskToClose() {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(connection, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(connection, "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(connection, window, False, NoEventMask, &event);
    XSync(connection, False);
}

void ForeignWindow::Click() {
    XWarpPointer(connection, None, window, 0, 0, 0, 0, Width() / 2, Height() / 2);
    XTestFakeButtonEvent(connection, Button1, True, CurrentTime);
    XTestFakeButtonEvent(connection, Button1, False, CurrentTime);
    XSync(connection, False);
}

void ForeignWindow::Resize(int width, int height) {
    XResizeWindow(connection, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(connection, False);
}

void ForeignWindow::MovePointer(double seconds, int timesASecond) {
    constexpr int batches = 100; // a second: sent together, as a busy mouse's are
    const auto begin = Clock::now();
    const int count = static_cast<int>(seconds * batches);
    for (int batch = 0; batch < count; ++batch) {
        for (int i = 0; i < timesASecond / batches; ++i)
            XWarpPointer(connection, None, window, 0, 0, 0, 0, i % 2 + 1, 1);
        XSync(connection, False);
        std::this_thread::sleep_until(begin + (batch + 1) * std::chrono::seconds(1) / batches);
    }
}
