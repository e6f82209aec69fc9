#pragma once

#include "art/sky/gradient.h"

namespace Art {

/// A sky colour after the clouds, and how much of what lay behind them still shows, 0..1.
struct Clouded {
    vec3 colour;
    float open;
};

/// Lays the clouds over a sky colour, far ones first: thin cirrus high up, bars of stratus up to
/// 25 degrees, embers before the glow, cumulus banks on the horizon. Only for points on or above
/// the horizon.
Clouded AddClouds(const SkyPoint& point, vec3 behind);

} // namespace Art
