#pragma once

#include "sound/device.h"
#include "sound/output.h"
#include "sound/position.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace Vell::Sound {

/// Plays a track on a device, which a thread of this object's own keeps supplied.
///
/// A device that cannot be opened, or is lost on the way, is replaced by silence: the position
/// goes on at the track's rate. A device that ran dry goes on at the frame that the clock has
/// reached, not at the one where it stopped, so that the music stays with the picture.
///
/// A device that takes frames faster than it can play them is held back to twice its buffer ahead
/// of the clock, far enough for a device whose own clock is a little fast never to notice.
class DeviceOutput : public Output {
public:
    /// Returns when the device has been heard to play, or is replaced by silence, but 50 ms after
    /// it was opened at the latest. Throws std::system_error when no thread can be had.
    DeviceOutput(std::shared_ptr<const Track> track, std::unique_ptr<Device> device,
                 TimeSource time);
    ~DeviceOutput() override;
    DeviceOutput(const DeviceOutput&) = delete;
    DeviceOutput& operator=(const DeviceOutput&) = delete;

    std::int64_t FramesHeard() const override;

private:
    void Run();
    bool Feed();
    bool Continue(Device::Answer answer);
    void Report(Device::Outcome outcome);
    void Drain();
    void Announce();
    bool Stopped();
    void Pause(std::chrono::milliseconds duration);
    bool TooFarAhead() const;
    Device::Answer WriteNext();

    const std::shared_ptr<const Track> track;
    Position position;

    // Used by the thread alone once it runs:
    std::unique_ptr<Device> device;   ///< null once it is lost or played out
    std::int64_t next = 0;            ///< first frame that the device has not taken
    std::vector<std::int16_t> period; ///< what it is given next
    int idleWrites = 0;               ///< writes since the device last took anything

    std::mutex mutex;                ///< guards the two below
    bool stop = false;               ///< whether the thread is to end
    bool running = false;            ///< whether the device plays, or is known not to
    std::condition_variable changed; ///< tells of either
    std::thread thread;              ///< last: it uses all of the above
};

} // namespace Vell::Sound
