#pragma once

#include "sound/mp3file.h"
#include "sound/output.h"
#include "sound/spectrum.h"

#include <vector>

namespace Vell::Sound {

/// Plays at most one track at a time and measures what is heard of it.
class Channel {
public:
    /// Plays `toPlay` from its start, in the place of any other. When the maker throws, or memory
    /// or a thread cannot be had, the channel plays nothing.
    void Play(std::shared_ptr<const Mp3File> toPlay, const OutputMaker& makeOutput);
    void Stop();

    /// Whether a track is playing that has not been heard to its end.
    bool IsPlaying() const;

    /// Whether `other` is the file that plays here, or played last and was not stopped.
    bool Has(const Mp3File* other) const { return file.get() == other; }

    /// Spectrum of one side (0 or 1) of what is heard now; all zero when nothing plays.
    /// See Spectrum::Measure().
    void GetSpectrum(int side, std::span<float> values, Window window);

private:
    std::shared_ptr<const Mp3File> file;
    std::shared_ptr<const Track> track; ///< what is decoded of it, for this channel alone
    std::unique_ptr<Output> output;     ///< null when stopped
    Spectrum spectrum;
};

/// A number of channels, of which each has an output of its own: ALSA mixes what they play.
/// Channels stay valid for the player's life, whether it is open or not.
class Player {
public:
    /// Offers `channels` channels from now on.
    void Open(int channels);

    /// Stops every channel.
    void Close();

    bool IsOpen() const { return offered > 0; }

    /// Plays on a channel that is not playing, which is returned; null when there is none.
    Channel* Play(std::shared_ptr<const Mp3File> file, const OutputMaker& makeOutput);

    /// Stops every channel that plays `file`.
    void Stop(const Mp3File* file);

private:
    std::vector<std::unique_ptr<Channel>> channels; ///< only grows, so that pointers stay valid
    std::size_t offered = 0;                        ///< how many of them may play; 0 when closed
};

} // namespace Vell::Sound
