#pragma once

#include "tests/support/x11_events.h"
#include "tools/stage/process.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Surroundings {

/// What the steps of a row ask for. Some have been made by the time it is known; these are undone
/// with it.
struct Stage {
    Tools::Environment added;           ///< to the program's environment
    std::vector<std::string> preloaded; ///< libraries under the program
    std::string times = "0,60,61,119";  ///< of the frames where time is stepped
    int beside = 0;                     ///< further shows at the same time

    /// What is done to the program while it plays in real time, in this order.
    std::vector<std::function<void(Tools::Process&, ForeignWindow&)>> events;

    std::vector<std::shared_ptr<void>> undone; ///< ends what was made for the row
};

/// Makes the steps, "files empty; wait 3", in the working directory, where Data/ and the probe's
/// files lie:
///
///   files empty, half, unreadable or folders   all data files are so
///   folder read-only    no file can be made where the program works
///   log full            nor a byte written to its page
///   sound SETTINGS      the device of tests/sound/paced_pcm.c, and the music
///   beneath WHAT        the libraries of beneath.cpp
///   times LIST          of the frames
///   layer               SDL 1.2 is the layer over SDL 2
///   comma               a locale with a decimal comma, which a library sets for the program
///   beside COUNT        so many shows more
///   address COUNT       megabytes of address space
///   close, resize       of the window
///   events SECONDS      10,000 in each
///   stopped SECONDS
///   wait SECONDS
///
/// Throws std::runtime_error when something cannot be made, or is no step.
Stage Make(const std::string& steps);

/// Makes one data file empty, half, unreadable or a folder, as "files" makes all.
void SpoilFile(const std::string& how, const std::string& file);

} // namespace Surroundings
