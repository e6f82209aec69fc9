#pragma once

#include "tools/passes/passes.h"
#include "tools/picture/picture.h"
#include "tools/stage/rate.h"
#include "tools/stage/tracedobjects.h"

#include <map>
#include <string>
#include <vector>

namespace Explain {

using Tools::Picture;

/// All that a page tells of one frame.
struct Story {
    int frame = 0; ///< number
    Stage::Rate rate;
    double time = 0.0; ///< of the demo, in seconds
    std::vector<Passes::Pass> passes;
    Passes::View view; ///< of the camera
    std::vector<Stage::TracedFlight> flights;
    float lowestBand = 0.0f;            ///< of the music's spectrum
    std::string renderer;               ///< as OpenGL names it, with its version
    std::map<GLuint, Picture> textures; ///< that passes read and that came from files
};

/// Plays the demo up to the frame and takes it apart. Throws as PlayShow() does.
Story TakeApart(const Stage::Rate& rate, int frame);

/// Which flight the eye is on: the index of the one whose line is nearest to it.
std::size_t FlightOf(const Story& story);

/// How far the eye is along a flight: 0 at its start, 1 at its end.
double ProgressOn(const Stage::TracedFlight& flight, const Passes::View& view);

} // namespace Explain
