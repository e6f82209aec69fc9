#include "sound/output_default.h"

#include "sound/device_alsa.h"
#include "sound/output_device.h"

#include <utility>

namespace Vell::Sound {

std::unique_ptr<Output> MakeDefaultOutput(std::shared_ptr<const Track> track) {
    return std::make_unique<DeviceOutput>(std::move(track), std::make_unique<AlsaDevice>(),
                                          SteadyTime);
}

} // namespace Vell::Sound
