#pragma once

#include "art/common/math.h"
#include "art/common/picture.h"

#include <array>
#include <functional>

namespace Art {

/// One side of the sky box as the engine draws it: the point of the unit cube that texture
/// coordinate (s, t) shows is origin + s * alongS + t * alongT.
struct SkyFace {
    const char* file; ///< name in the sky folder
    vec3 origin;      ///< cube corner at s = t = 0
    vec3 alongS;      ///< edge of length 2 along which s grows
    vec3 alongT;      ///< edge of length 2 along which t grows
};

/// The six sides in the order xpos, xneg, ypos, yneg, zpos, zneg.
const std::array<SkyFace, 6>& SkyFaces();

/// Where texture coordinate (s, t) of a face looks from the middle of the box; unit length.
vec3 FaceDirection(const SkyFace& face, float s, float t);

/// Paints one face of `size` x `size` texels, each with `colour` of the direction that its
/// middle looks along; rows from the top (t = 1) down.
Picture PaintFace(const SkyFace& face, int size, const std::function<vec3(vec3)>& colour);

} // namespace Art
