#pragma once

#include "art/common/foldertofill.h"
#include "art/common/picture.h"

#include <span>

/// The city's surfaces, painted by program at their final size. All of them repeat without a
/// seam and hold no light of their own but what glows: where a surface shines, alpha falls
/// from 1 towards 0 and the colour is that of the light.
namespace Art {

/// Facades: one bay and one storey are one unit, 64 pixels. The lowest row is a ground floor.
Picture PaintHouse(Rgba plaster, unsigned seed);
Picture PaintPalace();

/// Facades that are seen from far consist of parts, each of bays and storeys by `facadePart`, with
/// a plaster, a light and habits of their own; the lowest row is a ground floor.
inline constexpr int facadeCells = 16; ///< bays and storeys of the picture
inline constexpr int facadePart = 8;
/// Towers, 64 pixels a bay.
Picture PaintTower();
/// The houses of the town behind the quays, 32 pixels a bay.
Picture PaintTown();
/// A picture of facades, and the file that it fills.
struct FacadeFile {
    const char* name;
    Picture (*paint)();
};
/// All pictures of facades. Their files hold four channels, dithered.
std::span<const FacadeFile> FacadeFiles();

/// Four bands of wall for what passes near the eye (plasterbands.h): a quay's masonry, then
/// plaster of three colours, cracked and off in patches, with brick beneath.
Picture PaintPlaster();
/// Windows, doors, shutters and all that hangs on walls (fittings.h), at 256 texels a unit.
Picture PaintFittings();

/// Coursed ashlar, 4 units wide and high.
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
