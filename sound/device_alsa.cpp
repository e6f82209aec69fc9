#include "sound/device_alsa.h"

#include "sound/track.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace Vell::Sound {

namespace {

using std::chrono::milliseconds;

// Short periods keep the reported position fresh; a tenth of a second in the buffer outlasts the
// moments in which the picture takes all cores. The buffer does not delay the start: the device
// begins with its oldest frame as soon as it is full, which takes no time.
constexpr unsigned periodTime = 10'000;  // microseconds
constexpr unsigned bufferTime = 100'000; // microseconds
constexpr milliseconds longestWait{100}; // for room in the buffer

constexpr const char* names[] = {"default", "plug:default"};

/// Takes ALSA's messages and drops them: the demo prints nothing on the terminal.
// NOLINTNEXTLINE(cert-dcl50-cpp): ALSA calls it so
void Ignore(const char*, int, const char*, int, const char*, ...) {}

bool ChooseFormat(snd_pcm_t* pcm, snd_pcm_hw_params_t* hardware, unsigned rate) {
    return snd_pcm_hw_params_any(pcm, hardware) >= 0 &&
           snd_pcm_hw_params_set_rate_resample(pcm, hardware, 1) >= 0 &&
           snd_pcm_hw_params_set_access(pcm, hardware, SND_PCM_ACCESS_RW_INTERLEAVED) >= 0 &&
           snd_pcm_hw_params_set_format(pcm, hardware, SND_PCM_FORMAT_S16) >= 0 &&
           snd_pcm_hw_params_set_channels(pcm, hardware, sides) >= 0 &&
           snd_pcm_hw_params_set_rate(pcm, hardware, rate, 0) >= 0;
}

bool ChooseSizes(snd_pcm_t* pcm, snd_pcm_hw_params_t* hardware, snd_pcm_uframes_t& period,
                 snd_pcm_uframes_t& buffer) {
    unsigned wantedPeriod = periodTime;
    unsigned wantedBuffer = bufferTime;
    return snd_pcm_hw_params_set_period_time_near(pcm, hardware, &wantedPeriod, nullptr) >= 0 &&
           snd_pcm_hw_params_set_buffer_time_near(pcm, hardware, &wantedBuffer, nullptr) >= 0 &&
           snd_pcm_hw_params(pcm, hardware) >= 0 &&
           snd_pcm_hw_params_get_period_size(hardware, &period, nullptr) >= 0 &&
           snd_pcm_hw_params_get_buffer_size(hardware, &buffer) >= 0 && period > 0;
}

/// Starts when the buffer holds all the whole periods that go into it; wakes the writer when there
/// is room for one.
bool ChooseThresholds(snd_pcm_t* pcm, snd_pcm_uframes_t period, snd_pcm_uframes_t buffer) {
    snd_pcm_sw_params_t* software = nullptr;
    snd_pcm_sw_params_alloca(&software);
    return snd_pcm_sw_params_current(pcm, software) >= 0 &&
           snd_pcm_sw_params_set_start_threshold(pcm, software, buffer - buffer % period) >= 0 &&
           snd_pcm_sw_params_set_avail_min(pcm, software, period) >= 0 &&
           snd_pcm_sw_params(pcm, software) >= 0;
}

} // namespace

void AlsaDevice::Closer::operator()(snd_pcm_t* open) const {
    snd_pcm_drop(open);
    snd_pcm_close(open);
}

bool AlsaDevice::Open(int rate) {
    snd_lib_error_set_handler(Ignore);
    for (const char* name : names)
        if (OpenAs(name, static_cast<unsigned>(rate)))
            return true;
    return false;
}

bool AlsaDevice::OpenAs(const char* name, unsigned rate) {
    // Not blocking: a device that somebody else holds answers at once, and one that dies cannot
    // hold the thread for longer than the waits below.
    snd_pcm_t* opened = nullptr;
    if (snd_pcm_open(&opened, name, SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK) < 0)
        return false;
    pcm.reset(opened);
    snd_pcm_hw_params_t* hardware = nullptr;
    snd_pcm_hw_params_alloca(&hardware);
    if (ChooseFormat(opened, hardware, rate) && ChooseSizes(opened, hardware, period, buffer) &&
        ChooseThresholds(opened, period, buffer) && TakeDescriptors())
        return true;
    pcm.reset();
    return false;
}

/// What tells that there is room.
bool AlsaDevice::TakeDescriptors() {
    const int count = snd_pcm_poll_descriptors_count(pcm.get());
    descriptors.resize(static_cast<std::size_t>(std::max(count, 0)));
    return count > 0 && snd_pcm_poll_descriptors(pcm.get(), descriptors.data(),
                                                 static_cast<unsigned>(count)) == count;
}

std::int64_t AlsaDevice::PeriodFrames() const {
    return static_cast<std::int64_t>(period);
}

std::int64_t AlsaDevice::BufferFrames() const {
    return static_cast<std::int64_t>(buffer);
}

Device::Answer AlsaDevice::Write(const std::int16_t* frames, std::int64_t count) {
    const auto wanted = static_cast<snd_pcm_uframes_t>(count);
    const snd_pcm_sframes_t result = snd_pcm_writei(pcm.get(), frames, wanted);
    if (result > 0)
        return {Outcome::Taken, result};
    if (result == 0 || result == -EAGAIN)
        return {Outcome::Full, 0};
    const bool recovered = snd_pcm_recover(pcm.get(), static_cast<int>(result), 1) == 0;
    return {recovered ? Outcome::Recovered : Outcome::Lost, 0};
}

// Not by snd_pcm_wait(), which begins its time anew whenever the device wakes it for nothing: one
// that stands still while its timer goes on would hold it for ever. What goes wrong here, the next
// write will tell.
void AlsaDevice::Wait() {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + longestWait;
    unsigned short events = 0;
    while (events == 0) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now()).count();
        const auto count = static_cast<unsigned>(descriptors.size());
        if (left <= 0 || poll(descriptors.data(), count, static_cast<int>(left)) <= 0 ||
            snd_pcm_poll_descriptors_revents(pcm.get(), descriptors.data(), count, &events) < 0)
            return;
    }
}

std::int64_t AlsaDevice::Delay() {
    snd_pcm_sframes_t delay = 0;
    return snd_pcm_delay(pcm.get(), &delay) == 0 ? delay : 0;
}

bool AlsaDevice::Drain() {
    return snd_pcm_drain(pcm.get()) != -EAGAIN;
}

} // namespace Vell::Sound
