// What the demo's frames cost OpenGL ES under web/gl. Data of the demo's own are looked at.

#include "tests/support/scene_stage.h"
#include "web/gl/es.h"
#include "web/gl/webgl.h"

#include <algorithm>
#include <ctime>
#include <iostream>
#include <vector>

#define WEBGL_SILENCE(result, name, parameters, arguments)                                         \
    WebGL::Es::name##Address = Silent<decltype(WebGL::Es::name##Address)>::Call;

namespace {

/// A function that does nothing.
template <class Pointer>
struct Silent;

template <class Result, class... Parameters>
struct Silent<Result (*)(Parameters...)> {
    static Result Call(Parameters...) { return Result(); }
};

/// Past what is compiled, uploaded and kept at first sight.
constexpr int framesBefore = 3;
constexpr float frameTime = 0.02f;

class WebGlFrames : public SceneStage {
protected:
    webgl_frame FrameAt(double t) {
        for (int i = 0; i <= framesBefore; ++i) {
            webgl_end_frame();
            DrawAt(t + i * static_cast<double>(frameTime), frameTime);
        }
        webgl_end_frame();
        return webgl_last_frame();
    }
};

/// Milliseconds that this thread has computed so far.
double Computed() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// An OpenGL ES that takes every call and does nothing, for as long as this lives: what is left of
/// a frame's time is the demo's, the engine's and web/gl's.
class SilentEs {
public:
    SilentEs() { WEBGL_ES_CALLS(WEBGL_SILENCE) }
    ~SilentEs() { WebGL::Es::Fetch(); }
    SilentEs(const SilentEs&) = delete;
    SilentEs& operator=(const SilentEs&) = delete;
};

} // namespace

TEST_F(WebGlFrames, Take_fewer_than_600_calls_at_any_moment) {
    for (const double t : {1.0, 5.0, 12.0, 20.0, 30.0, 38.0, 50.0, 63.0, 70.0, 82.0, 97.0, 112.0}) {
        const webgl_frame frame = FrameAt(t);
        EXPECT_LT(frame.calls, 600U) << t;
        EXPECT_GT(frame.draws, 0U) << t;
        std::cout << t << " s: " << frame.calls << " calls, " << frame.draws << " draws, "
                  << frame.uploads << " uploads\n";
    }
}

TEST_F(WebGlFrames, Upload_nothing_that_was_uploaded_before) {
    for (const double t : {20.0, 50.0, 97.0})
        EXPECT_EQ(FrameAt(t).uploads, 0U) << t;
}

// The median of the frames of a second; the demo's and the engine's share is in it.
TEST_F(WebGlFrames, Take_less_than_2_ms_of_own_work) {
    for (const double t : {5.0, 30.0, 50.0, 97.0}) {
        FrameAt(t);
        const SilentEs silent;
        std::vector<double> times;
        for (int i = 0; i < 50; ++i) {
            const double before = Computed();
            DrawAt(t + i * static_cast<double>(frameTime), frameTime);
            times.push_back(Computed() - before);
        }
        std::nth_element(times.begin(), times.begin() + 25, times.end());
        EXPECT_LT(times[25], 2.0) << t;
        std::cout << t << " s: " << times[25] << " ms\n";
    }
}
