#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Vell::Sound {

/// Every track has two sides, left and right: a mono file is decoded to twice the same.
constexpr int sides = 2;

/// A piece of music whose length is known and any part of which can be read. Shared by the channel
/// that plays it and the thread that feeds its device: every function may be called from any
/// thread.
class Track {
public:
    /// `framesPerSecond` is at least 1; one frame is one sample of each side.
    Track(int framesPerSecond, std::int64_t length) : rate(framesPerSecond), frames(length) {}
    virtual ~Track() = default;
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    int Rate() const { return rate; }              ///< frames per second
    std::int64_t Frames() const { return frames; } ///< its length

    /// Fills `samples` with the frames from `first` on: left, right, left, right, ...; full scale
    /// is 32768. Before frame 0 and behind the end there is silence. Returns when all of it is
    /// there, which may have to be waited for.
    void Read(std::int64_t first, std::span<std::int16_t> samples) const;

private:
    /// As above, of frames that all lie inside the track.
    virtual void ReadInside(std::int64_t first, std::span<std::int16_t> samples) const = 0;

    const int rate;
    const std::int64_t frames;
};

} // namespace Vell::Sound
