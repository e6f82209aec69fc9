// Uses the sound library from start to stop, compiled for the thread sanitizer, which ends the
// program with an error when two threads touch the same data without order. With "--race" it makes
// such an error itself, to show that the sanitizer is at work.

#include "sound/control.h"
#include "tests/sound/alsa_setup.h"
#include "tests/sound/mp3_maker.h"
#include "tests/support/scratch.h"

#include <fmod.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <thread>

namespace {

/// Plays half a second on the device of `configuration`, asking for the spectrum all the while,
/// and stops after `duration`. Returns whether anything was heard.
bool Play(const std::string& configuration, std::chrono::milliseconds duration) {
    const AlsaSetup setup(configuration);
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;
    FMOD_System_Create(&system);
    FMOD_System_Init(system, 10, FMOD_INIT_NORMAL, nullptr);
    FMOD_System_CreateStream(system, "track.mp3", FMOD_LOOP_OFF, nullptr, &sound);
    FMOD_System_PlaySound(system, FMOD_CHANNEL_FREE, sound, 0, &channel);
    bool heard = false;
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end) {
        std::array<float, 64> values{};
        FMOD_System_Update(system);
        FMOD_Channel_GetSpectrum(channel, values.data(), 64, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE);
        heard = heard || values[10] > 0.1f;
    }
    FMOD_Sound_Release(sound);
    FMOD_System_Close(system);
    FMOD_System_Release(system);
    return heard;
}

std::string PacedDevice(const std::string& settings) {
    return std::string("pcm_type.paced { lib \"") + PACED_PCM_LIBRARY + "\" }\n" +
           "pcm.!default { type paced file out.raw " + settings + " }";
}

void Race() {
    int shared = 0;
    std::thread other([&] { ++shared; });
    ++shared;
    other.join();
    std::printf("%d\n", shared);
}

/// The whole track, the middle of it, and every way in which a device can fail.
bool PlayEverything() {
    using std::chrono::milliseconds;
    WriteFile("track.mp3", EncodeMp3(Sine(22050, 10 * 44100.0 / 128, 16384.0)));
    bool heard = true;
    heard &= Play(PacedDevice(""), milliseconds(700));
    heard &= Play(PacedDevice(""), milliseconds(200));
    heard &= Play(PacedDevice("dry_at 4410"), milliseconds(300));
    heard &= Play(PacedDevice("gone_at 4410"), milliseconds(300));
    heard &= Play(nullDevice, milliseconds(300));
    heard &= Play(fileDevice, milliseconds(300));
    heard &= Play(missingCard, milliseconds(300));
    for (int i = 0; i < 10; ++i)
        Play(PacedDevice(""), milliseconds(0));
    return heard;
}

} // namespace

int main(int count, char** arguments) {
    if (count > 1 && std::string_view(arguments[1]) == "--race") {
        Race();
        return 0;
    }
    const ScratchDir scratch;
    if (!PlayEverything()) {
        std::puts("nothing was heard");
        return 1;
    }
    return 0;
}
