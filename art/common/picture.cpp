#include "art/common/picture.h"

#include <algorithm>
#include <cmath>

namespace Art {

namespace {

int WrapTo(int i, int size) {
    const int rest = i % size;
    return rest < 0 ? rest + size : rest;
}

} // namespace

Picture::Picture(int w, int h) {
    if (w < 1 || h < 1)
        return;
    width = w;
    height = h;
    pixels.resize(static_cast<std::size_t>(w) * h);
}

const Rgba& Picture::Wrapped(int x, int y) const {
    return At(WrapTo(x, width), WrapTo(y, height));
}

Rgba Picture::Sample(float u, float v) const {
    const float x = u * static_cast<float>(width) - 0.5f;
    const float y = (1 - v) * static_cast<float>(height) - 0.5f;
    const int ix = static_cast<int>(std::floor(x));
    const int iy = static_cast<int>(std::floor(y));
    const float fx = x - static_cast<float>(ix);
    const float fy = y - static_cast<float>(iy);
    const Rgba top = Lerp(Wrapped(ix, iy), Wrapped(ix + 1, iy), fx);
    const Rgba bottom = Lerp(Wrapped(ix, iy + 1), Wrapped(ix + 1, iy + 1), fx);
    return Lerp(top, bottom, fy);
}

Picture Halved(const Picture& p) {
    Picture result(p.Width() / 2, p.Height() / 2);
    for (int y = 0; y < result.Height(); ++y)
        for (int x = 0; x < result.Width(); ++x)
            result.At(x, y) = (p.At(2 * x, 2 * y) + p.At(2 * x + 1, 2 * y) +
                               p.At(2 * x, 2 * y + 1) + p.At(2 * x + 1, 2 * y + 1)) *
                              0.25f;
    return result;
}

std::uint8_t Dithered(float value, int x, int y, int channel) {
    // Interleaved gradient noise: neighbouring thresholds differ strongly, so the error lies
    // in high frequencies, as with blue noise. Every channel is moved to another place.
    const float px = static_cast<float>(x + 47 * channel);
    const float py = static_cast<float>(y + 17 * channel);
    const float inner = 0.06711056f * px + 0.00583715f * py;
    const float outer = 52.9829189f * (inner - std::floor(inner));
    const float threshold = outer - std::floor(outer);
    const float scaled = std::clamp(value, 0.0f, 1.0f) * 255;
    return static_cast<std::uint8_t>(std::clamp(std::floor(scaled + threshold), 0.0f, 255.0f));
}

std::uint8_t Rounded(float value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255));
}

} // namespace Art
