#pragma once

#include "art/city/parts.h"

namespace Art {

/// How far under the water the quay walls stand.
inline constexpr float seaFloor = -14;

/// A quay's walls from the water up, and its pavement at quayHeight.
void AddQuay(Builder& b, const std::vector<vec2>& outline);

/// A piece of made land: quay walls down to the sea floor, pavement on top at quayHeight.
void AddLand(Builder& b, const std::vector<vec2>& outline);

/// Land whose pavement stands out over the water on columns, beyond the ground that carries
/// the rest of it. Both outlines run as in AddLand.
void AddVault(Builder& b, const std::vector<vec2>& pavement, const std::vector<vec2>& ground);

/// Lamp posts every `spacing` units between two ground points.
void AddLamps(Builder& b, vec2 from, vec2 to, float spacing, float height = 1.3f);

/// A humped stone bridge over the water between two banks; `crown` is the height of the
/// arch's underside.
void AddBridge(Builder& b, vec2 from, vec2 to, float width, float crown);

/// A covered bridge between two towers, its floor at height y.
void AddSkyBridge(Builder& b, vec2 from, vec2 to, float width, float y);

/// A house on an arch over a canal, between two ground points on its banks.
void AddWaterGate(Builder& b, vec2 from, vec2 to);
/// A gate between the sea and a canal: two towers joined by a wall with one great arch.
void AddSeaGate(Builder& b, vec2 from, vec2 to);

/// A long arched causeway over the sea with small towers on its piers, its road at height
/// `deck`.
void AddViaduct(Builder& b, vec2 from, vec2 to, int bays, float deck);

/// A round fort out at sea with a watch tower of the given height.
void AddSeaFort(Builder& b, vec2 at, float radius, float height);

/// Poles to moor boats at, along the foot of a quay between two ground points on its edge; the
/// water lies to the right of the way from one to the other (z down). `lit` of ten carry a light.
void AddMooringPoles(Builder& b, vec2 from, vec2 to, float spacing, int lit, unsigned seed);

/// A lighthouse on a round base that stands in the water.
void AddLighthouse(Builder& b, vec2 at, float height);

/// The hill and dale of the sea bed with its rocks and the drowned quarter, and the arcade that
/// carries the north front of the city.
void AddSeaBed(Builder& b, unsigned seed);

} // namespace Art
