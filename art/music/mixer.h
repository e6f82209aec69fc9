#pragma once

#include "art/music/audio.h"
#include "art/music/beatpulse.h"
#include "art/music/instrument.h"
#include "art/music/loudness.h"
#include "art/music/score.h"

#include <functional>
#include <string>
#include <vector>

namespace Music {

/// The mix before the master: all tracks with their effects, and the kick apart, because the
/// gaps at the beats must not touch it.
struct Mix {
    Stereo body;
    Stereo kick;
};

/// How loud one track is in the mix, for balancing.
struct TrackLevel {
    std::string name;
    Loudness loudness;
};

/// Called with the number of tracks done and their total.
using MixProgress = std::function<void(int, int)>;

/// Called with the name of a track and what the mix holds of it, its hall and echoes excepted.
using TrackSink = std::function<void(const std::string&, const Stereo&)>;

/// All that a track may set but its curves and what it plays, with the defaults.
const std::vector<SettingDefault>& TrackDefaults();

/// The stretch in which the music drives the picture, from the master block of the score:
/// "pulse_first" and "pulse_last" (bars), "pulse_scene" (a bar in between that opens a scene).
BeatPulse PulseOf(const Score& score, std::string& message);

/// Plays all tracks of the score. On a mistake in the settings the message is set and the mix is
/// incomplete. `frames` is the length of the piece in samples; `levels`, unless null, receives
/// a measurement of every track in the order in which they are played, and `sink`, unless empty,
/// every track itself.
Mix PlayTracks(const Score& score, const BeatPulse& pulse, std::size_t frames,
               const MixProgress& progress, std::string& message,
               std::vector<TrackLevel>* levels = nullptr, const TrackSink& sink = {});

} // namespace Music
