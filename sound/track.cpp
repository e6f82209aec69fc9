#include "sound/track.h"

#include <algorithm>

namespace Vell::Sound {

void Track::Read(std::int64_t first, std::span<std::int16_t> samples) const {
    const auto count = static_cast<std::int64_t>(samples.size()) / sides;
    const std::int64_t begin = std::clamp<std::int64_t>(-first, 0, count);
    const std::int64_t end = std::clamp<std::int64_t>(frames - first, begin, count);
    const auto at = [&](std::int64_t frame) { return samples.begin() + frame * sides; };
    std::fill(samples.begin(), at(begin), std::int16_t{0});
    std::fill(at(end), samples.end(), std::int16_t{0});
    if (begin < end)
        ReadInside(first + begin, {at(begin), at(end)});
}

} // namespace Vell::Sound
