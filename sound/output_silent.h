#pragma once

#include "sound/output.h"
#include "sound/position.h"

namespace Vell::Sound {

/// Plays to nobody, at the speed of any clock it is given: the machine's, or one that stands still
/// until it is moved by hand.
class SilentOutput : public Output {
public:
    SilentOutput(int rate, TimeSource time);

    std::int64_t FramesHeard() const override;

private:
    Position position;
};

} // namespace Vell::Sound
