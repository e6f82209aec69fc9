#pragma once

#include "sound/device.h"

#include <alsa/asoundlib.h>

#include <memory>
#include <vector>

#include <poll.h>

namespace Vell::Sound {

/// ALSA's device "default", with a buffer of 100 ms in periods of 10 ms.
///
/// Where "default" does not take the track's rate or 16 bit stereo, the same device is used through
/// ALSA's converter, "plug:default". ALSA's own messages are kept off the terminal, for the whole
/// process, from the first Open() on.
class AlsaDevice : public Device {
public:
    bool Open(int rate) override;
    std::int64_t PeriodFrames() const override;
    std::int64_t BufferFrames() const override;
    Answer Write(const std::int16_t* frames, std::int64_t count) override;
    void Wait() override;
    std::int64_t Delay() override;
    bool Drain() override;

private:
    struct Closer {
        void operator()(snd_pcm_t* open) const;
    };

    bool OpenAs(const char* name, unsigned rate);
    bool TakeDescriptors();

    std::unique_ptr<snd_pcm_t, Closer> pcm;
    snd_pcm_uframes_t period = 0; ///< frames
    snd_pcm_uframes_t buffer = 0; ///< frames
    std::vector<pollfd> descriptors;
};

} // namespace Vell::Sound
