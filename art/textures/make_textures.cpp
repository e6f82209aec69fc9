#include "art/textures/textures.h"
#include "tools/options/commandline.h"

namespace {

int Make(const Tools::Arguments& arguments) {
    Art::FolderToFill folder(arguments.operands[0]);
    return folder.Finish(Art::WriteTextures(folder));
}

const Tools::Program program = {.name = "make_textures",
                                .purpose = "Paints the city's textures into FOLDER.",
                                .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
                                           .example = "Data/Gfx/City",
                                           .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
