#pragma once

#include "art/music/audio.h"

namespace Music {

/// What a loudness meter after EBU R 128 shows for a whole piece.
struct Loudness {
    double integrated = -70.0; ///< LUFS, gated; -70 where all is quieter
    double range = 0.0;        ///< LU between the 10 % and 95 % of the gated short-term values
    double truePeak = -200.0;  ///< dBTP of the louder channel
};

/// Measures a stereo signal (ITU-R BS.1770-4 and EBU Tech 3342). Throws std::bad_alloc.
Loudness MeasureLoudness(const Stereo& signal);

} // namespace Music
