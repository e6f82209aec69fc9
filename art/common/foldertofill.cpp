#include "art/common/foldertofill.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace Art {

std::string FolderToFill::File(const std::string& name) {
    files.push_back(std::filesystem::path(folder) / name);
    return files.back();
}

int FolderToFill::Finish(bool written) const {
    if (!written)
        return EXIT_FAILURE;
    for (const std::string& file : files)
        std::printf("%s\n", file.c_str());
    return EXIT_SUCCESS;
}

} // namespace Art
