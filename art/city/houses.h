#pragma once

#include "art/city/parts.h"

namespace Art {

/// Height of the quays and streets over the water.
inline constexpr float quayHeight = 0.7f;

/// What a row of houses looks like.
struct RowStyle {
    float lowest = 4; ///< wall heights
    float highest = 7;
    float narrowest = 2.5f; ///< fronts
    float widest = 4.5f;
    float depth = 4;
    bool detailed = true; ///< balconies, dormers, bays: for what a flight passes closely
    bool arcade = false;  ///< an open ground floor on arches
    bool flat = false;    ///< terraces only, no pitched roofs
    int materials = 0;    ///< which of the materials prevail, 0..3; 3: those seen from far
};

/// Fills the line between two ground points with houses that face Cross(direction, up), each
/// reaching `depth` back. Lots differ in width, height, roof and dress, by `seed`.
void AddRow(Builder& b, vec2 from, vec2 to, const RowStyle& style, unsigned seed);

/// A big house with a hip roof, a front of columns and a stair.
void AddPalace(Builder& b, vec2 from, vec2 to, float depth, float height, unsigned seed);

/// A basilica with nave, aisles, dome and two bell towers; `at` is the middle of its front.
void AddBasilica(Builder& b, vec2 at, vec2 along, float size, unsigned seed);

/// The place whose local x runs from `from` to `to` at ground level.
Place Facing(vec2 from, vec2 to, float y = 0);

} // namespace Art
