#include "tools/stage/showfolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Stage {

namespace fs = std::filesystem;

ShowFolder::ShowFolder() {
    std::string name = fs::temp_directory_path() / "nimbrel_film_XXXXXX";
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot make a folder in " + fs::temp_directory_path().string());
    folder = name;
    fs::create_directory_symlink(fs::absolute("Data"), folder / "Data");
}

ShowFolder::~ShowFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::string ShowFolder::Log() const {
    std::ifstream file(folder / "Vell_log.html", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void EnterShowFolder() {
    static const ShowFolder show; // made before the log, and so gone after it
    fs::current_path(show.Folder());
}

} // namespace Stage
