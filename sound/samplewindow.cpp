#include "sound/samplewindow.h"

#include "sound/track.h"

#include <algorithm>

namespace Vell::Sound {

SampleWindow::SampleWindow(std::int64_t size)
    : capacity(size), ring(static_cast<std::size_t>(size * sides)) {}

bool SampleWindow::Holds(std::int64_t first, std::int64_t count) const {
    return begin <= first && first + count <= end;
}

void SampleWindow::Restart() {
    begin = 0;
    end = 0;
}

std::int64_t SampleWindow::PlaceOf(std::int64_t frame) const {
    return frame % capacity * sides;
}

void SampleWindow::Append(std::span<const std::int16_t> samples) {
    const auto total = static_cast<std::int64_t>(ring.size());
    const std::int64_t place = PlaceOf(end);
    const std::int64_t straight = std::min<std::int64_t>(std::ssize(samples), total - place);
    std::copy(samples.begin(), samples.begin() + straight, ring.begin() + place);
    std::copy(samples.begin() + straight, samples.end(), ring.begin());
    end += std::ssize(samples) / sides;
    begin = std::max(begin, end - capacity);
}

void SampleWindow::Copy(std::int64_t first, std::span<std::int16_t> samples) const {
    const auto total = static_cast<std::int64_t>(ring.size());
    const auto from = ring.begin() + PlaceOf(first);
    const std::int64_t straight =
        std::min<std::int64_t>(std::ssize(samples), total - PlaceOf(first));
    std::copy(from, from + straight, samples.begin());
    std::copy(ring.begin(), ring.begin() + (std::ssize(samples) - straight),
              samples.begin() + straight);
}

} // namespace Vell::Sound
