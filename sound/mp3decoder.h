#pragma once

#include "sound/track.h"

#include <memory>
#include <string>

namespace Vell::Sound {

struct DecodedMp3 {
    std::shared_ptr<const Track> track; ///< null when nothing could be decoded
    bool damaged = false;               ///< it broke off, or is not as long as the file promised
};

/// Decodes the whole file at `path`, MPEG audio of any rate, mono or stereo, with or without tags.
///
/// Gapless: where the encoder noted how much silence it put before and behind the music, exactly
/// that is cut away, so that sample 0 and the length are those of the music.
/// Damage is read over where the music goes on behind it. A track of another kind glued to the
/// first one is left out. Prints nothing.
DecodedMp3 DecodeMp3(const std::string& path);

} // namespace Vell::Sound
