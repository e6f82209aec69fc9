#pragma once

namespace Big {

/// A part of the desktop, in its pixels from the upper left.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// The screen that a viewer looks at: the primary one of several, the first where none is, all of
/// the desktop where the X server tells of none. Empty when no display answers to DISPLAY.
Area ViewersScreen();

/// Where a picture of this size goes when it is as wide as the screen: its height keeps the shape,
/// rounded to whole pixels, and it lies in the middle. Never smaller than the picture itself.
Area Enlarged(int width, int height, const Area& screen);

} // namespace Big
