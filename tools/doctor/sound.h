#pragma once

#include "tools/doctor/row.h"
#include "tools/stage/isolated.h"

namespace Doctor {

/// Looks at what ALSA's device "default" is, opens it as the demo does and gives it silence for a
/// moment, to see how long it holds that back: to be run in isolation. Nothing is heard.
void CollectSoundFacts(const Tools::Report& report);

/// The row about the sound, from what CollectSoundFacts() noted.
Row SoundRow(const Tools::IsolatedRun& run);

} // namespace Doctor
