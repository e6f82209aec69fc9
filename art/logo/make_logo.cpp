#include "art/common/foldertofill.h"
#include "art/common/picture.h"
#include "art/logo/logo.h"
#include "tools/options/commandline.h"

namespace {

int Make(const Tools::Arguments& arguments) {
    constexpr int jpegQuality = 97; // thin light strokes on dark ground show every artefact
    Art::FolderToFill folder(arguments.operands[0]);
    return folder.Finish(
        Art::WriteEngineJpeg(folder.File("logo.jpg"), Art::TitleTexture(), jpegQuality));
}

const Tools::Program program = {.name = "make_logo",
                                .purpose = "Writes the title picture into FOLDER.",
                                .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
                                           .example = "Data/Gfx/Logo",
                                           .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
