#include "art/common/foldertofill.h"
#include "art/common/picture.h"
#include "art/water/waves.h"
#include "tools/options/commandline.h"

namespace {

int Make(const Tools::Arguments& arguments) {
    constexpr int tileSize = 1024;
    // 96: finer than the eye can follow in a shift of the mirror image by half a pixel.
    constexpr int jpegQuality = 96;
    Art::FolderToFill folder(arguments.operands[0]);
    const Art::Picture normals = Art::NormalPicture(Art::MakeWaves(tileSize));
    return folder.Finish(Art::WriteEngineJpeg(folder.File("water.jpg"), normals, jpegQuality));
}

const Tools::Program program = {
    .name = "make_water",
    .purpose = "Writes the normal map of the sea into FOLDER.",
    .modes = {
        {.operands = {{"FOLDER", Tools::FolderToFill()}}, .example = "Data/Gfx", .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
