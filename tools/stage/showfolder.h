#pragma once

#include <filesystem>
#include <string>

namespace Stage {

/// A folder to play the show in: it has the Data/ of the working directory, and takes the demo's
/// log in the place of the viewer's. Gone with the object.
class ShowFolder {
public:
    ShowFolder(); ///< throws std::runtime_error when no folder can be made
    ~ShowFolder();
    ShowFolder(const ShowFolder&) = delete;
    ShowFolder& operator=(const ShowFolder&) = delete;

    const std::filesystem::path& Folder() const { return folder; }

    std::string Log() const; ///< the text of the demo's log; empty when there is none

private:
    std::filesystem::path folder;
};

/// Enters such a folder for good, for a show in this process: the demo's log gets its foot when the
/// process ends, which then must not stand in the viewer's folder. Relative paths mean nothing
/// afterwards.
void EnterShowFolder();

} // namespace Stage
