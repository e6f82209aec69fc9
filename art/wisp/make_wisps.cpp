#include "art/common/foldertofill.h"
#include "art/common/meshwriter.h"
#include "art/common/picture.h"
#include "art/wisp/wisp.h"
#include "tools/options/commandline.h"

#include <string>

namespace {

int Make(const Tools::Arguments& arguments) {
    constexpr int cellPixels = 128;
    Art::FolderToFill folder(arguments.operands[0]);
    bool written = true;
    for (const Art::WispKind& kind : Art::WispKinds()) {
        const std::string name = kind.name;
        // Mostly black: compressed it has an eighth of the size, and inflating it costs next to
        // nothing.
        written = written &&
                  Art::WritePng(folder.File(name + ".png"), Art::WispLight(kind, cellPixels), 3) &&
                  Art::WriteMesh(folder.File(name + ".xt3dstatic"), Art::WispMesh(kind));
    }
    return folder.Finish(written);
}

const Tools::Program program = {.name = "make_wisps",
                                .purpose = "Writes mesh and light of the three wisps into FOLDER.",
                                .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
                                           .example = "Data/Gfx/Wisp",
                                           .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
