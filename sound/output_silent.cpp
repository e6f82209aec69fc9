#include "sound/output_silent.h"

#include <utility>

namespace Vell::Sound {

SilentOutput::SilentOutput(int rate, TimeSource time) : position(rate, std::move(time)) {
    position.Start();
    position.RunFree();
}

std::int64_t SilentOutput::FramesHeard() const {
    return position.FramesHeard();
}

} // namespace Vell::Sound
