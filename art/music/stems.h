#pragma once

#include "art/music/mixer.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Music {

/// How much lower the stems stand than the mix, in dB, so that none of them reaches full scale.
constexpr float stemGainDb = -12;

/// Takes a mix apart into sounds that add up to it again: each is rounded to the steps of a 24-bit
/// file, and the last one is what is left of the mix, so that the sum is the mix step for step.
class Stems {
public:
    /// `frames` is the length of the mix in samples.
    explicit Stems(std::size_t frames);

    /// A sound of the mix as its file holds it. Throws std::range_error when it is too loud.
    Stereo Next(const Stereo& sound);

    /// What the mix holds besides: hall, echoes and what rounding left over. Throws likewise.
    Stereo Rest(const Mix& mix);

private:
    using Steps = std::vector<std::int32_t>; ///< of one channel

    std::array<Steps, 2> sums; ///< of what was given out so far, left and right
};

} // namespace Music
