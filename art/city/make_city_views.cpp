#include "art/city/viewblock.h"
#include "art/common/options.h"

#include <cstdio>
#include <fstream>
#include <iterator>

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

} // namespace

int main(int count, char** arguments) {
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_city_views",
         .purpose = "Writes into FOLDER/shader.vert, the city's material, how it knows from which "
                    "flight it\n"
                    "is seen. The rest of the file, which must be there, stays as it is."},
        count, arguments, status);
    if (!operands)
        return status;
    const std::string path = operands->front() + "/shader.vert";
    const auto made = Art::WithViewFunctions(ReadText(path), Art::ViewFunctions(Show::flights));
    if (!made) {
        std::fprintf(stderr, "%s: expected one block of generated lines, found none or several\n",
                     path.c_str());
        return 1;
    }
    if (!WriteText(path, *made)) {
        std::fprintf(stderr, "%s cannot be written\n", path.c_str());
        return 1;
    }
    std::printf("%s: the boxes of %zu flights\n", path.c_str(), std::size(Show::flights));
    return 0;
}
