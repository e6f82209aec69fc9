#include "tools/stage/stage.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Film {

namespace fs = std::filesystem;

Stage::Stage() {
    std::string name = fs::temp_directory_path() / "nimbrel_film_XXXXXX";
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot make a folder in " + fs::temp_directory_path().string());
    folder = name;
    fs::create_directory_symlink(fs::absolute("Data"), folder / "Data");
}

Stage::~Stage() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::string Stage::Log() const {
    std::ifstream file(folder / "Vell_log.html", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void EnterStage() {
    static const Stage stage; // made before the log, and so gone after it
    fs::current_path(stage.Folder());
}

} // namespace Film
