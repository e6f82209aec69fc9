#include "tools/stage/newfile.h"

#include <system_error>

namespace Stage {

namespace fs = std::filesystem;

NewFile::NewFile(const std::string& finalPath)
    : path(finalPath),
      unfinished(fs::path(path).replace_extension(".part" + path.extension().string())) {}

NewFile::~NewFile() {
    std::error_code ignored;
    fs::remove(unfinished, ignored);
}

void NewFile::Complete() const {
    fs::rename(unfinished, path);
}

} // namespace Stage
