#include "sound/output_device.h"

#include <algorithm>
#include <utility>

namespace Vell::Sound {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds longestStart{50};
constexpr milliseconds pauseAhead{10};
constexpr milliseconds pauseDraining{5};
constexpr milliseconds longestDrain{2000}; // far beyond any buffer: a device that hangs is left

// Ten writes, and waits of 100 ms, without a frame taken: nobody is there to play it.
constexpr int mostIdleWrites = 10;

} // namespace

DeviceOutput::DeviceOutput(std::shared_ptr<const Track> toPlay, std::unique_ptr<Device> onDevice,
                           TimeSource time)
    : track(std::move(toPlay)),
      position(track->Rate(), std::move(time)),
      device(std::move(onDevice)) {
    if (!device->Open(track->Rate())) {
        position.Start();
        position.RunFree();
        return;
    }
    thread = std::thread(&DeviceOutput::Run, this);
    std::unique_lock lock(mutex);
    changed.wait_for(lock, longestStart, [this] { return running; });
}

DeviceOutput::~DeviceOutput() {
    {
        const std::lock_guard lock(mutex);
        stop = true;
    }
    changed.notify_all();
    if (thread.joinable())
        thread.join();
}

std::int64_t DeviceOutput::FramesHeard() const {
    return position.FramesHeard();
}

/// The thread: supplies the device to the track's end, lets it play out and closes it.
void DeviceOutput::Run() {
    position.Start();
    if (Feed())
        Drain();
    else
        position.RunFree();
    Announce();
    device.reset();
}

/// Returns false when the device is lost.
bool DeviceOutput::Feed() {
    while (next < track->Frames() && !Stopped()) {
        if (TooFarAhead())
            Pause(pauseAhead);
        else if (!Continue(WriteNext()))
            return false;
    }
    return true;
}

bool DeviceOutput::TooFarAhead() const {
    return next - position.FramesByClock() >= 2 * device->BufferFrames();
}

Device::Answer DeviceOutput::WriteNext() {
    const std::int64_t count = std::min(device->PeriodFrames(), track->Frames() - next);
    period.resize(static_cast<std::size_t>(count * sides));
    track->Read(next, period);
    return device->Write(period.data(), count);
}

/// Takes note of what a write brought; false when the device is lost.
bool DeviceOutput::Continue(Device::Answer answer) {
    idleWrites = answer.outcome == Device::Outcome::Taken ? 0 : idleWrites + 1;
    if (answer.outcome == Device::Outcome::Lost || idleWrites >= mostIdleWrites)
        return false;
    next += answer.taken;
    if (answer.outcome == Device::Outcome::Recovered)
        next = std::clamp<std::int64_t>(position.FramesByClock(), 0, track->Frames());
    Report(answer.outcome);
    if (answer.outcome == Device::Outcome::Full)
        device->Wait();
    return true;
}

void DeviceOutput::Report(Device::Outcome outcome) {
    const std::int64_t delay = device->Delay();
    position.Report(next, delay);
    // A full device plays: its first frame is heard as soon as it holds back no more than it was
    // given. One that is still being filled must have let go of a frame to show that it plays.
    if (outcome == Device::Outcome::Full ? next >= delay : next > delay)
        Announce();
}

void DeviceOutput::Drain() {
    milliseconds waited{0};
    while (!Stopped() && !device->Drain() && waited < longestDrain) {
        Pause(pauseDraining);
        waited += pauseDraining;
    }
}

void DeviceOutput::Announce() {
    {
        const std::lock_guard lock(mutex);
        running = true;
    }
    changed.notify_all();
}

bool DeviceOutput::Stopped() {
    const std::lock_guard lock(mutex);
    return stop;
}

/// Waits, unless and until the thread is to end.
void DeviceOutput::Pause(milliseconds duration) {
    std::unique_lock lock(mutex);
    changed.wait_for(lock, duration, [this] { return stop; });
}

} // namespace Vell::Sound
