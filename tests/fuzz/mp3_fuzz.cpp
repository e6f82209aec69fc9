// Tracks: opened, played by hand over their beginning, and asked for their spectrum.

#include "sound/control.h"
#include "sound/fmod.h"
#include "tests/fuzz/memoryfile.h"

#include <array>
#include <cmath>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file(bytes, size);
    const auto time = std::make_shared<Vell::Sound::HandTime>();
    Vell::Sound::PlayByHand(time);
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
    FMOD_System_Create(&system);
    FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr);
    FMOD_System_CreateStream(system, file.Path().c_str(), FMOD_SOFTWARE, nullptr, &sound);
    FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel);
    std::array<float, 64> spectrum{};
    for (const double moment : {0.02, 0.05, 1.0}) {
        time->MoveTo(moment);
        FMOD_Channel_GetSpectrum(channel, spectrum.data(), static_cast<int>(spectrum.size()), 0,
                                 FMOD_DSP_FFT_WINDOW_TRIANGLE);
        for (const float value : spectrum)
            if (!std::isfinite(value))
                std::abort();
    }
    FMOD_Sound_Release(sound);
    FMOD_System_Release(system);
    return 0;
}
