// gallery_sheet OUT.png NAME...: puts the pictures NAME.ppm, halved, on one sheet in three columns.

#include "tools/picture/tiles.h"

#include <cstdio>
#include <exception>
#include <filesystem>

namespace {

constexpr int columns = 3;

void MakeSheet(const char* out, const std::vector<std::string>& names) {
    std::vector<Tools::Tile> tiles;
    for (const std::string& name : names)
        tiles.push_back(
            {Tools::Halved(Tools::ReadPpm(name + ".ppm")), std::filesystem::path(name).filename()});
    Tools::WritePng(Tools::MakeTiles(tiles, columns), out);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::fprintf(stderr, "gallery_sheet OUT.png NAME...\n");
        return 2;
    }
    try {
        MakeSheet(arguments[1], {arguments + 2, arguments + count});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
