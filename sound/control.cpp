#include "sound/control.h"

#include "sound/output_default.h"
#include "sound/output_silent.h"

#include <cmath>
#include <utility>

namespace Vell::Sound {

namespace {

OutputMaker& ChosenMaker() {
    static OutputMaker chosen;
    return chosen;
}

} // namespace

void HandTime::MoveTo(double seconds) {
    constexpr double nanosecondsPerSecond = 1e9;
    nanoseconds = std::llround(seconds * nanosecondsPerSecond);
}

void SetOutputMaker(OutputMaker maker) {
    ChosenMaker() = std::move(maker);
}

void PlayByHand(std::shared_ptr<const HandTime> time) {
    SetOutputMaker([time = std::move(time)](const std::shared_ptr<const Track>& track) {
        return std::make_unique<SilentOutput>(track->Rate(), [time] { return time->Now(); });
    });
}

std::unique_ptr<Output> MakeOutput(std::shared_ptr<const Track> track) {
    if (ChosenMaker())
        return ChosenMaker()(std::move(track));
    return MakeDefaultOutput(std::move(track));
}

} // namespace Vell::Sound
