// Preloaded under nimbrel (LD_PRELOAD), it stands between the program and four functions:
//
//   SDL_PollEvent       the first call of the run is demo time 0, each call begins a frame
//   SDL_GL_SwapBuffers  each call ends a frame: errors are counted, pictures taken
//   SDL_Quit            the end
//   gettimeofday        real time, or a time that only moves from frame to frame
//
// What it does is chosen by environment variables:
//
//   NIMBREL_PROBE_REPORT    file that gets one "name value" line per fact, after the first frame
//                           and again when the program ends
//   NIMBREL_PROBE_FRAMES    file that gets one line per frame but the first: demo time and how long
//                           the frame took, in milliseconds, its drawing included
//   NIMBREL_PROBE_STEP      seconds of demo time per frame; unset: real time
//   NIMBREL_PROBE_TIMES     instead of a step: the demo times of the frames, "0,0.5,13.9", rising;
//                           after the last one the demo's time is up
//   NIMBREL_PROBE_SHOTS     demo times to take a picture at, "0.5,2,13.9", rising
//   NIMBREL_PROBE_SHOT_DIR  existing folder for the pictures, "frame_0013.900.ppm"
//
// Stepped time does not move the music: the spectrum that drives the effects stays in real time.

#include <GL/gl.h>
#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <sys/time.h>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1000000;

/// Longer than the demo: what the clock jumps to when the list of times is used up.
constexpr double timeIsUp = 1000.0;

std::string Setting(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// "0.5,2,13.9" -> numbers; says so and ends the program when the text is none.
std::vector<double> Numbers(const char* name) {
    std::vector<double> numbers;
    std::istringstream list(Setting(name));
    for (std::string item; std::getline(list, item, ',');) {
        char* end = nullptr;
        numbers.push_back(std::strtod(item.c_str(), &end));
        if (item.empty() || *end != '\0') {
            std::cerr << name << ": expected a number, found \"" << item << "\"\n";
            std::exit(EXIT_FAILURE);
        }
    }
    return numbers;
}

double Seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The function of this name that the program would have called without the probe.
template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// --- Time -------------------------------------------------------------------------------------

/// Demo time, real or stepped. Stepped time stands still at 0 while the demo loads.
class Time {
public:
    Time() : times(Numbers("NIMBREL_PROBE_TIMES")) {
        const std::vector<double> steps = Numbers("NIMBREL_PROBE_STEP");
        step = steps.empty() ? 0.0 : steps.front();
    }

    bool Stepped() const { return step > 0.0 || !times.empty(); }

    /// Called when a frame begins, which is `frame` = 0 for the first one.
    void BeginFrame(int frame) {
        if (frame == 0)
            begin = Seconds(CLOCK_MONOTONIC);
    }

    /// Called when a frame has ended: moves stepped time to that of the next one.
    void EndFrame(int nextFrame) {
        const std::size_t next = static_cast<std::size_t>(nextFrame);
        if (times.empty())
            stepped = step * nextFrame;
        else
            stepped = next < times.size() ? times[next] : times.back() + timeIsUp;
    }

    double Now() const { return Stepped() ? stepped : Seconds(CLOCK_MONOTONIC) - begin; }

    /// What gettimeofday() tells the program, in microseconds.
    std::int64_t ClockMicroseconds() const {
        const double seconds = Stepped() ? stepped : Seconds(CLOCK_REALTIME);
        return std::llround(seconds * static_cast<double>(microsecondsPerSecond));
    }

private:
    std::vector<double> times;
    double step = 0.0;
    double begin = 0.0;
    double stepped = 0.0;
};

// --- Pictures ---------------------------------------------------------------------------------

/// Takes the back buffer at the first frame at or after each time asked for.
class Shots {
public:
    Shots() : times(Numbers("NIMBREL_PROBE_SHOTS")), folder(Setting("NIMBREL_PROBE_SHOT_DIR")) {}

    void Take(double now) {
        for (; next < times.size() && times[next] <= now; ++next)
            Write(times[next]);
    }

private:
    void Write(double time) const {
        const SDL_Surface* screen = SDL_GetVideoSurface();
        const std::size_t row = static_cast<std::size_t>(screen->w) * 3;
        std::vector<unsigned char> bytes(row * static_cast<std::size_t>(screen->h));
        GLint alignment = 0;
        glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, screen->w, screen->h, GL_RGB, GL_UNSIGNED_BYTE, bytes.data());
        glPixelStorei(GL_PACK_ALIGNMENT, alignment);

        char name[32];
        std::snprintf(name, sizeof name, "/frame_%08.3f.ppm", time);
        std::ofstream file(folder + name, std::ios::binary);
        file << "P6\n" << screen->w << ' ' << screen->h << "\n255\n";
        for (int y = screen->h - 1; y >= 0; --y) // OpenGL counts rows from below
            file.write(reinterpret_cast<const char*>(&bytes[static_cast<std::size_t>(y) * row]),
                       static_cast<std::streamsize>(row));
        if (!file.good())
            std::cerr << "cannot write " << folder << name << '\n';
    }

    std::vector<double> times;
    std::string folder;
    std::size_t next = 0;
};

// --- Durations --------------------------------------------------------------------------------

/// How long each frame took, up to the moment when all of it was drawn.
class Durations {
public:
    Durations() : path(Setting("NIMBREL_PROBE_FRAMES")) {}

