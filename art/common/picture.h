#pragma once

#include "art/common/math.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Art {

/// One pixel: colour and alpha, 0..1 in the picture file's own (display) values.
struct Rgba {
    float r = 0;
    float g = 0;
    float b = 0;
    float a = 1;
};

constexpr Rgba operator+(Rgba p, Rgba q) {
    return {p.r + q.r, p.g + q.g, p.b + q.b, p.a + q.a};
}
constexpr Rgba operator-(Rgba p, Rgba q) {
    return {p.r - q.r, p.g - q.g, p.b - q.b, p.a - q.a};
}
constexpr Rgba operator*(Rgba p, float s) {
    return {p.r * s, p.g * s, p.b * s, p.a * s};
}
/// p at t = 0 and q at t = 1.
constexpr Rgba Lerp(Rgba p, Rgba q, float t) {
    return p + (q - p) * t;
}

/// A picture in floats, rows from the top down as a viewer sees them. Painting mixes, filters and
/// bakes with more than 8 bits and beyond 0..1; what files hold (tools/picture) is made of it,
/// dithered, at the very end.
///
/// Seen as a texture, pixel (x, y) lies at u = (x + 0.5) / width and
/// v = 1 - (y + 0.5) / height: v grows upwards.
class Picture {
public:
    Picture() = default;
    /// All pixels black with alpha 1. Sizes below 1 give an empty picture.
    Picture(int width, int height);

    int Width() const { return width; }
    int Height() const { return height; }

    /// The pixel at (x, y), 0 <= x < width, 0 <= y < height (not checked).
    Rgba& At(int x, int y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
    const Rgba& At(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
    /// The pixel at (x, y) of the plane tiled with this picture; any x and y.
    const Rgba& Wrapped(int x, int y) const;
    /// Bilinear look-up at texture coordinates (u, v) of the tiled picture, as GL_REPEAT does.
    Rgba Sample(float u, float v) const;

private:
    int width = 0;
    int height = 0;
    std::vector<Rgba> pixels;
};

/// Half the size, every pixel the mean of four; sizes must be even.
Picture Halved(const Picture& picture);

/// 8-bit value of `value` (0..1, clamped) at pixel (x, y), rounded after adding a blue-noise
/// like threshold of +-half a step, so that gradients show no bands. `channel` decorrelates
/// the colours. Deterministic.
std::uint8_t Dithered(float value, int x, int y, int channel);
/// 8-bit value of `value` (0..1, clamped), rounded to nearest.
std::uint8_t Rounded(float value);

/// How a picture becomes 8 bits.
enum class Depth { Rounded, Dithered };

/// Writes an RGB JPEG, rows as they stand, without chroma subsampling. `quality` 1..100.
/// The file is written beside `path` and renamed, so a reader never sees half of it.
/// Returns false and prints a message when the file cannot be written.
bool WriteJpeg(const std::string& path, const Picture& picture, int quality,
               Depth depth = Depth::Dithered);
/// The same for a picture that the engine will load: written so that after the engine's turn
/// by 180 degrees texture coordinate (u, v) finds the pixel of `picture` that lies there.
bool WriteEngineJpeg(const std::string& path, const Picture& picture, int quality,
                     Depth depth = Depth::Dithered);
/// Writes an RGB (3) or RGBA (4 `channels`) PNG, rows as they stand; the engine flips a PNG
/// only vertically on loading, so texture coordinates find the picture unmirrored.
bool WritePng(const std::string& path, const Picture& picture, int channels,
              Depth depth = Depth::Dithered);

/// The same for a picture that the engine will load: larger, for its pixels are stored as they are,
/// and read in a sixth of the time, which is part of the demo's start.
bool WriteEnginePng(const std::string& path, const Picture& picture, int channels,
                    Depth depth = Depth::Dithered);

/// Reads a PNG or JPEG, by its extension, rows from the top as stored. An empty picture and
/// a message when the file is missing or broken.
Picture ReadPicture(const std::string& path);
/// Reads a picture as the engine would see it: a JPEG is mirrored left to right.
Picture ReadAsEngine(const std::string& path);

} // namespace Art
