#pragma once

#include "art/common/math.h"

#include <cstdint>

namespace Art {

/// A well mixed 32-bit hash of three integers; the root of everything that looks random
/// here, so that the same seed gives the same data on every machine.
std::uint32_t Hash(std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0);
/// The hash as a number in [0, 1).
float HashUnit(std::uint32_t a, std::uint32_t b = 0, std::uint32_t c = 0);

/// A small seeded generator (PCG32).
class Random {
public:
    explicit Random(std::uint32_t seed);
    std::uint32_t Next();
    /// Uniform in [0, 1).
    float Unit();
    /// Uniform in [low, high).
    float Range(float low, float high) { return low + (high - low) * Unit(); }
    /// Uniform integer in [low, high]; low <= high.
    int Int(int low, int high);
    /// True with this probability.
    bool Chance(float probability) { return Unit() < probability; }

private:
    std::uint64_t state;
};

/// Gradient noise in about -1..1, smooth, zero at integer points. With a `period` > 0 it
/// repeats every `period` units along each axis.
float Noise2(vec2 p, std::uint32_t seed, int period = 0);
float Noise3(vec3 p, std::uint32_t seed, int period = 0);
/// `octaves` of gradient noise, each of twice the frequency and `gain` times the height.
/// A positive period stays the period of the sum.
float Fbm2(vec2 p, std::uint32_t seed, int octaves, int period = 0, float gain = 0.5f);
float Fbm3(vec3 p, std::uint32_t seed, int octaves, int period = 0, float gain = 0.5f);

/// Cellular noise: distances to the nearest and second nearest of the points strewn one per
/// unit cell, and a hash of the nearest one's cell. Repeats with `period` when it is positive.
struct Cell {
    float nearest;
    float second;
    std::uint32_t id;
};
Cell Cellular2(vec2 p, std::uint32_t seed, int period = 0);

} // namespace Art
