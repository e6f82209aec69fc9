#pragma once

#include "tools/passes/passes.h"
#include "tools/picture/picture.h"
#include "tools/stage/rate.h"

#include <map>
#include <string>
#include <vector>

namespace Explain {

using Tools::Picture;

/// All that a page shows of one frame.
struct FrameRecord {
    int frame = 0; ///< number
    Stage::Rate rate;
    double time = 0.0; ///< of the demo, in seconds
    std::vector<Passes::Pass> passes;
    Passes::View view;                  ///< of the camera
    float lowestBand = 0.0f;            ///< of the music's spectrum
    std::string renderer;               ///< as OpenGL names it, with its version
    std::map<GLuint, Picture> textures; ///< that passes read and that are pictures
};

/// Plays the demo up to the frame and records that. Throws as PlayShow() does.
FrameRecord RecordFrame(const Stage::Rate& rate, int frame);

} // namespace Explain
