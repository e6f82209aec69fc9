#include "tests/support/fake_time.h"

#include "tools/stage/time.h"

#include <memory>

namespace {

std::unique_ptr<Stage::Time> fakeTime; // none: the machine's

} // namespace

void SetFakeTime(double seconds) {
    SetTickingTime(seconds, 0.0);
}

void SetTickingTime(double seconds, double tick) {
    fakeTime = std::make_unique<Stage::HeldTime>(Stage::MicrosecondsOf(seconds),
                                                 Stage::MicrosecondsOf(tick));
}

void ClearFakeTime() {
    fakeTime.reset();
}

/// Takes the place of the C library's function in every executable that links this file: the
/// linker finds it first.
extern "C" int gettimeofday(timeval* time, void*) noexcept {
    return Stage::Tell(fakeTime ? fakeTime->Now() : Stage::RealTime().Now(), time);
}
