#pragma once

#include "sound/output.h"

namespace Vell::Sound {

/// Makes what a track is heard through unless somebody chose otherwise (SetOutputMaker()): ALSA's
/// default device, and in a page the browser's. Throws as an OutputMaker does.
std::unique_ptr<Output> MakeDefaultOutput(std::shared_ptr<const Track> track);

} // namespace Vell::Sound
