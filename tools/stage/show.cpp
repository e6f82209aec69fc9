#include "tools/stage/show.h"

#include "sound/control.h"
#include "tools/stage/drawing.h"
#include "tools/stage/time.h"

#include <SDL.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

// The demo's main(), compiled under this name.
int NimbrelMain();

namespace {

using namespace Stage;

/// The show that is being played: what the demo is told about time, and who is told of its frames.
class Performance {
public:
    Performance(const Rate& showRate, int lastFrame, Visitor& frameVisitor)
        : rate(showRate),
          last(lastFrame),
          visitor(frameVisitor),
          music(std::make_shared<Vell::Sound::HandTime>()) {
        Vell::Sound::PlayByHand(music);
    }
    ~Performance() { Vell::Sound::SetOutputMaker({}); }
    Performance(const Performance&) = delete;
    Performance& operator=(const Performance&) = delete;

    Microseconds Now() { return time.Now(); }
    bool Complete() const { return frame > last; }
    bool Begun() const { return begun; }
    std::exception_ptr Failure() const { return failure; }

    void WindowRefused(const std::string& reason) {
        refusal = "cannot open a window with OpenGL: " + reason;
    }
    const std::string& Refusal() const { return refusal; }

    /// Nothing of the demo's may be left on the way by an exception, so the first one is kept, the
    /// demo brought to its end, and the exception handed on after it.
    template <class Step>
    void Try(Step step) {
        try {
            if (!failure)
                step();
        } catch (...) {
            failure = std::current_exception();
        }
    }

    void BeginFrame() {
        begun = true;
        Try([this] {
            wanted = !Complete() && visitor.Wants(frame);
            SkipDrawing(!wanted);
            if (wanted)
                visitor.Begin(frame);
        });
    }

    void EndFrame() {
        bool again = false;
        Try([this, &again] {
            SkipDrawing(false);
            if (wanted) {
                visitor.End(frame);
                again = visitor.Again(frame);
            }
        });
        if (again)
            return;
        ++frame;
        const Microseconds next = Complete() || failure ? timeIsUp : rate.Microseconds(frame);
        time.MoveTo(next);
        music->MoveTo(SecondsOf(next));
    }

private:
    const Rate rate;
    const int last;
    Visitor& visitor;
    const std::shared_ptr<Vell::Sound::HandTime> music;
    int frame = 0;
    bool begun = false; // whether the demo came as far as its first frame
    bool wanted = false;
    std::string refusal = "this OpenGL lacks what the show needs"; // why it would not begin
    HeldTime time;                                                 // at 0 while the demo loads
    std::exception_ptr failure;
};

Performance* show = nullptr; // while it plays

} // namespace

// The linker leads these calls of the demo and the engine here (--wrap in CMakeLists.txt).
// NOLINTBEGIN(bugprone-reserved-identifier): the linker makes these names.
extern "C" {

SDL_Surface* __real_SDL_SetVideoMode(int width, int height, int bits, Uint32 flags);
int __real_SDL_PollEvent(SDL_Event* event);
void __real_SDL_GL_SwapBuffers();
int __real_gettimeofday(timeval* time, void* zone);

// The demo does not ask why there is no window: the reason is kept for it.
SDL_Surface* __wrap_SDL_SetVideoMode(int width, int height, int bits, Uint32 flags) {
    SDL_Surface* const surface = __real_SDL_SetVideoMode(width, height, bits, flags);
    if (show && !surface)
        show->WindowRefused(SDL_GetError());
    return surface;
}

// Beside a show, all of these are what they are elsewhere.

int __wrap_SDL_PollEvent(SDL_Event* event) {
    if (!show)
        return __real_SDL_PollEvent(event);
    SDL_Event unheard;
    while (__real_SDL_PollEvent(&unheard)) {
    }
    show->BeginFrame();
    return 0;
}

// Nothing is swapped: nobody looks at the window, and the back buffer is all that is read.
void __wrap_SDL_GL_SwapBuffers() {
    if (!show)
        return __real_SDL_GL_SwapBuffers();
    show->EndFrame();
}

int __wrap_gettimeofday(timeval* time, void* zone) {
    if (!show)
        return __real_gettimeofday(time, zone);
    return Tell(show->Now(), time);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace Stage {

void PlayShow(const Rate& rate, int last, Visitor& visitor) {
    constexpr int keepTheUsers = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the demo has not begun, nor its threads
    setenv("SDL_VIDEODRIVER", "x11", keepTheUsers); // or SDL would take the terminal for a screen
    Performance now(rate, last, visitor);
    show = &now;
    const std::unique_ptr<Performance*, void (*)(Performance**)> end(
        // cppcheck-suppress danglingLifetime ; for `end` takes it back before `now` goes
        &show, [](Performance** it) { *it = nullptr; });
    NimbrelMain();
    if (now.Failure())
        std::rethrow_exception(now.Failure());
    if (!now.Begun())
        throw std::runtime_error(now.Refusal() + " (see ./movie --doctor)");
    if (!now.Complete())
        throw std::runtime_error("the demo ended before frame " + std::to_string(last));
}

} // namespace Stage

#ifdef __SANITIZE_ADDRESS__
/// The driver stays loaded after the window is closed: of a library that is gone, the leak checker
/// could name neither the allocations nor the globals that still hold them.
extern "C" int dlclose(void*) noexcept {
    return 0;
}
#endif
