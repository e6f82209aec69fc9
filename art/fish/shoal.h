#pragma once

#include "art/fish/fish.h"

namespace Art {

/// Where one fish of a cell of the school swims, and how.
struct Swimmer {
    vec3 offset;   ///< of its middle from the cell, world units
    float length;  ///< world units
    float heading; ///< rotation about +y, radians; 0 swims straight towards -x, + towards +z
    float pitch;   ///< nose up, radians
    FishPose pose;
};

/// The fish of a cell: four shoals, one after the other.
std::vector<Swimmer> Swimmers();

/// The mesh of one cell of the school, in tenths of a world unit as the scene scales it.
MeshFile FishMesh();

} // namespace Art
