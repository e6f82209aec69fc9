#pragma once

#include "tools/picture/picture.h"

#include <string>
#include <vector>

namespace Tools {

/// One picture of a contact sheet, and the time that is printed beside it, in the letters of
/// font.h: seven at most, as in "118.252"; of more, the last seven.
struct SheetEntry {
    Picture picture;
    std::string label;
};

/// All pictures under each other, first at the top, in `columns` columns (1 or more) of equal
/// length from left to right, each with its label on its left. All have one size; there is at least
/// one.
Picture MakeSheet(const std::vector<SheetEntry>& entries, int columns = 1);

} // namespace Tools
