#pragma once

#include <functional>

namespace Gallery {

/// How a program of the gallery is made to draw its picture instead of its show; only the window
/// knows of it.

/// Whether it is.
bool MakesPicture();

/// Lets all clocks of the program show the picture's moment, in place of 0.
void GoToMoment();

/// Writes what is drawn into the file that was asked for and tells what drew it. Ends the program
/// with status 1, and a line on standard error, when it cannot.
void SavePicture(int width, int height);

/// Who else keeps time, and is to be told of the moment, in seconds, when it is gone to; empty
/// at first.
std::function<void(double)>& MomentListener();

} // namespace Gallery
