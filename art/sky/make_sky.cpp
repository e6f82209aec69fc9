#include "art/common/foldertofill.h"
#include "art/common/picture.h"
#include "art/sky/dusk.h"
#include "art/sky/faces.h"
#include "tools/options/commandline.h"
#include "tools/progress/progress.h"

namespace {

int Make(const Tools::Arguments& arguments) {
    constexpr int faceSize = 512;
    // 97 keeps the dither, which is what hides the steps of the slow gradients.
    constexpr int jpegQuality = 97;
    Art::FolderToFill folder(arguments.operands[0]);
    bool written = true;
    Tools::Progress progress("faces of the sky", static_cast<std::int64_t>(Art::SkyFaces().size()));
    for (const Art::SkyFace& face : Art::SkyFaces()) {
        written = written && Art::WriteEngineJpeg(folder.File(face.file),
                                                  Art::PaintFace(face, faceSize, Art::DuskColour),
                                                  jpegQuality);
        progress.Add();
    }
    return folder.Finish(written);
}

const Tools::Program program = {.name = "make_sky",
                                .purpose = "Paints the six faces of the sky box into FOLDER.",
                                .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
                                           .example = "Data/Gfx/City/sky",
                                           .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
