#pragma once

#include <filesystem>
#include <string>

#include <sys/types.h>

namespace Tools {

/// A temporary folder of one's own, empty at first; gone with the object and all that is in it.
/// Links in it go, what they lead to stays. A child process that has a copy of the object leaves
/// the folder alone.
class ScratchFolder {
public:
    /// In the system's folder for such (TMPDIR, or "/tmp"), which has to be there. Throws
    /// std::runtime_error when no folder can be made in it.
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// Absolute.
    const std::filesystem::path& Path() const { return path; }

private:
    std::filesystem::path path;
    pid_t owner; ///< the process that made it
};

/// A temporary folder that is the working folder as long as it is there; the one before is so again
/// afterwards.
class ScratchWorkingFolder {
public:
    ScratchWorkingFolder(); ///< throws std::runtime_error when no folder can be made
    ~ScratchWorkingFolder();
    ScratchWorkingFolder(const ScratchWorkingFolder&) = delete;
    ScratchWorkingFolder& operator=(const ScratchWorkingFolder&) = delete;

    const std::filesystem::path& Path() const { return folder.Path(); } ///< absolute

private:
    std::filesystem::path before;
    ScratchFolder folder;
};

/// A temporary folder to play the show in: its "Data" is a link to the demo's files, and it takes
/// the demo's log in the place of the viewer's.
class DemoFolder {
public:
    /// `data` is the folder that is meant, by default that of the working folder; it need not be
    /// there. Throws std::runtime_error when no folder can be made.
    explicit DemoFolder(const std::filesystem::path& data = "Data");

    const std::filesystem::path& Path() const { return folder.Path(); } ///< absolute

    std::string Log() const; ///< the text of the demo's log page; empty when there is none

private:
    ScratchFolder folder;
};

/// Enters a folder to play the show in for good, for a show in this process: the demo's log gets
/// its foot when the process ends, which then must not stand in the viewer's folder. Relative paths
/// mean nothing afterwards. The folder goes when the process exits.
void EnterDemoFolder();

/// The name of the page that the demo leaves in its working folder.
constexpr const char* logFile = "Vell_log.html";

/// All that the file holds; empty when it cannot be read.
std::string TextOf(const std::filesystem::path& path);

} // namespace Tools
