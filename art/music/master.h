#pragma once

#include "art/music/beatpulse.h"
#include "art/music/instrument.h"
#include "art/music/loudness.h"
#include "art/music/mixer.h"

namespace Music {

/// Everything the master block of a score may set, with its defaults.
const std::vector<SettingDefault>& MasterDefaults();

/// What the master made of a mix.
struct MasterReport {
    Loudness loudness;
    float gainDb = 0;    ///< from the mix to the limiter
    float limitedDb = 0; ///< deepest gain reduction of the limiter
};

/// Makes the finished piece from the mix: tone, bus compression, the picture's pulse, loudness
/// and the limiter; fades the last moments to silence.
/// `report` receives what the result measures.
Stereo Master(const Score& score, const BeatPulse& pulse, Mix mix, MasterReport& report);

} // namespace Music
