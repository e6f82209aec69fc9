// Makes the sheet that shows what the gallery's programs draw.

#include "tools/options/commandline.h"
#include "tools/picture/tiles.h"

#include <cstdlib>
#include <filesystem>

namespace {

constexpr int columns = 3;

int MakeSheet(const Tools::Arguments& arguments) {
    std::vector<Tools::Tile> tiles;
    tiles.reserve(arguments.operands.size() - 1);
    for (std::size_t i = 1; i < arguments.operands.size(); ++i) {
        const std::string& name = arguments.operands[i];
        tiles.push_back(
            {Tools::Halved(Tools::ReadPpm(name + ".ppm")), std::filesystem::path(name).filename()});
    }
    Tools::WritePng(Tools::MakeTiles(tiles, columns), arguments.operands[0]);
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "gallery_sheet",
    .purpose = "Puts the pictures NAME.ppm, halved, on one sheet in three columns.",
    .modes = {{.operands = {{"OUT.png", Tools::FileToWrite({".png"})},
                            {"NAME", Tools::AnyText("names of pictures"), Tools::Count::OneOrMore}},
               .example = "sheet.png 01_window 02_mesh",
               .run = MakeSheet}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
