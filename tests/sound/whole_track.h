#pragma once

#include "sound/track.h"

#include <memory>
#include <string>
#include <vector>

/// A track that is all in memory.
class WholeTrack : public Vell::Sound::Track {
public:
    WholeTrack(int framesPerSecond, std::vector<std::int16_t> both)
        : Track(framesPerSecond, std::ssize(both) / Vell::Sound::sides), samples(std::move(both)) {}

    const std::vector<std::int16_t> samples; ///< left, right, left, right, ...

private:
    void ReadInside(std::int64_t first, std::span<std::int16_t> part) const override;
};

struct DecodedMp3 {
    std::shared_ptr<const WholeTrack> track; ///< null when nothing can be decoded
    bool damaged = false;
};

/// All of an MP3, as the sound library plays it.
DecodedMp3 DecodeMp3(const std::string& path);

/// All of an MP3, as libmpg123 decodes it from the first byte to the last, knowing nothing
/// beforehand: what the sound library is held against.
DecodedMp3 DecodeInOneGo(const std::string& path);