    ~Durations() {
        if (path.empty())
            return;
        std::ofstream file(path);
        for (const Duration& frame : frames)
            file << frame.demoTime << ' ' << frame.milliseconds << '\n';
    }

    void EndFrame(double demoTime) {
        if (path.empty())
            return;
        glFinish(); // or the next frame would pay for what this one ordered
        const double now = Seconds(CLOCK_MONOTONIC);
        if (last > 0.0)
            frames.push_back({demoTime, (now - last) * 1000.0});
        last = now;
    }

private:
    struct Duration {
        double demoTime;
        double milliseconds;
    };

    std::string path;
    std::vector<Duration> frames;
    double last = 0.0;
};

// --- Report -----------------------------------------------------------------------------------

/// Everything counted, written when the program ends in order.
class Report {
public:
    Report() : path(Setting("NIMBREL_PROBE_REPORT")) {}
    ~Report() { Write(); }

    int Frames() const { return frames; }

    void BeginFrame() { ++polls; }

    void CountErrors() {
        for (GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError()) {
            if (errors++ == 0) {
                firstError = error;
                firstErrorFrame = frames + 1;
            }
        }
    }

    void EndFrame(double demoTime) {
        const double now = Seconds(CLOCK_MONOTONIC);
        if (frames++ > 0)
            milliseconds.push_back((now - lastSwap) * 1000.0);
        lastSwap = now;
        lastFrameTime = demoTime;
        LookAtWindow();
        if (frames == 1)
            Write(); // whoever waits for the demo to play sees that it does
    }

    void Quit(double demoTime) { quitTime = demoTime; }

private:
    // The window is gone when the report is written.
    void LookAtWindow() {
        const SDL_Surface* screen = SDL_GetVideoSurface();
        char* title = nullptr;
        SDL_WM_GetCaption(&title, nullptr);
        caption = title ? title : "";
        width = screen->w;
        height = screen->h;
        fullScreen = (screen->flags & SDL_FULLSCREEN) != 0;
        cursorShown = SDL_ShowCursor(SDL_QUERY) == SDL_ENABLE;
    }

    /// The duration that `part` (0..1) of the frames stay within; 0 before the second frame.
    double Milliseconds(double part) {
        if (milliseconds.empty())
            return 0.0;
        std::sort(milliseconds.begin(), milliseconds.end());
        return milliseconds[static_cast<std::size_t>(part *
                                                     static_cast<double>(milliseconds.size() - 1))];
    }

    void Write() {
        if (path.empty())
            return;
        std::ofstream file(path);
        file << "frames " << frames << "\npolls " << polls << "\nerrors " << errors
             << "\nfirst_error 0x" << std::hex << firstError << std::dec << "\nfirst_error_frame "
             << firstErrorFrame << "\nlast_frame_time " << lastFrameTime << "\nquit_time "
             << quitTime << "\nmedian_ms " << Milliseconds(0.5) << "\nslow_ms "
             << Milliseconds(0.95) << "\nlongest_ms " << Milliseconds(1.0) << "\nwidth " << width
             << "\nheight " << height << "\nfull_screen " << fullScreen << "\ncursor_shown "
             << cursorShown << "\ncaption " << caption << '\n';
    }

    std::string path;
    int frames = 0;
    int polls = 0;
    int errors = 0;
    GLenum firstError = GL_NO_ERROR;
    int firstErrorFrame = 0; // from 1; 0 when there was none
    double lastFrameTime = 0.0;
    double quitTime = 0.0;
    double lastSwap = 0.0;
    std::vector<double> milliseconds;
    int width = 0;
    int height = 0;
    bool fullScreen = false;
    bool cursorShown = true;
    std::string caption;
};

// Made when first asked for: gettimeofday() may be called before this library's constructors ran.
struct Probe {
    Time time;
    Shots shots;
    Durations durations;
    Report report;
};

Probe& TheProbe() {
    static Probe probe;
    return probe;
}

double frameTime = 0.0; // demo time at the beginning of the current frame

} // namespace

extern "C" int SDL_PollEvent(SDL_Event* event) {
    static auto* const next = Next<int(SDL_Event*)>("SDL_PollEvent");
    Probe& probe = TheProbe();
    probe.time.BeginFrame(probe.report.Frames());
    frameTime = probe.time.Now();
    probe.report.BeginFrame();
    return next(event);
}

extern "C" void SDL_GL_SwapBuffers() {
    static auto* const next = Next<void()>("SDL_GL_SwapBuffers");
    Probe& probe = TheProbe();
    probe.report.CountErrors();
    probe.shots.Take(frameTime);
    next();
    probe.durations.EndFrame(frameTime);
    probe.report.EndFrame(frameTime);
    probe.time.EndFrame(probe.report.Frames());
}

extern "C" void SDL_Quit() {
    static auto* const next = Next<void()>("SDL_Quit");
    Probe& probe = TheProbe();
    probe.report.Quit(probe.time.Now());
    next();
}

extern "C" int gettimeofday(timeval* time, void*) noexcept {
    const std::int64_t now = TheProbe().time.ClockMicroseconds();
    time->tv_sec = now / microsecondsPerSecond;
    time->tv_usec = now % microsecondsPerSecond;
    return 0;
}

#ifdef __SANITIZE_ADDRESS__
/// The driver stays loaded after the window is closed: of a library that is gone, the leak checker
/// could name neither the allocations nor the globals that still hold them.
extern "C" int dlclose(void*) noexcept {
    return 0;
}
#endif
