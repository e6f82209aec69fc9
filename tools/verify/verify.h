#pragma once

#include <string>

namespace Verify {

/// Draws 60 frames, spread evenly over the show, and compares them with those in `folder`. Tells on
/// standard output whether they are the same, within what different machines' rounding makes, or
/// else at which moment and in which pass the show differs first; with a `pictureName` it then
/// writes a PNG of that frame: the reference, what was drawn, and eight times their difference.
///
/// Answers the exit status: 0 unless they differ. Throws std::runtime_error when they cannot be
/// compared, and as PlayShow() does. Once a process, which then has left its working directory.
int VerifyShow(const std::string& folder, const std::string& pictureName);

/// Draws them and writes them to `folder` as the references from now on. Likewise.
void RenewReferences(const std::string& folder);

} // namespace Verify
