#pragma once

#include "art/common/math.h"

namespace Art {

/// The small things on walls that pass near the eye. All of them are painted on one texture,
/// `fittings.jpg`, each on a patch of its own, some in several variants side by side.
enum class Fitting {
    LitPane,  ///< a window whose room is lit: to be drawn shining
    DimPane,  ///< likewise, behind curtains
    DarkPane, ///< a window with the dusk in it
    Door,     ///< two leaves and a fanlight
    Shop,     ///< a wide window with goods
    Planks,   ///< the front of a flower box
    Iron,     ///< even, like the next: may be stretched over anything
    Zinc,
    Pole,    ///< striped in red and white
    Shutter, ///< a leaf with louvres and hinges
    Awning,  ///< striped cloth
    Sign,    ///< a board over a shop
    Sill,    ///< worn pale stone
    Foliage, ///< leaves and blossoms
    Cloth,   ///< washing
    HangingSign,
    Wood,      ///< weathered planks
    Stonework, ///< dressed stone
    Count
};

/// Side of the texture, in texels.
inline constexpr int fittingsSide = 1024;

/// Where the first variant lies, in texels from the top left; the others follow to its right.
struct FittingPatch {
    int x, y, width, height;
    int variants;
};

/// In the order of Fitting.
inline constexpr FittingPatch fittingPatches[] = {
    {0, 0, 128, 160, 8},     {0, 160, 128, 160, 4},   {512, 160, 128, 160, 4},
    {0, 320, 160, 256, 3},   {480, 320, 256, 208, 2}, {480, 528, 256, 48, 2},
    {992, 320, 16, 64, 1},   {1008, 320, 16, 64, 1},  {992, 384, 32, 192, 1},
    {0, 576, 96, 160, 3},    {288, 576, 256, 96, 2},  {800, 576, 112, 96, 2},
    {800, 672, 224, 64, 1},  {0, 736, 128, 128, 3},   {384, 736, 96, 128, 5},
    {864, 736, 160, 128, 1}, {0, 864, 512, 160, 1},   {512, 864, 512, 160, 1},
};
static_assert(sizeof fittingPatches / sizeof fittingPatches[0] ==
              static_cast<unsigned>(Fitting::Count));

constexpr const FittingPatch& PatchOf(Fitting fitting) {
    return fittingPatches[static_cast<int>(fitting)];
}

/// Texels a unit of what is painted at its natural size.
inline constexpr float nearDensity = 256;

} // namespace Art
