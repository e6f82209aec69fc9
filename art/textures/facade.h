#pragma once

#include "art/common/picture.h"

#include <functional>

namespace Art {

/// Paints a picture of `across` x `up` cells at twice its size and halves it, so that edges
/// are smooth. `cell(column, row, p)` gives the colour at p, 0..1 in the cell with y upwards;
/// row 0 is the lowest.
Picture PaintCells(int across, int up, int cellPixels,
                   const std::function<Rgba(int column, int row, vec2 p)>& cell);

/// How a pane of glass looks at p (0..1 in the pane): lit, with curtains and a lamp within,
/// or dark with the dusk in it. `id` picks which and how; `share` of all panes are lit.
Rgba Glass(vec2 p, unsigned id, float share);

/// Fine unevenness of plaster or stone about 1, seamless over `across` x `up` cells.
float Grain(vec2 cells, int across, int up, unsigned seed);

/// True inside the rectangle.
constexpr bool Inside(vec2 p, float x0, float x1, float y0, float y1) {
    return p.x >= x0 && p.x < x1 && p.y >= y0 && p.y < y1;
}

/// Colour times a brightness; alpha stays.
constexpr Rgba Shade(Rgba colour, float by) {
    return {colour.r * by, colour.g * by, colour.b * by, colour.a};
}

} // namespace Art
