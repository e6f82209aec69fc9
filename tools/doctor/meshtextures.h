#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Doctor {

/// The pictures that a mesh of the form ".xt3dstatic" names, its light map the first, by path, in
/// the order in which the engine loads them. Empty when it is no such mesh; one that breaks off
/// gives those before the break.
std::vector<std::string> MeshTextures(std::istream& in);

} // namespace Doctor
