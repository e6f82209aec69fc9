#include "tools/stage/scratch.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <unistd.h>

namespace fs = std::filesystem;

namespace Tools {

ScratchFolder::ScratchFolder() : owner(getpid()) {
    const fs::path parent = fs::temp_directory_path();
    std::string name = fs::absolute(parent / "nimbrel_XXXXXX");
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder can be made in " + parent.string());
    path = name;
}

ScratchFolder::~ScratchFolder() {
    if (getpid() != owner)
        return;
    std::error_code ignored; // what stays behind does no harm
    fs::remove_all(path, ignored);
}

ScratchWorkingFolder::ScratchWorkingFolder() : before(fs::current_path()) {
    fs::current_path(folder.Path());
}

ScratchWorkingFolder::~ScratchWorkingFolder() {
    std::error_code ignored; // it may be gone
    fs::current_path(before, ignored);
}

DemoFolder::DemoFolder(const fs::path& data) {
    fs::create_directory_symlink(fs::absolute(data), folder.Path() / "Data");
}

std::string DemoFolder::Log() const {
    return TextOf(folder.Path() / logFile);
}

void EnterDemoFolder() {
    static const DemoFolder folder; // made before the log, and so gone after it
    fs::current_path(folder.Path());
}

std::string TextOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace Tools
