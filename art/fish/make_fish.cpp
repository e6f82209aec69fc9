#include "art/common/foldertofill.h"
#include "art/common/meshwriter.h"
#include "art/common/picture.h"
#include "art/fish/fishskin.h"
#include "art/fish/shoal.h"
#include "tools/options/commandline.h"

namespace {

int Make(const Tools::Arguments& arguments) {
    constexpr int skinHeight = 128;
    Art::FolderToFill folder(arguments.operands[0]);
    return folder.Finish(
        Art::WriteEnginePng(folder.File("fish.png"), Art::FishSkin(skinHeight), 3) &&
        Art::WriteMesh(folder.File("fish.xt3dstatic"), Art::FishMesh()));
}

const Tools::Program program = {
    .name = "make_fish",
    .purpose = "Writes the school's mesh and the skin of its fish into FOLDER.",
    .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
               .example = "Data/Gfx/Fish",
               .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
