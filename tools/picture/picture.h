#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Tools {

/// A picture in memory: RGB, 8 bits each, top row first, no padding.
struct Picture {
    static constexpr int channels = 3;

    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;

    Picture() = default;
    /// All black; `newWidth` and `newHeight` are pixels, 0 or more.
    Picture(int newWidth, int newHeight);

    bool operator==(const Picture&) const = default;

    unsigned char* At(int x, int y) { return &bytes[Offset(x, y)]; }
    const unsigned char* At(int x, int y) const { return &bytes[Offset(x, y)]; }

private:
    std::size_t Offset(int x, int y) const {
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                static_cast<std::size_t>(x)) *
               channels;
    }
};

/// Reads a binary PPM of 8 bits; throws std::runtime_error saying what is wrong with `path`.
Picture ReadPpm(const std::string& path);

/// Reads a PNG of any kind as RGB; throws std::runtime_error saying what is wrong with `path`.
Picture ReadPng(const std::string& path);

/// The bytes of a PNG file; throws std::runtime_error when there can be none.
std::vector<unsigned char> PngOf(const Picture& picture);

/// Writes a PNG, replacing any file; throws std::runtime_error when it cannot.
void WritePng(const Picture& picture, const std::string& path);

} // namespace Tools
