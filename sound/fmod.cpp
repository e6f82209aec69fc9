#include "sound/fmod.h"

#include "sound/control.h"
#include "sound/mp3file.h"
#include "sound/player.h"

#include <algorithm>
#include <exception>
#include <memory>

namespace {

using Vell::Sound::Channel;
using Vell::Sound::Mp3File;
using Vell::Sound::Player;

constexpr int mostChannels = 64;
constexpr unsigned offeredModes =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;

} // namespace

struct FMOD_SYSTEM {
    std::shared_ptr<Player> player = std::make_shared<Player>();
};

/// Sounds may outlive their system: the player is only remembered in order to be stopped.
struct FMOD_SOUND {
    std::shared_ptr<const Mp3File> file;
    std::weak_ptr<Player> player;
};

namespace {

// A channel's handle is the address of the channel itself, under the interface's name for it.
FMOD_CHANNEL* HandleOf(Channel* channel) {
    return reinterpret_cast<FMOD_CHANNEL*>(channel);
}

Channel* ChannelOf(FMOD_CHANNEL* handle) {
    return reinterpret_cast<Channel*>(handle);
}

/// No exception may leave through the C interface. Those that can happen are all of one kind:
/// memory or a thread could not be had.
template <class Call>
FMOD_RESULT Guarded(Call call) {
    try {
        return call();
    } catch (const std::exception&) {
        return FMOD_FAILED_RESOURCES;
    }
}

FMOD_RESULT OpenSound(const FMOD_SYSTEM& system, const char* name, FMOD_SOUND** sound) {
    const std::shared_ptr<const Mp3File> file = Mp3File::Open(name);
    if (!file)
        return FMOD_FAILED_FILE;
    *sound = new FMOD_SOUND{file, system.player};
    return file->Damaged() ? FMOD_FAILED_DAMAGED : FMOD_OK;
}

FMOD_RESULT Play(const FMOD_SYSTEM& system, const FMOD_SOUND& sound, FMOD_CHANNEL** channel) {
    *channel = HandleOf(system.player->Play(sound.file, Vell::Sound::MakeOutput));
    return *channel ? FMOD_OK : FMOD_FAILED_RESOURCES;
}

} // namespace

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    if (!system)
        return FMOD_FAILED_ARGUMENT;
    *system = nullptr;
    return Guarded([&] {
        *system = new FMOD_SYSTEM;
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_SetOutput(FMOD_SYSTEM* system, int output) {
    if (!system || output != FMOD_OUTPUTTYPE_ALSA)
        return FMOD_FAILED_ARGUMENT;
    return system->player->IsOpen() ? FMOD_FAILED_ORDER : FMOD_OK;
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int channels, unsigned int flags,
                             void* extraDriverData) {
    if (!system || channels < 1 || channels > mostChannels || flags != FMOD_INIT_NORMAL ||
        extraDriverData)
        return FMOD_FAILED_ARGUMENT;
    if (system->player->IsOpen())
        return FMOD_FAILED_ORDER;
    return Guarded([&] {
        system->player->Open(channels);
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, unsigned int mode,
                                     void* extendedInfo, FMOD_SOUND** sound) {
    if (!sound)
        return FMOD_FAILED_ARGUMENT;
    *sound = nullptr;
    if (!system || !name || (mode & ~offeredModes) != 0 || extendedInfo)
        return FMOD_FAILED_ARGUMENT;
    if (!system->player->IsOpen())
        return FMOD_FAILED_ORDER;
    return Guarded([&] { return OpenSound(*system, name, sound); });
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, int channelIndex, FMOD_SOUND* sound,
                                  int paused, FMOD_CHANNEL** channel) {
    if (!channel)
        return FMOD_FAILED_ARGUMENT;
    *channel = nullptr;
    // Without a call that would let it go on, a paused channel could never be heard.
    if (!system || channelIndex != FMOD_CHANNEL_FREE || !sound || paused != 0)
        return FMOD_FAILED_ARGUMENT;
    if (!system->player->IsOpen())
        return FMOD_FAILED_ORDER;
    return Guarded([&] { return Play(*system, *sound, channel); });
}

FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) {
    if (!system)
        return FMOD_FAILED_ARGUMENT;
    return system->player->IsOpen() ? FMOD_OK : FMOD_FAILED_ORDER;
}

FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* values, int count,
                                     int channelOffset, int windowType) {
    if (!values || !Vell::Sound::Spectrum::Offers(count))
        return FMOD_FAILED_ARGUMENT;
    std::fill_n(values, count, 0.0f);
    if (!channel || channelOffset < 0 || channelOffset >= Vell::Sound::sides ||
        !Vell::Sound::Spectrum::OffersWindow(windowType))
        return FMOD_FAILED_ARGUMENT;
    return Guarded([&] {
        ChannelOf(channel)->GetSpectrum(channelOffset, {values, static_cast<std::size_t>(count)},
                                        static_cast<Vell::Sound::Window>(windowType));
        return FMOD_OK;
    });
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    if (!sound)
        return FMOD_FAILED_ARGUMENT;
    if (const auto player = sound->player.lock())
        player->Stop(sound->file.get());
    delete sound;
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) {
    if (!system)
        return FMOD_FAILED_ARGUMENT;
    if (!system->player->IsOpen())
        return FMOD_FAILED_ORDER;
    system->player->Close();
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) {
    if (!system)
        return FMOD_FAILED_ARGUMENT;
    delete system;
    return FMOD_OK;
}
