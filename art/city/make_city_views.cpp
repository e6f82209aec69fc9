#include "art/city/viewblock.h"
#include "tools/options/commandline.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool WriteText(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    return static_cast<bool>(file.flush());
}

int Make(const Tools::Arguments& arguments) {
    const std::string path = arguments.operands[0] + "/shader.vert";
    const auto made = Art::WithViewFunctions(ReadText(path), Art::ViewFunctions(Show::flights));
    if (!made)
        throw std::runtime_error(path +
                                 ": expected one block of generated lines, found none or several");
    if (!WriteText(path, *made))
        throw std::runtime_error(path + " cannot be written");
    std::printf("%s: the boxes of %zu flights\n", path.c_str(), std::size(Show::flights));
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "make_city_views",
    .purpose =
        "Writes into FOLDER/shader.vert, the city's material, how it knows from which flight it\n"
        "is seen. The rest of the file, which must be there, stays as it is.",
    .modes = {{.operands = {{"FOLDER", Tools::FolderToRead()}},
               .example = "Data/Gfx/City",
               .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
