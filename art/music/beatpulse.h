#pragma once

#include "art/music/audio.h"

#include <vector>

namespace Music {

/// Makes the lowest spectrum band follow the beat.
///
/// In the middle of the piece the picture flashes whenever the lowest of 64 spectrum bands of the
/// left channel reads below 0.03. That band looks at 128 samples only, 3 ms, so it shows nearly
/// the momentary value of the waveform's low end: any bass swings through zero twice a period
/// and would make it flicker. So, between two beats, the low end is held on one side of zero by
/// a slow plateau (the carrier), just as high as the music at that moment needs; the side
/// changes with every beat, which leaves no constant offset; and for some 30 ms at the beat the
/// low end is silent, long enough that no frame of a sixtieth of a second can miss it.
struct BeatPulse {
    double firstBeat = 0;      ///< seconds of the first beat
    int beats = 0;             ///< how many intervals between beats the plateau fills
    double secondsPerBeat = 1; ///< from beat to beat
    /// Beats that open a scene of the picture: their silence lies around the beat, not before
    /// it, so that the new scene still sees it.
    std::vector<int> sceneBeats;
    float margin = 0.055F; ///< mean of the waveform that is never undercut between beats

    /// Time of a beat, counted from 0.
    double TimeOf(int beat) const { return firstBeat + beat * secondsPerBeat; }

    /// Silences everything below about 500 Hz, half of what lies at 650 Hz and nothing above
    /// 830 Hz in the gap of every beat: more than the band sees need not be cut from a melody.
    void OpenGaps(Stereo& signal) const;
    /// The same at the scene beats alone: for the kick, which elsewhere begins after the gap.
    void OpenSceneGaps(Stereo& kick) const;
    /// Turns the polarity of a low-end track with the side the carrier is on.
    void FollowPolarity(Stereo& signal) const;
    /// Adds the carrier that `signal` needs, to both channels alike.
    void AddCarrier(Stereo& signal) const;

private:
    struct Gap {
        double from; ///< seconds: the low end is gone at this time
        double to;   ///< seconds: and begins to come back at this one
    };

    Gap GapOf(int beat) const;
    bool OpensScene(int beat) const;
    void OpenGap(std::vector<float>& channel, const Gap& gap) const;
    float Polarity(int beat) const { return beat % 2 == 0 ? 1.0F : -1.0F; }
};

/// Mean of the waveform around each sample as the lowest band of a 128-sample spectrum with a
/// triangle window sees it; that band reads its absolute value.
std::vector<float> LowestBandMean(const std::vector<float>& samples);

/// What the lowest band of a 128-sample spectrum with a triangle window reads at `first` (the
/// first of the 128 samples): a constant of full scale reads 1.0. Spectra that scale all bins
/// alike, so that a sine of full scale reads 1.0 in its own, show twice as much; the gaps are
/// deep enough and the plateaus high enough for both.
float LowestBand(const std::vector<float>& samples, std::size_t first);

} // namespace Music
