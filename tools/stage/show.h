#pragma once

#include "tools/stage/rate.h"

namespace Stage {

/// What is done with the frames of a show.
class Visitor {
public:
    virtual ~Visitor() = default;

    /// Whether frame `number` is drawn. In the others the demo does all that it does, clocks,
    /// flights, music and every call to OpenGL but those that draw.
    virtual bool Wants(int number) = 0;

    /// Before the first call to OpenGL of a frame that is wanted. The context is current.
    virtual void Begin(int /*number*/) {}

    /// After the last one: the picture stands in the back buffer.
    virtual void End(int number) = 0;

    /// Asked after End(): whether the same frame is drawn once more, time standing still. The demo
    /// is told then that the frame before took no time.
    virtual bool Again(int /*number*/) { return false; }
};

/// Plays the demo, its own main() and all, from its first frame to frame `last`, and calls
/// `visitor` for each. Time stands still within a frame and moves by one frame between two; the
/// music plays to nobody and moves with it. No event reaches the demo.
///
/// Once a process, from its only thread, with a display in DISPLAY and Data/ in the working
/// directory, where the demo writes its log. What `visitor` throws comes out again after the demo
/// has ended. Throws std::runtime_error when the demo ended before frame `last`, and says why when
/// it did not begin: no window with an OpenGL context, or an OpenGL that the engine cannot use.
void PlayShow(const Rate& rate, int last, Visitor& visitor);

} // namespace Stage
