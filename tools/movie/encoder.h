#pragma once

#include "tools/stage/frames.h"
#include "tools/stage/process.h"

#include <string>
#include <vector>

namespace Movie {

/// What the finished film is like.
struct FilmFormat {
    Stage::Rate rate;
    int scale = 2;         ///< pixels of the film for each pixel of the demo, in both directions
    bool lossless = false; ///< keeps every pixel and every sample as they are; scaled by repetition
    std::string comment;   ///< goes into the file, for whoever joins pieces
};

/// How to call ffmpeg to put films behind each other whose list it reads from its standard input,
/// in its "ffconcat" format. The sound is made anew; of `format`, only what concerns the sound and
/// the comment counts.
std::vector<std::string> JoinCommand(const std::string& path, const FilmFormat& format,
                                     const std::string& soundPath, int soundRate);

/// ffmpeg with these arguments, to be written to; all that it says is for a message.
Tools::Command FfmpegCommand(const std::vector<std::string>& arguments);

/// Makes a film file out of frames and a soundtrack, through ffmpeg.
class Encoder {
public:
    /// `path` ends in .mp4, .mov or .mkv and is replaced. `soundPath` and `soundRate` are a
    /// Soundtrack's, which must live as long.
    Encoder(const std::string& path, const FilmFormat& format, const std::string& soundPath,
            int soundRate);

    /// The next frame. Throws std::runtime_error with ffmpeg's last words when it gave up.
    void Write(Stage::FramePixels pixels);

    /// Completes the file.
    void Finish();

private:
    Tools::Process ffmpeg;
};

} // namespace Movie
