#include "sound/streamedtrack.h"

// Who decodes: the one who reads, for a page has no threads.

namespace Vell::Sound {

std::thread StreamedTrack::Start() {
    return {};
}

/// Decodes up to these frames, and no further: the next look finds a 60th of a second missing.
void StreamedTrack::Await(std::unique_lock<std::mutex>& lock, std::int64_t first,
                          std::int64_t count) const {
    auto& decoding = const_cast<StreamedTrack&>(*this); // as its thread would be
    while (!shared->window.Holds(first, count))
        decoding.DecodeBlock(lock);
}

} // namespace Vell::Sound
