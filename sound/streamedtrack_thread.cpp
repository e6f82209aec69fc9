#include "sound/streamedtrack.h"

// Who decodes: a thread. Where there are none, web/sound/streamedtrack_thread.cpp stands in the
// place of this file.

namespace Vell::Sound {

std::thread StreamedTrack::Start() {
    return std::thread(&StreamedTrack::Run, this);
}

/// Returns when these frames are held.
void StreamedTrack::Await(std::unique_lock<std::mutex>& lock, std::int64_t first,
                          std::int64_t count) const {
    shared->done.wait(lock, [&] { return shared->window.Holds(first, count); });
}

} // namespace Vell::Sound
