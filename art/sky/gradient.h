#pragma once

#include "art/common/math.h"

namespace Art {

/// A direction in the terms that paint the sky.
struct SkyPoint {
    vec3 direction;  ///< unit length, +y up
    float elevation; ///< degrees above the horizon, -90..90
    float fromLight; ///< degrees of azimuth between it and the low light, 0..180
    vec2 heading;    ///< its unit (x, z); (1, 0) straight up and down
};

SkyPoint MakeSkyPoint(vec3 direction);

/// The three regions of the horizon: towards the light, across it, and away from it. The
/// weights are not negative, add up to 1 and change smoothly.
struct Regions {
    float towards;
    float across;
    float away;
};

Regions RegionsAt(float fromLight);

/// Three colours mixed by region.
vec3 MixRegions(const Regions& regions, vec3 towards, vec3 across, vec3 away);

/// The dusk without clouds, stars and moon, display values; elevations below 0 count as 0.
vec3 ClearSky(const SkyPoint& point);

} // namespace Art
