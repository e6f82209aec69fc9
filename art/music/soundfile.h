#pragma once

#include "art/music/audio.h"

#include <string>

namespace Music {

/// Writes 24-bit PCM. Returns false when the file cannot be written.
bool WriteWav(const std::string& path, const Stereo& signal);

/// Reads 16- or 24-bit stereo PCM at the piece's rate. Returns false, leaving `signal` empty,
/// when the file is missing or anything else.
bool ReadWav(const std::string& path, Stereo& signal);

/// Encodes with LAME at a constant `kilobits` a second (192..320) with the tag that tells
/// players the exact length. LAME's own high pass is off: the slow plateaus under the bass must
/// arrive. Returns false when the encoder refuses or the file cannot be written.
bool WriteMp3(const std::string& path, const Stereo& signal, int kilobits);

} // namespace Music
