#pragma once

#include "art/city/builder.h"

namespace Art {

/// Height of the streets of the drowned quarter.
inline constexpr float quarterFloor = -6.6f;

/// The part of the city that the sea has taken, before its north front and wholly under water: a
/// street, a square with an arcade, a statue and a wreck, a gate, and behind a forecourt that is
/// left to the fish the stairs up to the city that still stands. The flight under water follows
/// its middle.
void AddQuarter(Builder& b, unsigned seed);

/// A ship of wood that lies on its side; `at` is the middle of its keel, `along` points to its bow.
void AddWreck(Builder& b, vec3 at, vec2 along, float length);

/// A robed figure that holds up a torch, on a pedestal of three steps; `at` is on the ground, it
/// looks to `ahead`.
void AddStatue(Builder& b, vec3 at, vec2 ahead);

} // namespace Art
