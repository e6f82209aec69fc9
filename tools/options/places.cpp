#include "tools/options/places.h"

#include "tools/options/wrongusage.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace Tools {

namespace {

namespace fs = std::filesystem;

/// The folder that the file lies in; "." for a bare name.
fs::path FolderOf(const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    return folder.empty() ? "." : folder;
}

/// Why no file can be made in the folder; empty when one can.
std::string WhyClosed(const fs::path& folder) {
    std::string probe = folder / ".nimbrel_XXXXXX";
    const int file = mkstemp(probe.data());
    if (file < 0)
        return std::generic_category().message(errno);
    close(file);
    unlink(probe.c_str());
    return {};
}

/// Throws unless a new file can be made in the folder, which has to be there.
void CheckOpen(const std::string& path, const fs::path& folder) {
    if (const std::string why = WhyClosed(folder); !why.empty())
        throw WrongUsage("cannot write " + path + ": the folder " + folder.string() +
                         " takes no new files (" + why + "); name another folder");
}

} // namespace

void CheckFileToWrite(const std::string& path) {
    const fs::path folder = FolderOf(path);
    std::error_code none;
    if (fs::is_directory(path, none))
        throw WrongUsage("cannot write " + path + ": it is a folder; name a file in it");
    if (!fs::exists(folder, none))
        throw WrongUsage("cannot write " + path + ": there is no folder " + folder.string() +
                         "; make it first, or name another");
    if (!fs::is_directory(folder, none))
        throw WrongUsage("cannot write " + path + ": " + folder.string() +
                         " is no folder; name another");
    CheckOpen(path, folder);
}

void CheckFileToRead(const std::string& path) {
    std::error_code none;
    if (!fs::exists(path, none))
        throw WrongUsage("cannot read " + path + ": there is no such file; name one that is there");
    if (fs::is_directory(path, none))
        throw WrongUsage("cannot read " + path + ": it is a folder; name a file in it");
    if (!std::ifstream(path))
        throw WrongUsage("cannot read " + path + ": " + std::generic_category().message(errno) +
                         "; name a file that you may read");
}

void CheckFolder(const std::string& path) {
    std::error_code none;
    if (!fs::exists(path, none))
        throw WrongUsage("cannot read " + path +
                         ": there is no such folder; name one that is there");
    if (!fs::is_directory(path, none))
        throw WrongUsage("cannot read " + path + ": it is no folder; name one");
}

void MakeFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error)
        throw WrongUsage("cannot make the folder " + path + " (" + error.message() +
                         "); name another");
    CheckOpen(path, path);
}

void CheckFolderToFill(const std::string& path) {
    std::error_code error;
    std::vector<fs::path> missing;
    for (fs::path folder = path; !folder.empty() && !fs::exists(folder, error);
         folder = folder.parent_path())
        missing.push_back(folder);
    MakeFolder(path);
    for (const fs::path& folder : missing)
        fs::remove(folder, error);
}

} // namespace Tools
