#pragma once

namespace Stage {

/// While `skip` is true, calls of the demo and the engine that would draw or clear do nothing, and
/// no watcher hears of them; all other calls to OpenGL are made. Off at first.
void SkipDrawing(bool skip);

} // namespace Stage
