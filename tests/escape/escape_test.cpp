// nimbrel_escape: whom it presses Escape for, and until when.

#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/keysym.h>

using ::testing::HasSubstr;

namespace {

constexpr double patience = 60.0; // seconds

/// Windows on a display, each of which says that it belongs to some process.
class Windows {
public:
    explicit Windows(const std::string& name) : display(XOpenDisplay(name.c_str())) {}
    ~Windows() { XCloseDisplay(display); }
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    Window Make(Window parent, long owner) {
        const Window window = XCreateSimpleWindow(display, parent, 0, 0, 10, 10, 0, 0, 0);
        XSelectInput(display, window, KeyPressMask);
        if (owner != 0)
            XChangeProperty(display, window, XInternAtom(display, "_NET_WM_PID", False),
                            XA_CARDINAL, 32, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(&owner), 1);
        XSync(display, False);
        return window;
    }

    Window Root() { return DefaultRootWindow(display); }

    /// The windows in which Escape has been pressed since this was last asked.
    std::vector<Window> Pressed() {
        std::vector<Window> windows;
        while (XPending(display) > 0) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == KeyPress && XLookupKeysym(&event.xkey, 0) == XK_Escape)
                windows.push_back(event.xkey.window);
        }
        return windows;
    }

private:
    Display* const display;
};

class Escape : public ::testing::Test {
protected:
    /// The number of a process that does nothing.
    long Start() {
        sleeper = std::make_unique<Tools::Process>(
            Tools::Command{.arguments = {"/bin/sh", "-c", "echo $$; exec sleep 100"}});
        while (sleeper->Output().find('\n') == std::string::npos && sleeper->Running())
            Pause();
        return std::stol(sleeper->Output());
    }

    static void Pause() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

    static Tools::Command Ending(long process, const std::string& display) {
        return {.arguments = {NIMBREL_BINARY_DIR "/tools/escape/nimbrel_escape",
                              std::to_string(process)},
                .added = {{"DISPLAY", display}}};
    }

    std::unique_ptr<Tools::Process> sleeper;
};

} // namespace

TEST_F(Escape, Is_pressed_in_the_window_of_the_process_alone_until_that_has_ended) {
    const Tools::VirtualDisplay display;
    Windows windows(display.Name());
    const long process = Start();
    windows.Make(windows.Root(), process + 1); // somebody else's
    const Window frame = windows.Make(windows.Root(), 0);
    const Window mine = windows.Make(frame, process); // as a window manager puts it
    Tools::Process escape(Ending(process, display.Name()));
    std::size_t presses = 0;
    while (presses < 3 && escape.Running()) { // the demo may come to hear it late
        for (const Window window : windows.Pressed()) {
            EXPECT_EQ(window, mine);
            ++presses;
        }
        Pause();
    }
    EXPECT_GE(presses, 3U);
    EXPECT_TRUE(escape.Running()) << "the process still runs";
    sleeper->Signal(SIGTERM);
    sleeper->Wait(patience);
    EXPECT_EQ(escape.Wait(patience).exitStatus, 0);
}

TEST_F(Escape, Is_not_pressed_where_no_display_answers) {
    const Tools::Ending end = Tools::Run(Ending(Start(), ":4998"), patience);
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("the display does not answer"));
    EXPECT_TRUE(sleeper->Running());
}
