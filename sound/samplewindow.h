#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Vell::Sound {

/// A stretch of a track, of which the oldest frames give way to those that are appended.
/// Not for several threads at once.
class SampleWindow {
public:
    /// Takes memory for `size` frames, once and for all.
    explicit SampleWindow(std::int64_t size);

    /// The first frame that is held, and the one behind the last.
    std::int64_t Begin() const { return begin; }
    std::int64_t End() const { return end; }
    std::int64_t Capacity() const { return capacity; } ///< frames

    /// Whether the `count` frames from `first` on are all held.
    bool Holds(std::int64_t first, std::int64_t count) const;

    /// Forgets everything; what is appended next begins with frame 0.
    void Restart();

    /// `samples`: both sides of each frame, of Capacity() frames at the most.
    void Append(std::span<const std::int16_t> samples);

    /// Copies frames that are held.
    void Copy(std::int64_t first, std::span<std::int16_t> samples) const;

private:
    /// Where a frame's left side stands.
    std::int64_t PlaceOf(std::int64_t frame) const;

    const std::int64_t capacity;
    std::vector<std::int16_t> ring; ///< frame n stands at place n modulo the capacity
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

} // namespace Vell::Sound
