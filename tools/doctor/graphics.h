#pragma once

#include "tools/doctor/row.h"
#include "tools/stage/isolated.h"

#include <string>

namespace Doctor {

/// Opens the demo's window for a moment and notes what SDL, OpenGL and its driver are and can do,
/// and which settings of the environment reach into them: to be run in isolation. Every fact is
/// noted as soon as it is known; "complete" is the last.
void CollectGraphicsFacts(const Tools::Report& report);

/// Whether there is a display to open a window on, by the variables that say so.
bool DisplayIsNamed();

/// The largest picture that the demo loads.
struct LargestPicture {
    std::string path; ///< empty: there is none
    int width = 0;    ///< pixels
    int height = 0;
};

/// The rows about SDL, display and OpenGL, from what CollectGraphicsFacts() and
/// CollectServerFacts() noted. Always the same rows: those that could not be looked at say so.
/// `named` is what DisplayIsNamed() said.
Table GraphicsRows(const Tools::IsolatedRun& run, bool named, const LargestPicture& largest);

} // namespace Doctor
