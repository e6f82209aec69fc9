#pragma once

#include <vector>

namespace Art {

/// Free texels around every chart, so that neither linear filtering nor the first mip levels
/// mix two charts.
inline constexpr int chartPadding = 2;

/// A rectangle of texels and where it was put (its padding not included).
struct Chart {
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
};

/// Places all charts in a square of `size` texels, each with chartPadding free texels on
/// every side. Deterministic; the order of `charts` stays. False when they do not fit; the
/// places are then not to be used.
bool PackCharts(std::vector<Chart>& charts, int size);

} // namespace Art
