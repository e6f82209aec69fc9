#pragma once

#include "art/common/meshwriter.h"

#include <vector>

namespace Art {

/// What moves or hangs in the water of the flight under water, and how the material knows it: by
/// whole repeats of the texture along v, counted in view marks.
enum class Drift {
    Weed = 1, ///< sways; the texture's v runs from 0 at its root to 1 at its tip
    Bubble,   ///< rises from where it is by driftRise units, over and over
    Mote      ///< dust that hangs in the light
};

/// How far bubbles rise before they begin again, units. None passes the surface.
inline constexpr float driftRise = 5.6f;

/// The triangles of weed, bubbles and dust along the flight under water. They have no place in the
/// light map. `mark` is the texture coordinate that all of them share along u and that counts one
/// kind along v.
std::vector<MeshVertex> DriftingThings(float markU, float markV);

} // namespace Art
