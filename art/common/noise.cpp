#include "art/common/noise.h"

namespace Art {

namespace {

std::uint32_t Scramble(std::uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352dU;
    x ^= x >> 15;
    x *= 0x846ca68bU;
    x ^= x >> 16;
    return x;
}

int WrapTo(int i, int period) {
    if (period <= 0)
        return i;
    const int rest = i % period;
    return rest < 0 ? rest + period : rest;
}

float Fade(float t) {
    return t * t * t * (t * (t * 6 - 15) + 10);
}

/// Dot product of the offset with the gradient at a grid point of the plane.
float Slope2(int ix, int iy, vec2 offset, std::uint32_t seed, int period) {
    const auto hash = Hash(WrapTo(ix, period), WrapTo(iy, period), seed);
    const float angle = static_cast<float>(hash) * (2 * pi / 4294967296.0f);
    return std::cos(angle) * offset.x + std::sin(angle) * offset.y;
}

float Slope3(int ix, int iy, int iz, vec3 offset, std::uint32_t seed, int period) {
    const auto plane = Hash(WrapTo(ix, period), WrapTo(iy, period), seed);
    const auto hash = Hash(plane, WrapTo(iz, period), seed);
    const float z = static_cast<float>(hash & 0xffff) / 32767.5f - 1;
    const float angle = static_cast<float>(hash >> 16) * (2 * pi / 65536.0f);
    const float ring = std::sqrt(std::max(0.0f, 1 - z * z));
    return ring * std::cos(angle) * offset.x + ring * std::sin(angle) * offset.y + z * offset.z;
}

} // namespace

std::uint32_t Hash(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    return Scramble(a + 0x9e3779b9U + Scramble(b + 0x85ebca6bU + Scramble(c + 0xc2b2ae35U)));
}

float HashUnit(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    return static_cast<float>(Hash(a, b, c) >> 8) / 16777216.0f;
}

Random::Random(std::uint32_t seed) : state(0x853c49e6748fea9bULL + seed) {
    Next();
    state += seed;
    Next();
}

std::uint32_t Random::Next() {
    const std::uint64_t old = state;
    state = old * 6364136223846793005ULL + 1442695040888963407ULL;
    const auto mixed = static_cast<std::uint32_t>(((old >> 18) ^ old) >> 27);
    const auto rotation = static_cast<std::uint32_t>(old >> 59);
    return (mixed >> rotation) | (mixed << ((32 - rotation) & 31));
}

float Random::Unit() {
    return static_cast<float>(Next() >> 8) / 16777216.0f;
}

int Random::Int(int low, int high) {
    return low + static_cast<int>(Unit() * static_cast<float>(high - low + 1));
}

float Noise2(vec2 p, std::uint32_t seed, int period) {
    const int ix = static_cast<int>(std::floor(p.x));
    const int iy = static_cast<int>(std::floor(p.y));
    const vec2 f{p.x - static_cast<float>(ix), p.y - static_cast<float>(iy)};
    const auto corner = [&](int dx, int dy) {
        const vec2 offset{f.x - static_cast<float>(dx), f.y - static_cast<float>(dy)};
        return Slope2(ix + dx, iy + dy, offset, seed, period);
    };
    const float low = Lerp(corner(0, 0), corner(1, 0), Fade(f.x));
    const float high = Lerp(corner(0, 1), corner(1, 1), Fade(f.x));
    return 1.4f * Lerp(low, high, Fade(f.y));
}

float Noise3(vec3 p, std::uint32_t seed, int period) {
    const int ix = static_cast<int>(std::floor(p.x));
    const int iy = static_cast<int>(std::floor(p.y));
    const int iz = static_cast<int>(std::floor(p.z));
    const vec3 f = p - vec3{static_cast<float>(ix), static_cast<float>(iy), static_cast<float>(iz)};
    const auto corner = [&](int dx, int dy, int dz) {
        const vec3 step{static_cast<float>(dx), static_cast<float>(dy), static_cast<float>(dz)};
        return Slope3(ix + dx, iy + dy, iz + dz, f - step, seed, period);
    };
    const auto slice = [&](int dz) {
        const float low = Lerp(corner(0, 0, dz), corner(1, 0, dz), Fade(f.x));
        const float high = Lerp(corner(0, 1, dz), corner(1, 1, dz), Fade(f.x));
        return Lerp(low, high, Fade(f.y));
    };
    return 1.4f * Lerp(slice(0), slice(1), Fade(f.z));
}

float Fbm2(vec2 p, std::uint32_t seed, int octaves, int period, float gain) {
    float sum = 0;
    float height = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += height * Noise2(p, seed + static_cast<std::uint32_t>(i), period);
        p = p * 2;
        period *= 2;
        height *= gain;
    }
    return sum;
}

float Fbm3(vec3 p, std::uint32_t seed, int octaves, int period, float gain) {
    float sum = 0;
    float height = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += height * Noise3(p, seed + static_cast<std::uint32_t>(i), period);
        p = p * 2;
        period *= 2;
        height *= gain;
    }
    return sum;
}

Cell Cellular2(vec2 p, std::uint32_t seed, int period) {
    const int ix = static_cast<int>(std::floor(p.x));
    const int iy = static_cast<int>(std::floor(p.y));
    Cell cell{8, 8, 0};
    for (int y = iy - 1; y <= iy + 1; ++y) {
        for (int x = ix - 1; x <= ix + 1; ++x) {
            const auto id = Hash(WrapTo(x, period), WrapTo(y, period), seed);
            const vec2 point{static_cast<float>(x) + HashUnit(id, 1),
                             static_cast<float>(y) + HashUnit(id, 2)};
            const float distance = Length(point - p);
            if (distance < cell.nearest)
                cell = {distance, cell.nearest, id};
            else
                cell.second = std::min(cell.second, distance);
        }
    }
    return cell;
}

} // namespace Art
