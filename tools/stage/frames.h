#pragma once

#include "tools/picture/picture.h"
#include "tools/stage/rate.h"

#include <span>
#include <string>
#include <vector>

namespace Stage {

using Tools::Picture;

/// One frame as OpenGL hands it over: blue, green, red and an unused byte for each pixel, bottom
/// row first. It is how windows are kept in memory, so nothing is converted on the way to the
/// encoder.
using FramePixels = std::span<const unsigned char>;

constexpr std::size_t framePixelBytes = 4;

/// As a picture: RGB, top row first.
Picture ToPicture(FramePixels pixels);

/// Which frames are to be drawn.
struct FrameRequest {
    Rate rate;
    std::vector<int> frames; ///< numbers, rising, without repetition
    int jobs = 1;            ///< processes that share the work
};

/// What the frames cost, all jobs together.
struct FrameCost {
    double drawing = 0.0;  ///< seconds from one frame to the next, waiting for the sink left out
    double handover = 0.0; ///< seconds for reading the pixels back, which is part of the above
};

/// Who gets the frames.
class FrameSink {
public:
    virtual ~FrameSink() = default;

    /// Asked before each frame and ten times a second while none is ready; true ends the drawing.
    virtual bool Stopped() { return false; }

    /// The pixels are valid during the call.
    virtual void Put(int number, FramePixels pixels) = 0;
};

/// Draws the frames, each in its turn, and gives them to `sink` in the order asked for.
///
/// The work is done by `jobs` processes of their own: the first draws frames 1, 1 + jobs, ... of
/// the order, and so on, so that the pixels are the same for any number. While `sink` is busy,
/// they draw some frames ahead. They see the Data/ of the working directory and write their logs
/// elsewhere: `log` becomes the text of the first one's, once all frames are taken.
///
/// Throws std::runtime_error with what a process said when it fails. No process outlives the call.
FrameCost DrawFrames(const FrameRequest& request, FrameSink& sink, std::string* log = nullptr);

} // namespace Stage
