#include "web/gl/context.h"

#include "web/gl/es.h"
#include "web/gl/webgl.h"

#include <memory>

namespace WebGL {

namespace {

std::unique_ptr<Context>& Place() {
    // Never destroyed: objects that outlive main() release what they hold when all statics are
    // gone.
    static auto& place = *new std::unique_ptr<Context>(std::make_unique<Context>());
    return place;
}

webgl_frame lastFrame{};
unsigned long callsBefore = 0;

} // namespace

Context& Current() {
    return *Place();
}

Context& Renew() {
    Place() = std::make_unique<Context>();
    return Current();
}

} // namespace WebGL

void webgl_begin(int width, int height) {
    WebGL::Es::Fetch();
    WebGL::Renew().pipeline.Begin(width, height);
    WebGL::Current().begun = true;
}

void webgl_end_frame(void) {
    WebGL::Counts& counts = WebGL::Current().counts;
    WebGL::lastFrame = {WebGL::Es::calls - WebGL::callsBefore, counts.draws, counts.uploads};
    WebGL::callsBefore = WebGL::Es::calls;
    counts = {};
}

webgl_frame webgl_last_frame(void) {
    return WebGL::lastFrame;
}
