#pragma once

#include <string>
#include <vector>

#include <SDL.h>

namespace Gallery {

/// What every program of the gallery begins with: a window with OpenGL in it, the engine started on
/// it at its true ratio, and the time of the show. What is made after it goes before it, as
/// whatever needs OpenGL must; each frame is drawn after a NextFrame() that was true.
///
/// Escape, and closing the window, end the loop. One a program.
///
/// Where the environment names a file in GALLERY_PICTURE there is no show: the loop runs for two
/// frames, for water mirrors from its second on, both at the moment of GALLERY_MOMENT, in seconds.
/// The second goes into the file, a PPM, and standard output tells what drew it.
class Window {
public:
    /// Of the window, in pixels.
    static constexpr int width = 640;
    static constexpr int height = 360;

    /// Ends the program with status 1, and a line on standard error, where there is no OpenGL.
    explicit Window(const std::string& caption);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Shows what was drawn since the last call and begins the next frame. False when it was the
    /// last one.
    bool NextFrame();

    /// Seconds from the first frame to this one.
    float Time() const { return time; }
    /// Seconds from the frame before to this one; 0 in the first.
    float FrameTime() const { return frameTime; }

    /// What happened since the frame before. Of several mouse motions only the last, since a
    /// free-fly camera takes each for all the way from where it last put the pointer.
    std::vector<SDL_Event>& Events() { return events; }
    /// Whether this key was pressed since the frame before.
    bool Pressed(SDLKey key) const;

    void SetCaption(const std::string& caption);

private:
    void TakeEvents();
    void Take(const SDL_Event& event);

    std::vector<SDL_Event> events;
    double begin = 0.0; ///< of the first frame, in seconds
    float time = 0.0f;
    float frameTime = 0.0f;
    int frame = 0; ///< how many there were
    bool ended = false;
};

} // namespace Gallery
