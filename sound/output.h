#pragma once

#include "sound/track.h"

#include <functional>
#include <memory>

namespace Vell::Sound {

/// Plays one track once, from its start, as soon as it is made; the destructor stops it at once.
class Output {
public:
    virtual ~Output() = default;

    /// How far the music has come at the listener's ear, in frames: the next frame heard is the
    /// one with this number. 0 or less before the first is heard, the track's length or more after
    /// the last. Any thread may ask.
    virtual std::int64_t FramesHeard() const = 0;
};

/// Makes the output for a track that is about to play. May throw std::bad_alloc or
/// std::system_error; a device that cannot be had is no reason to throw, but to play in silence.
using OutputMaker = std::function<std::unique_ptr<Output>(std::shared_ptr<const Track>)>;

} // namespace Vell::Sound
