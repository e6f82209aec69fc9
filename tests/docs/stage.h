#pragma once

#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <filesystem>
#include <string>

namespace Docs {

/// A copy of the tree in which commands are run as a reader of the pages would: with the programs
/// that are built already, a home, a folder for temporary files and a display of its own, and no
/// sound device. Nothing is built or installed there: `cmake` stands in for itself, takes what the
/// real one would take, and refuses presets and targets that there are not; every package counts
/// as installed. The real one is "$CMAKE".
///
/// Commands find one more program: "escape-after COMMAND..." presses Escape in the window of the
/// demo that the command starts, once it has drawn for a second.
class Stage {
public:
    Stage();

    /// The copy's root.
    const std::filesystem::path& Root() const { return root; }

    /// Runs a line of shell in the copy's root; after `patience` seconds it is ended.
    Tools::Ending Run(const std::string& line, double patience) const;

private:
    void CopyTree() const;
    void LinkBuilds() const;
    void CopyStandIns() const;

    ScratchDir scratch;
    const std::filesystem::path root;
    Tools::VirtualDisplay display;
};

/// Whether the art programs are built here; only the release build of ./test has them.
bool ArtIsBuilt();

} // namespace Docs
