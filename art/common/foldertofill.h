#pragma once

#include <string>
#include <vector>

namespace Art {

/// The folder that a program fills. It is there; the program's command line has seen to that.
class FolderToFill {
public:
    explicit FolderToFill(const std::string& path) : folder(path) {}

    /// Where the file of this name goes.
    std::string File(const std::string& name);

    /// `written` says whether all went well; then the paths of all files that were asked for go to
    /// standard output. The exit status of the program.
    int Finish(bool written) const;

private:
    std::string folder;
    std::vector<std::string> files;
};

} // namespace Art
