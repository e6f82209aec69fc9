#pragma once

#include "tools/picture/picture.h"

#include <string>
#include <vector>

namespace Tools {

/// In both directions half as large, odd sizes rounded up; each pixel the mean of those it stands
/// for.
Picture Halved(const Picture& picture);

/// A picture and what is written under it, in the letters of font.h; what is too long is cut.
struct Tile {
    Picture picture;
    std::string label;
};

/// Pictures in rows of `columns`, each over its label, on black. All have one size; there is at
/// least one.
Picture MakeTiles(const std::vector<Tile>& tiles, int columns);

/// The picture number `index`, from 0, out of such a sheet, of this size. Throws std::out_of_range
/// when the sheet is too small to hold it.
Picture TileOf(const Picture& sheet, int columns, int index, int width, int height);

} // namespace Tools
