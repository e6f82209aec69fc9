#pragma once

#include "art/music/audio.h"
#include "art/music/score.h"

#include <string>

namespace Music {

/// Reads and parses a score. False, with "file:line: what is wrong" on stderr, when it cannot.
bool ReadScore(const std::string& path, Score& score);

/// Reads a score and the sound that was rendered from it. False, with a message on stderr, when
/// one of the two cannot be read.
bool ReadPiece(const std::string& scorePath, const std::string& wavPath, Score& score,
               Stereo& signal);

} // namespace Music
