#pragma once

#include "art/common/meshwriter.h"

#include <functional>
#include <vector>

namespace Art {

using Vertices = std::vector<MeshVertex>;

/// A point of a shape over its two coordinates, 0..1 each.
using Shape = std::function<vec3(float u, float v)>;

/// Covers a shape with `columns` x `rows` pieces of two triangles. The front is where it is seen
/// with u to the right and v up; normals and texture coordinates (u, v) are the shape's.
void AddShape(Vertices& out, const Shape& shape, int columns, int rows);

/// Turns a line of (radius, height), given from the foot to the top, round the vertical at
/// `middle`; texture coordinates go `repeats.x` times round it and `repeats.y` times up.
void AddTurned(Vertices& out, const std::vector<vec2>& line, int sides, vec3 middle,
               vec2 repeats = {1, 1});

/// The six sides of a box; `repeats` of the texture a unit.
void AddBox(Vertices& out, vec3 low, vec3 high, float repeats);

/// A mesh of one part with one texture and no light map.
MeshFile OneMesh(const char* textureDirectory, const char* texture, Vertices vertices);

} // namespace Art
