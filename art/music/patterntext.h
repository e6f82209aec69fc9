#pragma once

#include "art/music/score.h"

#include <string>

namespace Music {

/// Reads a whole text as one number of at most a million; false, leaving `value` alone, when it
/// is none.
bool ParseNumber(const std::string& text, double& value);

/// Appends a string of step or line signs (by the pattern's kind) to the pattern; false at a sign
/// that is none.
bool AddSteps(const std::string& signs, Pattern& pattern);

/// Appends one note of a tune, "E5:3", "-:2" or accented "E5:3!"; false when it is none.
bool AddTuneNote(std::string word, Pattern& pattern);

} // namespace Music
