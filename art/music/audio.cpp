#include "art/music/audio.h"

#include <algorithm>

namespace Music {

void Stereo::Clear() {
    std::fill(left.begin(), left.end(), 0.0F);
    std::fill(right.begin(), right.end(), 0.0F);
}

void Stereo::Add(const Stereo& other, float gain) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] += other.left[i] * gain;
        right[i] += other.right[i] * gain;
    }
}

void Stereo::Scale(float gain) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        left[i] *= gain;
        right[i] *= gain;
    }
}

} // namespace Music
