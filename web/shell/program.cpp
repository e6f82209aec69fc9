// What every program of a page has beside its own main().

#include "web/shell/page.h"

#include <GL/gl.h>
#include <emscripten.h>

#include <cstdlib>

#include <sys/time.h>

/// The engine's clocks: the page's time, which stands still while nobody sees or hears anything.
extern "C" int gettimeofday(timeval* time, void*) {
    constexpr double microsecondsPerSecond = 1e6;
    const double now = page_microseconds();
    time->tv_sec = static_cast<time_t>(now / microsecondsPerSecond);
    time->tv_usec =
        static_cast<suseconds_t>(now - static_cast<double>(time->tv_sec) * microsecondsPerSecond);
    return 0;
}

/// What glGetError() answers by now, for whoever checks the page.
extern "C" EMSCRIPTEN_KEEPALIVE unsigned web_error() {
    return glGetError();
}

/// Called when a main() has returned that had been away between two frames: nobody was left to end
/// the program behind it.
extern "C" EMSCRIPTEN_KEEPALIVE void web_exit() {
    std::exit(EXIT_SUCCESS);
}
