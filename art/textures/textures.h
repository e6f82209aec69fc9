#pragma once

#include "art/common/foldertofill.h"
#include "art/common/picture.h"

/// The city's surfaces, painted by program at their final size. All of them repeat without a
/// seam and hold no light of their own but what glows: where a surface shines, alpha falls
/// from 1 towards 0 and the colour is that of the light.
namespace Art {

/// Facades: one bay and one storey are one unit, 64 pixels. The lowest row is a ground floor.
Picture PaintTower();
Picture PaintHouse(Rgba plaster, unsigned seed);
Picture PaintPalace();

/// Coursed ashlar, 8 units wide and high.
Picture PaintStone();
/// Smooth pale stone, 4 units.
Picture PaintTrim();
/// Rows of slates, 6 units.
Picture PaintRoof();
/// Rippled sand and stones, 12 units.
Picture PaintSeaBed();
/// The glass of a lamp.
Picture PaintLamp();

/// Paints all of them into the folder; false, having said so, when one cannot be written.
bool WriteTextures(FolderToFill& folder);

} // namespace Art
