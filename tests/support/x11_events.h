#pragma once

#include <string>

struct _XDisplay; // Xlib's own headers take words like None and Bool away from everybody else

/// A window of another program, found by its caption: what a user would see and do to it.
class ForeignWindow {
public:
    /// Waits until a window with exactly this caption is shown on the display; throws
    /// std::runtime_error when there is none after `seconds`.
    ForeignWindow(const std::string& display, const std::string& caption, double seconds);
    ~ForeignWindow();
    ForeignWindow(const ForeignWindow&) = delete;
    ForeignWindow& operator=(const ForeignWindow&) = delete;

    int Width() const;
    int Height() const;

    /// Presses and releases a key as the keyboard would, with the window in focus. `key` is an X
    /// key symbol such as XK_Escape.
    void PressKey(unsigned long key);

    /// What a window manager sends when the window's close button is clicked.
    void AskToClose();

    /// Moves the pointer into the window and clicks its left button.
    void Click();

    /// Asks for another size, as a window manager does.
    void Resize(int width, int height);

    /// Moves the pointer about in the window for so long, so many times a second.
    void MovePointer(double seconds, int timesASecond);

private:
    _XDisplay* connection;
    unsigned long window;
};
