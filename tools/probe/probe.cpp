// Preloaded under nimbrel (LD_PRELOAD), it stands between the program and four functions:
//
//   SDL_PollEvent       the first call of the run is demo time 0, each call begins a frame
//   SDL_GL_SwapBuffers  each call ends a frame: errors are counted, pictures taken
//   SDL_Quit            the end
//   gettimeofday        what tools/stage/time.h decides
//
// What it does is chosen by environment variables, which settings.cpp lists.
//
// Stepped time does not move the music: the spectrum that drives the effects stays in real time.

#include "tools/probe/settings.h"
#include "tools/stage/time.h"

#include <GL/gl.h>
#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <dlfcn.h>

namespace {

using Probe::Settings;

double SecondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Of the steady clock, for durations.
double Seconds() {
    return SecondsOf(CLOCK_MONOTONIC);
}

/// That all threads of the program have spent since it began; programs beside it count little.
double ProcessorSeconds() {
    return SecondsOf(CLOCK_PROCESS_CPUTIME_ID);
}

/// The function of this name that the program would have called without the probe.
template <class Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// --- Time -------------------------------------------------------------------------------------

/// The time that the settings choose.
std::unique_ptr<Stage::Time> Chosen(const Settings& settings) {
    if (settings.step != 0.0)
        return std::make_unique<Stage::FrameTime>(
            [step = settings.step](int frame) { return Stage::MicrosecondsOf(step * frame); });
    if (!settings.times.empty())
        return std::make_unique<Stage::FrameTime>([times = settings.times](int frame) {
            const auto number = static_cast<std::size_t>(frame);
            return number < times.size() ? Stage::MicrosecondsOf(times[number])
                                         : Stage::MicrosecondsOf(times.back()) + Stage::timeIsUp;
        });
    if (settings.speed != 0.0)
        return std::make_unique<Stage::FasterTime>(settings.speed);
    return std::make_unique<Stage::RealTime>();
}

/// Demo time: what the clock shows since the first frame began.
class DemoTime {
public:
    explicit DemoTime(const Settings& settings) : clock(Chosen(settings)) {}

    /// Called when a frame begins, which is `frame` = 0 for the first one.
    void BeginFrame(int frame) {
        clock->BeginFrame(frame);
        if (frame == 0)
            begin = clock->Now();
    }
    void EndFrame(int nextFrame) { clock->EndFrame(nextFrame); }

    double Seconds() const { return Stage::SecondsOf(clock->Now() - begin); }

    /// What gettimeofday() tells the program.
    Stage::Microseconds Clock() const { return clock->Now(); }

private:
    const std::unique_ptr<Stage::Time> clock;
    Stage::Microseconds begin = 0;
};

// --- Pictures ---------------------------------------------------------------------------------

/// Takes the back buffer at the first frame at or after each time asked for.
class Shots {
public:
    explicit Shots(const Settings& settings) : times(settings.shots), folder(settings.shotFolder) {}

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

        char name[64]; // a point whatever the user's numbers have
        const long thousandths = std::lround(time * 1000.0);
        std::snprintf(name, sizeof name, "/frame_%04ld.%03ld.ppm", thousandths / 1000,
                      thousandths % 1000);
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

/// How long each frame took, and the processor for it, up to the moment when all of it was drawn.
class Durations {
public:
    explicit Durations(const Settings& settings) : path(settings.frames) {}

    ~Durations() {
        if (path.empty())
            return;
        std::ofstream file(path);
        for (const Duration& frame : frames)
            file << frame.demoTime << ' ' << frame.milliseconds << ' ' << frame.processor << '\n';
    }

    /// A frame begins where the one before has ended, the first one where loading has.
    void BeginFrame() {
        if (last > 0.0 || path.empty())
            return;
        glFinish(); // or the first frame would pay for what loading ordered
        last = Seconds();
        spent = ProcessorSeconds();
    }

    void EndFrame(double demoTime) {
        if (path.empty())
            return;
        glFinish(); // likewise
        const double now = Seconds();
        const double processor = ProcessorSeconds();
        frames.push_back({demoTime, (now - last) * 1000.0, (processor - spent) * 1000.0});
        last = now;
        spent = processor;
    }

private:
    struct Duration {
        double demoTime;
        double milliseconds;
        double processor; ///< milliseconds
    };

    std::string path;
    std::vector<Duration> frames;
    double last = 0.0;  ///< when the last frame was drawn
    double spent = 0.0; ///< seconds of the processor then
};

// --- Report -----------------------------------------------------------------------------------

/// Everything counted, written when the program ends in order.
class Report {
public:
    explicit Report(const Settings& settings) : path(settings.report) {}
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
        const double now = Seconds();
        if (frames++ > 0)
            milliseconds.push_back((now - lastSwap) * 1000.0);
        lastSwap = now;
        lastFrameTime = demoTime;
        LookAtWindow();
        if (frames == 1) {
            start = ProcessorSeconds() * 1000.0;
            Write(); // whoever waits for the demo to play sees that it does
        }
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
             << Milliseconds(0.95) << "\nlongest_ms " << Milliseconds(1.0)
             << "\nstart_processor_ms " << start << "\nwidth " << width << "\nheight " << height
             << "\nfull_screen " << fullScreen << "\ncursor_shown " << cursorShown << "\ncaption "
             << caption << '\n';
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
    double start = 0.0; ///< milliseconds of the processor up to the first frame's end
    std::vector<double> milliseconds;
    int width = 0;
    int height = 0;
    bool fullScreen = false;
    bool cursorShown = true;
    std::string caption;
};

// Made when first asked for: gettimeofday() may be called before this library's constructors ran.
struct Watch {
    explicit Watch(const Settings& settings)
        : time(settings), shots(settings), durations(settings), report(settings) {}

    DemoTime time;
    Shots shots;
    Durations durations;
    Report report;
};

Watch& TheWatch() {
    static Watch watch(Probe::ReadSettings());
    return watch;
}

double frameTime = 0.0; // demo time at the beginning of the current frame

} // namespace

extern "C" int SDL_PollEvent(SDL_Event* event) {
    static auto* const next = Next<int(SDL_Event*)>("SDL_PollEvent");
    Watch& watch = TheWatch();
    watch.time.BeginFrame(watch.report.Frames());
    frameTime = watch.time.Seconds();
    watch.durations.BeginFrame();
    watch.report.BeginFrame();
    return next(event);
}

extern "C" void SDL_GL_SwapBuffers() {
    static auto* const next = Next<void()>("SDL_GL_SwapBuffers");
    Watch& watch = TheWatch();
    watch.report.CountErrors();
    watch.shots.Take(frameTime);
    next();
    watch.durations.EndFrame(frameTime);
    watch.report.EndFrame(frameTime);
    watch.time.EndFrame(watch.report.Frames());
}

extern "C" void SDL_Quit() {
    static auto* const next = Next<void()>("SDL_Quit");
    Watch& watch = TheWatch();
    watch.report.Quit(watch.time.Seconds());
    next();
}

extern "C" int gettimeofday(timeval* time, void*) noexcept {
    return Stage::Tell(TheWatch().time.Clock(), time);
}

#ifdef __SANITIZE_ADDRESS__
/// The driver stays loaded after the window is closed: of a library that is gone, the leak checker
/// could name neither the allocations nor the globals that still hold them.
extern "C" int dlclose(void*) noexcept {
    return 0;
}
#endif
