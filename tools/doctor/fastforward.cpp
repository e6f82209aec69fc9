// Preloaded under nimbrel (LD_PRELOAD), it makes time run faster, so that the whole show passes in
// a few seconds:
//
//   NIMBREL_FAST_FORWARD  how many times as fast, from the first frame on
//
// Loading is over when the first frame begins, which is when SDL_PollEvent is called first.

#include <SDL.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>

#include <dlfcn.h>
#include <sys/time.h>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1000000;

std::int64_t begin = 0; // of the first frame, in microseconds; 0: it has not begun

std::int64_t RealTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<std::int64_t>(now.tv_sec) * microsecondsPerSecond + now.tv_nsec / 1000;
}

double Factor() {
    static const char* const setting = std::getenv("NIMBREL_FAST_FORWARD");
    static const double factor = setting != nullptr ? std::atof(setting) : 1.0;
    return factor;
}

} // namespace

extern "C" int SDL_PollEvent(SDL_Event* event) {
    using Function = int(SDL_Event*);
    static auto* const next = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "SDL_PollEvent"));
    if (begin == 0)
        begin = RealTime();
    return next(event);
}

extern "C" int gettimeofday(timeval* time, void*) noexcept {
    std::int64_t now = RealTime();
    if (begin != 0)
        now = begin + std::llround(static_cast<double>(now - begin) * Factor());
    time->tv_sec = now / microsecondsPerSecond;
    time->tv_usec = now % microsecondsPerSecond;
    return 0;
}
