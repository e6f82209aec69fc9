#pragma once

#include "tools/doctor/apart.h"
#include "tools/doctor/row.h"

namespace Doctor {

/// Looks at what ALSA's device "default" is, opens it as the demo does and gives it silence for a
/// moment, to see how long it holds that back: to be run apart. Nothing is heard.
void LookAtSound(const Notebook& notebook);

/// The row about the sound, from what LookAtSound() noted.
Row SoundRow(const Apart& look);

} // namespace Doctor
