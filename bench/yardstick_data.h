#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What the yardstick draws.
namespace Yardstick {

/// Position, normal, texture coordinates, light map coordinates.
inline constexpr std::size_t floatsAVertex = 10;

/// Blue, green, red, unused; top row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> bytes;
};

/// Makes the files that the folder lacks, and says whether it lacked any. Throws
/// std::runtime_error, like all of these.
bool MakeData(const std::string& folder);

/// Triangles of a text of numbers, after their count of vertices.
std::vector<float> ReadMesh(const std::string& path);

/// A ".png" or ".jpg" of three components.
Picture ReadPicture(const std::string& path);

/// Six faces of four corners around the eye: x, y, z, s, t.
std::vector<float> SkyCorners();

} // namespace Yardstick
