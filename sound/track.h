#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vell::Sound {

/// Every track has two sides, left and right: a mono file is decoded to twice the same.
constexpr int sides = 2;

/// A whole decoded track. Shared read-only between the channels and the threads that play it.
///
/// 16 bit is what every sound device takes unchanged and half the memory of float (21 MB for two
/// minutes); its noise, 96 dB below full scale, is far below anything the picture reacts to.
struct Track {
    int rate = 0;                      ///< frames per second
    std::vector<std::int16_t> samples; ///< left, right, left, right, ...; full scale is 32768

    /// Length in frames; one frame is one sample of each side.
    std::int64_t Frames() const { return static_cast<std::int64_t>(samples.size()) / sides; }
};

} // namespace Vell::Sound
