#include "art/music/stems.h"

#include <cstdlib>
#include <stdexcept>

namespace Music {

namespace {

constexpr std::int32_t fullScale = 8388607; // of 24 bits, as WriteWav() has it

std::int32_t StepsOf(float value) {
    static const double perUnit = fullScale * static_cast<double>(FromDb(stemGainDb));
    return static_cast<std::int32_t>(std::lround(static_cast<double>(value) * perUnit));
}

/// A float holds 24 bits, so that writing finds the same step again.
float SoundOf(std::int32_t steps) {
    if (std::abs(steps) > fullScale)
        throw std::range_error("a stem is louder than its file can hold");
    return static_cast<float>(static_cast<double>(steps) / fullScale);
}

} // namespace

Stems::Stems(std::size_t frames) : sums{Steps(frames), Steps(frames)} {}

Stereo Stems::Next(const Stereo& sound) {
    Stereo stem = sound;
    std::size_t side = 0;
    for (std::vector<float>* channel : {&stem.left, &stem.right}) {
        Steps& sum = sums.at(side++);
        for (std::size_t i = 0; i < channel->size(); ++i) {
            const std::int32_t steps = StepsOf((*channel)[i]);
            sum[i] += steps;
            (*channel)[i] = SoundOf(steps);
        }
    }
    return stem;
}

Stereo Stems::Rest(const Mix& mix) {
    Stereo rest = mix.body;
    rest.Add(mix.kick, 1.0F);
    std::size_t side = 0;
    for (std::vector<float>* channel : {&rest.left, &rest.right}) {
        const Steps& sum = sums.at(side++);
        for (std::size_t i = 0; i < channel->size(); ++i)
            (*channel)[i] = SoundOf(StepsOf((*channel)[i]) - sum[i]);
    }
    return rest;
}

} // namespace Music
